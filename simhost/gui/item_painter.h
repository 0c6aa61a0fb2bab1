// Painting shapes of the display list with a painter of Qt: on the screen, into a PDF, on a printer.
#pragma once

#include "simhost/gui/view_transform.h"

#include <QColor>
#include <QFont>
#include <QPainter>
#include <QPen>

#include <optional>
#include <vector>

namespace simhost {

/// How small things are treated.
enum class Detail {
  full,  ///< paper: everything as it is
  screen ///< what is smaller than a pixel is a dot, a text too small to be read is a line
};

struct PaintStyle {
  Paper paper = Paper::light;
  Detail detail = Detail::screen;
  double thinnest = thinnestPixels; ///< of the widths that lines can have, in units of the painter
  /// In place of all colours, wider: what is pointed at.
  std::optional<QColor> highlight{};
};

class ItemPainter final {
public:
  /// The painter must outlive it and not be used elsewhere meanwhile.
  ItemPainter(QPainter& painter, const ViewTransform& view, PaintStyle style);
  ItemPainter(const ItemPainter&) = delete;
  ItemPainter& operator=(const ItemPainter&) = delete;
  /// Everything given is painted then.
  ~ItemPainter() { flush(); }

  void paint(const DisplayItem& item, const Box& box);

private:
  friend struct ItemVisitor;

  void setPen(const DisplayItem& item, double width);
  void flush();
  void paintText(const Text& text);

  QPainter& painter_;
  ViewTransform view_;
  PaintStyle style_;
  QPen pen_;
  std::vector<QLineF> lines_; ///< of the current pen, not painted yet
  QFont font_;
};

[[nodiscard]] QColor paperColour(Paper paper);

} // namespace simhost
