// Snapping, keys and the outline.
#include "simhost/gui/place_pointer.h"

#include <QKeyEvent>
#include <QPainter>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <utility>

namespace simhost {
namespace {

/// Places snap to this, in drawing units, and arrow keys move by it.
constexpr double snapStep = 5.0;
constexpr double fineStep = 1.0;
constexpr double snapReachPixels = 8.0;

const QColor overlapColour(0xd0, 0x20, 0x20);
const QColor freeColour(0xff, 0x8c, 0x1a);

} // namespace

void PlacePointer::changed() {
  if (onChanged) onChanged();
}

void PlacePointer::setOutline(const std::optional<Box>& outline) {
  outline_ = outline;
  changed();
}

void PlacePointer::follow(const QPointF& pixel) {
  pixel_ = pixel;
  moved_.reset();
}

void PlacePointer::reset() {
  moved_.reset();
  typed_.clear();
}

void PlacePointer::viewChanged() {
  if (moved_) pixel_ = port_.view().toScreen(*moved_);
}

Box PlacePointer::outlineAt(const KvPoint3d& point) const {
  Box area;
  area.include(point);
  if (!outline_) return area;
  return {
      outline_->left + point.x, outline_->bottom + point.y, outline_->right + point.x,
      outline_->top + point.y};
}

bool PlacePointer::overlaps(const KvPoint3d& point) const {
  if (!outline_) return false;
  const std::vector<std::uint32_t> met = scene_.itemsIn(outlineAt(point));
  if (!ignoresGroup_) return !met.empty();
  return std::any_of(met.begin(), met.end(), [this](std::uint32_t number) {
    return !marks_.isInGroup(scene_.items()[number].entity);
  });
}

KvPoint3d PlacePointer::snapped() const {
  const ViewTransform& view = port_.view();
  const KvPoint3d raw = view.toDrawing(pixel_);
  KvPoint3d point{std::round(raw.x / snapStep) * snapStep, std::round(raw.y / snapStep) * snapStep, 0.0};
  // The rails of a neighbour: a horizontal line at the height of the pointer, anywhere in the view.
  const double reach = snapReachPixels * port_.ratio() / view.scale;
  const Box seen = port_.seen();
  const Box band{seen.left, raw.y - reach, seen.right, raw.y + reach};
  double nearest = reach;
  for (const std::uint32_t item : scene_.itemsIn(band)) {
    const auto* line = std::get_if<Line>(&scene_.items()[item].shape);
    if (line == nullptr || line->from.y != line->to.y || std::abs(line->to.x - line->from.x) <= snapStep)
      continue;
    if (std::abs(line->from.y - raw.y) >= nearest) continue;
    nearest = std::abs(line->from.y - raw.y);
    point.y = line->from.y;
  }
  return point;
}

void PlacePointer::propose(const KvPoint3d& point) {
  Box area = scene_.extents();
  area.include(outlineAt(point));
  port_.show(area);
  moveTo(point);
}

void PlacePointer::moveTo(const KvPoint3d& point) {
  moved_ = point;
  viewChanged();
  Box place;
  place.include(point);
  port_.show(place);
  if (onMoved) onMoved(point);
  changed();
}

PlacePointer::Key PlacePointer::press(const QKeyEvent& event) {
  const double step = event.modifiers() & Qt::ShiftModifier ? fineStep : snapStep;
  KvPoint3d point = this->point();
  switch (event.key()) {
  case Qt::Key_Left:
    point.x -= step;
    break;
  case Qt::Key_Right:
    point.x += step;
    break;
  case Qt::Key_Down:
    point.y -= step;
    break;
  case Qt::Key_Up:
    point.y += step;
    break;
  case Qt::Key_Return:
  case Qt::Key_Enter:
    return typed_.isEmpty() ? Key::chosen : enter();
  case Qt::Key_Backspace:
    typed_.chop(1);
    changed();
    return Key::taken;
  default: {
    const QString text = event.text();
    if (text.size() != 1 || !QStringLiteral("0123456789+-.,; ").contains(text)) return Key::other;
    if (typed_.isEmpty() && !QStringLiteral("0123456789-.").contains(text)) return Key::other;
    typed_ += text;
    changed();
    return Key::taken;
  }
  }
  moveTo(point);
  return Key::taken;
}

/// "100,50", "100.5 -20" or "100;50".
PlacePointer::Key PlacePointer::enter() {
  static const QRegularExpression between(QStringLiteral("[,; ]+"));
  const QStringList parts = std::exchange(typed_, {}).split(between, Qt::SkipEmptyParts);
  bool isX = false;
  bool isY = false;
  const double x = parts.value(0).toDouble(&isX);
  const double y = parts.value(1).toDouble(&isY);
  changed();
  if (parts.size() != 2 || !isX || !isY) return Key::notAPoint;
  moveTo({x, y, 0.0});
  return Key::chosen;
}

void PlacePointer::paint(QPainter& painter) const {
  const ViewTransform& view = port_.view();
  const double ratio = port_.ratio();
  const KvPoint3d place = point();
  const QPointF at = view.toScreen(place);
  const QColor colour = overlaps(place) ? overlapColour : freeColour;
  painter.setPen(QPen(colour, ratio));
  painter.drawLine(QPointF(0.0, at.y()), QPointF(port_.image().width(), at.y()));
  painter.drawLine(QPointF(at.x(), 0.0), QPointF(at.x(), port_.image().height()));
  if (outline_) {
    const QPointF low = view.toScreen({place.x + outline_->left, place.y + outline_->bottom, 0.0});
    const QPointF high = view.toScreen({place.x + outline_->right, place.y + outline_->top, 0.0});
    const QRectF area = QRectF(low, high).normalized();
    QColor fill = colour;
    painter.setPen(QPen(fill, 2.0 * ratio, Qt::DashLine));
    fill.setAlpha(0x22);
    painter.fillRect(area, fill);
    painter.drawRect(area);
  }
  const auto number = [](double value) { return QString::number(value, 'f', 2); };
  const QString shown =
      typed_.isEmpty() ? number(place.x) + QStringLiteral(", ") + number(place.y) : typed_ + QLatin1Char('_');
  painter.setPen(QPen(colour, ratio));
  painter.save();
  painter.translate(at);
  painter.scale(ratio, ratio); // the font is that of the window
  painter.drawText(QPointF(8.0, -8.0), shown);
  painter.restore();
}

} // namespace simhost
