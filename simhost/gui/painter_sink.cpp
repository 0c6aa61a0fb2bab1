// Strokes become pens, and texts are drawn at any size.
#include "simhost/gui/painter_sink.h"

#include "simhost/qt/qt_text.h"

#include <QFontMetricsF>
#include <QPen>
#include <QPolygonF>

namespace simhost {
namespace {

/// Lines that are worth collecting before they are painted.
constexpr std::size_t batchSize = 512;
/// A font of fixed size, scaled: sizes of fonts are rounded on some devices, and the drawing's are not.
constexpr int fontPixels = 100;

QPointF at(const PicturePoint& point) {
  return {point.x, point.y};
}

QPen penOf(const Stroke& stroke) {
  QPen pen(colourOf(stroke.colour));
  pen.setWidthF(stroke.width);
  pen.setCapStyle(Qt::RoundCap);
  pen.setJoinStyle(Qt::RoundJoin);
  if (stroke.dashes != nullptr) {
    QList<qreal> pattern; // in units of the pen's width
    for (const double length : *stroke.dashes)
      pattern.append(length / stroke.width);
    pen.setDashPattern(pattern);
  }
  return pen;
}

} // namespace

PainterSink::PainterSink(QPainter& painter) : painter_(painter), font_(QLatin1String(pictureFont)) {
  font_.setHintingPreference(QFont::PreferNoHinting); // widths grow with the height, as on paper
  font_.setPixelSize(fontPixels);
  painter_.setRenderHint(QPainter::Antialiasing);
  painter_.setRenderHint(QPainter::TextAntialiasing);
  painter_.setBrush(Qt::NoBrush);
}

void PainterSink::take(const Stroke& stroke) {
  if (stroke == stroke_) return;
  flush();
  stroke_ = stroke;
  painter_.setPen(penOf(stroke));
  painter_.setOpacity(stroke.opacity);
}

void PainterSink::flush() {
  if (lines_.empty()) return;
  painter_.drawLines(lines_.data(), static_cast<int>(lines_.size()));
  lines_.clear();
}

void PainterSink::line(const PicturePoint& from, const PicturePoint& to, const Stroke& stroke) {
  take(stroke);
  lines_.emplace_back(at(from), at(to));
  if (lines_.size() >= batchSize) flush();
}

void PainterSink::path(const std::vector<PicturePoint>& points, bool isClosed, const Stroke& stroke) {
  take(stroke);
  flush();
  QPolygonF polygon;
  polygon.reserve(static_cast<qsizetype>(points.size()) + 1);
  for (const PicturePoint& point : points)
    polygon.append(at(point));
  if (isClosed) polygon.append(polygon.first());
  painter_.drawPolyline(polygon);
}

void PainterSink::circle(const PicturePoint& centre, double radius, const Stroke& stroke) {
  take(stroke);
  flush();
  painter_.drawEllipse(at(centre), radius, radius);
}

void PainterSink::arc(const PictureArc& arc, const Stroke& stroke) {
  take(stroke);
  flush();
  const QRectF around(
      arc.centre.x - arc.radius, arc.centre.y - arc.radius, 2.0 * arc.radius, 2.0 * arc.radius);
  constexpr double unitsPerDegree = 16.0;
  painter_.drawArc(
      around, qRound(arc.startDegrees * unitsPerDegree), qRound(arc.turnDegrees * unitsPerDegree));
}

void PainterSink::text(const PictureText& text) {
  flush();
  stroke_.reset();
  painter_.setOpacity(1.0);
  const QString shown = toQt(std::wstring(text.text));
  const double scale = text.size / fontPixels;
  painter_.save();
  painter_.setPen(colourOf(text.colour));
  painter_.setFont(font_);
  painter_.translate(at(text.position));
  if (text.rotationDegrees != 0.0) painter_.rotate(-text.rotationDegrees);
  painter_.scale(scale, scale);
  double start = 0.0;
  if (text.anchor > 0.0)
    start = -text.anchor * QFontMetricsF(font_, painter_.device()).horizontalAdvance(shown);
  painter_.drawText(QPointF(start, 0.0), shown);
  painter_.restore();
}

QColor colourOf(Colour colour) {
  return {colour.red, colour.green, colour.blue};
}

QColor paperColour(Paper paper) {
  return paper == Paper::light ? QColor(0xff, 0xff, 0xff) : QColor(0x1e, 0x21, 0x26);
}

} // namespace simhost
