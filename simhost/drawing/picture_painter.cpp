// The walk.
#include "simhost/drawing/picture_painter.h"

#include "simhost/drawing/geometry.h"

#include <algorithm>
#include <variant>

namespace simhost {
namespace {

/// Below this height letters are a grey line anyhow, and cost more than everything else.
constexpr double smallestLetterPixels = 3.0;
constexpr double unreadableOpacity = 0.5;
constexpr double highlightExtraPixels = 2.2;
/// Of what is smaller than a pixel.
constexpr double dotPixels = 0.7;

/// Line ends and tabs have no width in a drawing's text.
std::wstring onOneLine(const std::wstring& text) {
  std::wstring line = text;
  std::replace_if(
      line.begin(), line.end(), [](wchar_t letter) { return letter < L' '; }, L' ');
  return line;
}

} // namespace

PictureSink::~PictureSink() = default;

PicturePainter::PicturePainter(PictureSink& sink, const PicturePlace& place, const PictureStyle& style)
    : sink_(sink), place_(place), style_(style) {
  for (std::size_t type = 0; type < dashes_.size(); ++type)
    for (const double pixels : dashesOf(static_cast<LineType>(type)))
      dashes_[type].push_back(pixels * style.pixel);
}

void PicturePainter::paint(const DisplayItem& item, const Box& box) {
  if (style_.detail == Detail::full || box.width() * place_.scale >= style_.pixel ||
      box.height() * place_.scale >= style_.pixel)
    return paint(item);
  const PicturePoint dot = place_.at({box.left, box.bottom, 0.0});
  sink_.line(dot, {dot.x + dotPixels * style_.pixel, dot.y}, strokeOf(item, 0.0));
}

void PicturePainter::paint(const DisplayItem& item) {
  std::visit([&](const auto& shape) { paintShape(item, shape); }, item.shape);
}

Colour PicturePainter::colourOf(const DisplayItem& item) const {
  return style_.highlight ? *style_.highlight : readable(item.colour, style_.paper);
}

Stroke PicturePainter::strokeOf(const DisplayItem& item, double width) const {
  const std::vector<double>& dashes = dashes_[static_cast<std::size_t>(item.lineType)];
  Stroke stroke{
      colourOf(item), std::max(thinnestPixels * style_.pixel, width * place_.scale),
      dashes.empty() ? nullptr : &dashes};
  if (style_.highlight) stroke.width += highlightExtraPixels * style_.pixel;
  return stroke;
}

void PicturePainter::paintShape(const DisplayItem& item, const Line& line) {
  sink_.line(place_.at(line.from), place_.at(line.to), strokeOf(item, 0.0));
}

void PicturePainter::paintShape(const DisplayItem& item, const Polyline& polyline) {
  if (polyline.points.empty()) return;
  points_.clear();
  for (const KvPoint3d& point : polyline.points)
    points_.push_back(place_.at(point));
  sink_.path(points_, polyline.isClosed, strokeOf(item, polyline.width));
}

void PicturePainter::paintShape(const DisplayItem& item, const Circle& circle) {
  sink_.circle(place_.at(circle.centre), circle.radius * place_.scale, strokeOf(item, 0.0));
}

void PicturePainter::paintShape(const DisplayItem& item, const Arc& arc) {
  const double turn = turnOf(arc);
  if (turn >= 360.0) return paintShape(item, Circle{arc.centre, arc.radius});
  sink_.arc(
      {place_.at(arc.centre), arc.radius * place_.scale, arc.startDegrees, turn,
       place_.at(pointAt(arc.centre, arc.radius, arc.startDegrees)),
       place_.at(pointAt(arc.centre, arc.radius, arc.endDegrees))},
      strokeOf(item, 0.0));
}

void PicturePainter::paintShape(const DisplayItem& item, const Text& text) {
  if (text.text.empty()) return;
  if (style_.detail == Detail::screen && text.height * place_.scale < smallestLetterPixels * style_.pixel)
    return paintUnreadable(item, text);
  const TextPlace place = textPlace(text);
  const std::wstring line = onOneLine(text.text);
  sink_.text(
      {line, place_.at(place.position), place.fontSize * place_.scale, place.anchor, text.rotationDegrees,
       colourOf(item)});
}

void PicturePainter::paintUnreadable(const DisplayItem& item, const Text& text) {
  const auto corners = textCorners(text);
  const auto middle = [this](const KvPoint3d& one, const KvPoint3d& other) {
    const PicturePoint from = place_.at(one);
    const PicturePoint to = place_.at(other);
    return PicturePoint{(from.x + to.x) / 2.0, (from.y + to.y) / 2.0};
  };
  Stroke stroke = strokeOf(item, 0.0);
  stroke.opacity = unreadableOpacity;
  sink_.line(middle(corners[0], corners[3]), middle(corners[1], corners[2]), stroke);
}

} // namespace simhost
