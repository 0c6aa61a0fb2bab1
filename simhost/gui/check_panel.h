// The mistakes of the site as a list: the tool's check runs beside the window, what it finds can be filtered, and a double
// click opens the place.
#pragma once

#include "simhost/gui/host_texts.h"

#include <QByteArray>
#include <QPointF>
#include <QWidget>

#include <functional>
#include <optional>
#include <vector>

class QComboBox;
class QLabel;
class QProcess;
class QPushButton;
class QTreeWidget;

namespace simhost {

/// What the list shows of a finding.
struct SiteFinding {
  QString severity; ///< "error", "warning" or "note"
  QString rule;
  QString place;
  QString file; ///< below the site's folder, or as it is
  QString what;
  QString remedy;
  std::optional<QPointF> position{}; ///< in a drawing
};

/// Changes with every file that the author of a site writes, not with what users save in it.
[[nodiscard]] QString siteFingerprint(const QString& folder);

class CheckPanel final : public QWidget {
public:
  /// With an empty folder nothing can be checked. `language`: two letters, of the findings.
  CheckPanel(const HostTexts& texts, QString siteFolder, QString language, QWidget* parent = nullptr);
  ~CheckPanel() override;

  /// Checks in a process of its own, so that the window goes on, and a site that crashes or never ends harms nobody.
  void start();
  [[nodiscard]] bool isRunning() const;
  /// Shows the findings that the tool has printed as JSON; false when it is none.
  bool showFindings(const QByteArray& json);
  /// What was shown last, empty for nothing.
  [[nodiscard]] const QByteArray& json() const { return json_; }
  /// The rows that the filters let through.
  [[nodiscard]] std::vector<SiteFinding> shown() const;

  std::function<void(const SiteFinding& finding)> onOpen;
  /// The check has ended; `isClean` without a finding.
  std::function<void(bool isClean)> onDone;

private:
  void finish(int exitCode);
  void fill();
  void fillRules();
  void openCurrent();
  [[nodiscard]] QString severityText(const QString& severity) const;

  const HostTexts& texts_;
  QString siteFolder_;
  QString language_;
  QPushButton* run_;
  QComboBox* severity_;
  QComboBox* rule_;
  QLabel* state_;
  QTreeWidget* table_;
  QProcess* process_;
  bool isStopped_ = false;
  QByteArray json_;
  std::vector<SiteFinding> findings_;
};

} // namespace simhost
