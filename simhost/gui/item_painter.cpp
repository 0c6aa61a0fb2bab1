// Lines of one pen are collected and painted together: most of a circuit drawing is lines, and changing the pen costs
// more than a line.
#include "simhost/gui/item_painter.h"

#include "simhost/qt/qt_text.h"

#include <QFontMetricsF>
#include <QPolygonF>

#include <utility>

namespace simhost {
namespace {

/// Below this height letters are a grey line anyhow, and cost more than everything else.
constexpr double smallestLetterPixels = 3.0;
constexpr double highlightExtra = 2.2;
/// Lines that are worth collecting before they are painted.
constexpr std::size_t batchSize = 512;

} // namespace

/// Hands each shape to the painter.
struct ItemVisitor {
  ItemPainter& to;
  const DisplayItem& item;

  [[nodiscard]] QPointF at(const KvPoint3d& point) const { return to.view_.toScreen(point); }

  void operator()(const Line& line) const {
    to.setPen(item, 0.0);
    to.lines_.emplace_back(at(line.from), at(line.to));
    if (to.lines_.size() >= batchSize) to.flush();
  }
  void operator()(const Polyline& polyline) const {
    to.setPen(item, polyline.width);
    to.flush();
    QPolygonF points;
    points.reserve(static_cast<qsizetype>(polyline.points.size()) + 1);
    for (const KvPoint3d& point : polyline.points)
      points.append(at(point));
    if (polyline.isClosed) points.append(points.first());
    to.painter_.drawPolyline(points);
  }
  void operator()(const Circle& circle) const {
    to.setPen(item, 0.0);
    to.flush();
    const double radius = circle.radius * to.view_.scale;
    to.painter_.drawEllipse(at(circle.centre), radius, radius);
  }
  void operator()(const Arc& arc) const {
    const double turn = turnOf(arc);
    if (turn >= 360.0) {
      (*this)(Circle{arc.centre, arc.radius});
      return;
    }
    to.setPen(item, 0.0);
    to.flush();
    const double radius = arc.radius * to.view_.scale;
    const QPointF centre = at(arc.centre);
    const QRectF around(centre.x() - radius, centre.y() - radius, 2.0 * radius, 2.0 * radius);
    constexpr double unitsPerDegree = 16.0;
    to.painter_.drawArc(around, qRound(arc.startDegrees * unitsPerDegree), qRound(turn * unitsPerDegree));
  }
  void operator()(const Text& text) const {
    if (text.text.empty()) return;
    to.setPen(item, 0.0);
    to.flush();
    to.paintText(text);
  }
  void operator()(const BlockReference& /*reference*/) const {}
  void operator()(const Attribute& /*attribute*/) const {}
  void operator()(const AttributeDefinition& /*definition*/) const {}
};

ItemPainter::ItemPainter(QPainter& painter, const ViewTransform& view, PaintStyle style)
    : painter_(painter), view_(view), style_(style), font_(QStringLiteral("DejaVu Sans")) {
  font_.setHintingPreference(QFont::PreferNoHinting); // widths grow with the height, as on paper
  painter_.setRenderHint(QPainter::Antialiasing);
  painter_.setRenderHint(QPainter::TextAntialiasing);
  painter_.setBrush(Qt::NoBrush);
  painter_.setPen(pen_);
}

void ItemPainter::paint(const DisplayItem& item, const Box& box) {
  if (style_.detail == Detail::screen) {
    const double width = box.width() * view_.scale;
    const double height = box.height() * view_.scale;
    if (width < 1.0 && height < 1.0) {
      setPen(item, 0.0);
      const QPointF dot = view_.toScreen({box.left, box.bottom, 0.0});
      lines_.emplace_back(dot, dot + QPointF(0.7, 0.0));
      if (lines_.size() >= batchSize) flush();
      return;
    }
  }
  std::visit(ItemVisitor{*this, item}, item.shape);
}

void ItemPainter::setPen(const DisplayItem& item, double width) {
  const Colour shown = readable(item.colour, style_.paper);
  QPen pen(style_.highlight.value_or(QColor(shown.red, shown.green, shown.blue)));
  double pixels = std::max(style_.thinnest, width * view_.scale);
  if (style_.highlight) pixels += highlightExtra * style_.thinnest / thinnestPixels;
  pen.setWidthF(pixels);
  pen.setCapStyle(Qt::RoundCap);
  pen.setJoinStyle(Qt::RoundJoin);
  const std::vector<double>& dashes = dashesOf(item.lineType);
  if (!dashes.empty()) {
    QList<qreal> pattern; // in units of the pen's width
    for (const double length : dashes)
      pattern.append(length * style_.thinnest / thinnestPixels / pixels);
    pen.setDashPattern(pattern);
  }
  if (pen == pen_) return;
  flush();
  pen_ = std::move(pen);
  painter_.setPen(pen_);
}

void ItemPainter::flush() {
  if (lines_.empty()) return;
  painter_.drawLines(lines_.data(), static_cast<int>(lines_.size()));
  lines_.clear();
}

void ItemPainter::paintText(const Text& text) {
  const TextPlace place = textPlace(text);
  if (style_.detail == Detail::screen && text.height * view_.scale < smallestLetterPixels) {
    const auto corners = textCorners(text);
    const auto middle = [this](const KvPoint3d& one, const KvPoint3d& other) {
      return (view_.toScreen(one) + view_.toScreen(other)) / 2.0;
    };
    painter_.setOpacity(0.5);
    painter_.drawLine(middle(corners[0], corners[3]), middle(corners[1], corners[2]));
    painter_.setOpacity(1.0);
    return;
  }
  // A font of fixed size, scaled: sizes of fonts are rounded on some devices, and the drawing's are not.
  constexpr double fontPixels = 100.0;
  font_.setPixelSize(static_cast<int>(fontPixels));
  const QString shown = toQt(text.text).replace(QLatin1Char('\n'), QLatin1Char(' '));
  const double scale = place.fontSize * view_.scale / fontPixels;
  painter_.save();
  painter_.setFont(font_);
  painter_.translate(view_.toScreen(place.position));
  if (text.rotationDegrees != 0.0) painter_.rotate(-text.rotationDegrees);
  painter_.scale(scale, scale);
  double start = 0.0;
  if (place.anchor > 0.0)
    start = -place.anchor * QFontMetricsF(font_, painter_.device()).horizontalAdvance(shown);
  painter_.drawText(QPointF(start, 0.0), shown);
  painter_.restore();
}

QColor paperColour(Paper paper) {
  return paper == Paper::light ? QColor(0xff, 0xff, 0xff) : QColor(0x1e, 0x21, 0x26);
}

} // namespace simhost
