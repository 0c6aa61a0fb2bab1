// What the main window's site knows of the circuits that dialogs offer: pictures of finished circuits, built by a
// process of the tool in the background and kept while their files are as they were, and the saved configurations.
#pragma once

#include "circuits/check/sheet_titles.h"
#include "simhost/gui/host_texts.h"
#include "simhost/gui/scene.h"
#include "simhost/gui/unit_markers.h"
#include "simhost/qt/circuit_facts.h"
#include "simhost/site/saved_configurations.h"

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <optional>
#include <vector>

namespace simhost {

class QtWindows;
class SiteRun;

class SiteCircuits final : public QObject, public CircuitFacts {
public:
  /// All must outlive it.
  SiteCircuits(SiteRun& site, QtWindows& windows, UnitMarkers& units, const HostTexts& texts);
  ~SiteCircuits() override;

  [[nodiscard]] Picture picture(const OfferedCircuit& circuit, std::function<void()> ready) override;
  [[nodiscard]] bool isMaking() const override { return !wantedKey_.isEmpty(); }
  void forgetPicture() override;
  [[nodiscard]] QStringList onlyWith(
      const OfferedCircuit& circuit, const QString& unit, const QString& group) override;
  /// By the wires that each motor or load of the template has.
  [[nodiscard]] QString phase() override;
  [[nodiscard]] QString drawnByUnit() override;
  /// A component is that of a group when its family is one of the group's tables of parts.
  [[nodiscard]] QStringList drawnInGroup(const OfferedCircuit& circuit, const QString& group) override;
  [[nodiscard]] QStringList configurations(const OfferedCircuit& circuit) override;
  [[nodiscard]] QString chooseConfiguration(const OfferedCircuit& circuit, QWidget* parent) override;
  /// All that are saved, read again when their files have changed; null when they cannot be read.
  [[nodiscard]] const SiteConfigurations* saved();

private:
  [[nodiscard]] QString siteFolder() const;
  /// What the worksheet of a circuit says to whoever reads it, read again when the workbook has changed.
  [[nodiscard]] const circuits::SheetTitles& titlesOf(const OfferedCircuit& circuit);
  /// The components that the unit which the configuration dialog shows has drawn.
  [[nodiscard]] std::vector<EntityFacts> drawnComponents();
  /// The circuit and the state of the files that it is built from.
  [[nodiscard]] QString keyOf(const OfferedCircuit& circuit);
  void start();
  void finish(bool isDone);

  SiteRun& site_;
  QtWindows& windows_;
  UnitMarkers& units_;
  const HostTexts& texts_;
  QTemporaryDir folder_;
  QProcess process_;
  QTimer delay_; ///< whoever goes through a list does not wait for each of it
  QHash<QString, Picture> made_;
  QString wantedKey_;
  OfferedCircuit wanted_;
  std::function<void()> ready_;
  QString fingerprint_; ///< of the site's files
  QElapsedTimer fingerprintAge_;
  QString titlesKey_; ///< the type and the state of its workbook that the next are of
  circuits::SheetTitles titles_;
  QString savedKey_;
  std::optional<SiteConfigurations> saved_;
};

} // namespace simhost
