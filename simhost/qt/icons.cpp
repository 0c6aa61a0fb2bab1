// Painting the pictures from lines on a square of 24 units.
#include "simhost/qt/icons.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>

namespace simhost {

namespace {

constexpr qreal unitsPerSide = 24;

using Paint = void (*)(QPainter& painter, const QColor& ink);

/// A table with a loupe: looking a value up.
void paintLookup(QPainter& painter, const QColor&) {
  painter.drawRect(QRectF(3, 4, 13, 14));
  painter.drawLine(QPointF(3, 8.5), QPointF(16, 8.5));
  painter.drawLine(QPointF(3, 13), QPointF(9, 13));
  painter.drawLine(QPointF(8, 4), QPointF(8, 18));
  painter.drawEllipse(QPointF(15, 15), 4.2, 4.2);
  painter.drawLine(QPointF(18, 18), QPointF(21.5, 21.5));
}

/// An arrow on a cross: picking in the drawing.
void paintPick(QPainter& painter, const QColor& ink) {
  painter.drawLine(QPointF(8, 2), QPointF(8, 14));
  painter.drawLine(QPointF(2, 8), QPointF(14, 8));
  QPainterPath arrow(QPointF(10, 10));
  arrow.lineTo(21, 14.5);
  arrow.lineTo(16.5, 16.5);
  arrow.lineTo(14.5, 21);
  arrow.closeSubpath();
  painter.fillPath(arrow, ink);
}

void paintArrowDown(QPainter& painter, const QColor& ink, qreal x, qreal top) {
  painter.drawLine(QPointF(x, top), QPointF(x, 12));
  QPainterPath head(QPointF(x - 3.5, 10.5));
  head.lineTo(x + 3.5, 10.5);
  head.lineTo(x, 15.5);
  head.closeSubpath();
  painter.fillPath(head, ink);
}

/// An arrow onto the paper: one unit is inserted.
void paintInsertOne(QPainter& painter, const QColor& ink) {
  paintArrowDown(painter, ink, 12, 3);
  painter.drawLine(QPointF(4, 20), QPointF(20, 20));
}

/// The same, from a list above it down to a bar: up to the selected unit.
void paintInsertUpTo(QPainter& painter, const QColor& ink) {
  painter.drawLine(QPointF(3, 4), QPointF(10, 4));
  painter.drawLine(QPointF(3, 9), QPointF(10, 9));
  painter.drawLine(QPointF(3, 14), QPointF(10, 14));
  paintArrowDown(painter, ink, 16, 3);
  painter.drawLine(QPointF(4, 20), QPointF(20, 20));
}

/// Several arrows: all units.
void paintInsertAll(QPainter& painter, const QColor& ink) {
  for (const qreal x : {5.0, 12.0, 19.0})
    paintArrowDown(painter, ink, x, 4);
  painter.drawLine(QPointF(3, 20), QPointF(21, 20));
}

/// An arrow that turns back.
void paintUndo(QPainter& painter, const QColor& ink) {
  painter.drawArc(QRectF(6, 6, 13, 13), -90 * 16, 225 * 16);
  QPainterPath head(QPointF(3, 9));
  head.lineTo(11, 10.5);
  head.lineTo(6.5, 3.5);
  head.closeSubpath();
  painter.fillPath(head, ink);
}

/// A circle that waits to be filled.
void paintWaiting(QPainter& painter, const QColor&) {
  painter.drawEllipse(QPointF(12, 12), 6.5, 6.5);
}

void paintCurrent(QPainter& painter, const QColor& ink) {
  QPainterPath arrow(QPointF(6, 4));
  arrow.lineTo(19, 12);
  arrow.lineTo(6, 20);
  arrow.closeSubpath();
  painter.fillPath(arrow, ink);
}

void paintInserted(QPainter& painter, const QColor&) {
  painter.drawPolyline(QPolygonF({QPointF(4.5, 12.5), QPointF(10, 18), QPointF(20, 6)}));
}

/// Draws for the requested size, so that no pixel is scaled.
class PaintedIcon final : public QIconEngine {
public:
  PaintedIcon(Paint how, QColor ink, const QPalette& palette)
      : paint_(how), ink_(ink), faded_(palette.color(QPalette::Disabled, QPalette::ButtonText)),
        selected_(palette.color(QPalette::HighlightedText)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const QColor ink = mode == QIcon::Disabled ? faded_ : mode == QIcon::Selected ? selected_ : ink_;
    const qreal side = std::min(rect.width(), rect.height());
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(rect.center() + QPointF(0.5, 0.5));
    painter->scale(side / unitsPerSide, side / unitsPerSide);
    painter->translate(-unitsPerSide / 2, -unitsPerSide / 2);
    painter->setPen(QPen(ink, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    paint_(*painter, ink);
    painter->restore();
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return picture;
  }
  [[nodiscard]] QIconEngine* clone() const override { return new PaintedIcon(*this); }

private:
  Paint paint_;
  QColor ink_;
  QColor faded_;
  QColor selected_; ///< on the colour of a selected row
};

struct ImageRow {
  unsigned image;
  Paint paint;
};
constexpr ImageRow buttonImages[] = {
    {10028, paintLookup},     {10059, paintPick},      {10034, paintInsertOne},
    {10035, paintInsertUpTo}, {10036, paintInsertAll}, {10037, paintUndo},
};

/// The states of a unit: not inserted, current, in the drawing.
constexpr Paint stateImages[] = {paintWaiting, paintCurrent, paintInserted};

QIcon iconOf(Paint paint, const QColor& ink, const QPalette& palette) {
  return QIcon(new PaintedIcon(paint, ink, palette));
}

} // namespace

QIcon buttonIcon(unsigned image, const QPalette& palette) {
  for (const ImageRow& row : buttonImages)
    if (row.image == image) return iconOf(row.paint, palette.color(QPalette::ButtonText), palette);
  return {};
}

QIcon treeIcon(std::wstring_view icons, int image, const QPalette& palette) {
  if (icons != L"states" || image < 0 || image >= static_cast<int>(std::size(stateImages))) return {};
  const bool isDark = palette.color(QPalette::Base).lightness() < 128;
  const QColor inks[] = {
      palette.color(QPalette::Disabled, QPalette::Text),
      isDark ? QColor(0x7F, 0xB2, 0xFF) : QColor(0x1B, 0x5F, 0xC4),
      isDark ? QColor(0x7E, 0xD3, 0x8C) : QColor(0x1E, 0x7B, 0x33)};
  return iconOf(stateImages[image], inks[image], palette);
}

} // namespace simhost
