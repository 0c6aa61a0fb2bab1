// How a drawing goes on paper: sheet, scale, frame of the site and texts of its title block, as the user chooses them and
// the settings keep them.
#pragma once

#include "simhost/gui/host_texts.h"

#include <QPageLayout>
#include <QString>
#include <QStringList>

#include <optional>

class QWidget;

namespace simhost {

struct PageSetup {
  QPageSize::PageSizeId size = QPageSize::A3;
  QPageLayout::Orientation orientation = QPageLayout::Landscape;
  /// Units of the drawing for a millimetre of the paper: 2 is half its size. 0: all of the drawing fills the page.
  double unitsPerMillimetre = 0.0;
  /// A drawing of the site's folder "frames", which then decides the size of the paper; empty for none.
  QString frame{};
  QString project{};
  QString drawnBy{};
  QString revision{};
  QString date{}; ///< empty: the day of the output

  [[nodiscard]] QPageLayout layout() const;
  /// For the settings: "A3 landscape 0", then a line each for frame, project, drawnBy, revision and date.
  [[nodiscard]] QString text() const;
  /// What a text says; what it does not say stays as it is from the start.
  [[nodiscard]] static PageSetup of(const QString& text);
};

/// What a drawing says of itself in its title block.
struct PageTitle {
  QString title;
  /// Its own frame, as a sheet of a set has one; nothing else of the setup then applies.
  bool hasFrame = false;
};

/// Nothing when the user leaves. `frames`: those of the site. `title`: also changed.
[[nodiscard]] std::optional<PageSetup> askPageSetup(
    const PageSetup& now, const QStringList& frames, PageTitle& title, const HostTexts& texts,
    QWidget* parent);

} // namespace simhost
