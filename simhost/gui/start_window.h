// The first question of the program without options: which site, which project, which drawing.
#pragma once

#include "simhost/gui/host_texts.h"

#include <QDialog>
#include <QStringList>

#include <optional>

class QComboBox;
class QListWidget;

namespace simhost {

/// What can be chosen without looking for it, the last one used first.
struct StartOffers {
  QStringList sites;
  QStringList projects;
  QStringList drawings;
  QStringList sets{};
};

/// Empty texts mean none: no site, no project, a new drawing.
struct StartChoice {
  QString site;
  QString project;
  QString drawing; ///< or the file of a set
};

class StartWindow final : public QDialog {
public:
  StartWindow(const HostTexts& texts, const StartOffers& offers, QWidget* parent = nullptr);

  /// Valid when the dialog has been accepted.
  [[nodiscard]] const StartChoice& choice() const { return choice_; }

private:
  void begin(const QString& drawing);
  void addSet(const QString& file);
  void addDrawing(const QString& file);
  void browseSite();
  void browse(QComboBox& list, HostText title, HostText type);

  const HostTexts& texts_;
  StartChoice choice_;
  QComboBox* sites_;
  QComboBox* projects_;
  QListWidget* drawings_;
};

} // namespace simhost
