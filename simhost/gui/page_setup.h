// How a drawing goes on paper: the sheet and the scale, as the user chooses them and the settings keep them.
#pragma once

#include "simhost/gui/host_texts.h"

#include <QPageLayout>
#include <QString>

#include <optional>

class QWidget;

namespace simhost {

struct PageSetup {
  QPageSize::PageSizeId size = QPageSize::A3;
  QPageLayout::Orientation orientation = QPageLayout::Landscape;
  /// Units of the drawing for a millimetre of the paper: 2 is half its size. 0: all of the drawing fills the page.
  double unitsPerMillimetre = 0.0;

  [[nodiscard]] QPageLayout layout() const;
  /// For the settings: "A3 landscape 0".
  [[nodiscard]] QString text() const;
  /// What a text says; what it does not say stays as it is from the start.
  [[nodiscard]] static PageSetup of(const QString& text);
};

/// Nothing when the user leaves.
[[nodiscard]] std::optional<PageSetup> askPageSetup(
    const PageSetup& now, const HostTexts& texts, QWidget* parent);

} // namespace simhost
