#include "simhost/drawing/distance.h"

#include "simhost/drawing/display_list.h"
#include "simhost/drawing/geometry.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace simhost {

namespace {

struct Distance {
  const KvPoint3d& point;

  double operator()(const Line& line) const { return distanceToSegment(point, line.from, line.to); }

  double operator()(const Polyline& polyline) const {
    double nearest = std::numeric_limits<double>::infinity();
    const std::size_t count = polyline.points.size();
    for (std::size_t index = polyline.isClosed ? 0 : 1; index < count; ++index) {
      const KvPoint3d& from = polyline.points[index == 0 ? count - 1 : index - 1];
      nearest = std::min(nearest, distanceToSegment(point, from, polyline.points[index]));
    }
    return std::max(0.0, nearest - polyline.width / 2.0);
  }

  double operator()(const Circle& circle) const {
    return std::abs(distanceBetween(point, circle.centre) - circle.radius);
  }

  double operator()(const Arc& arc) const {
    const double angle =
        std::atan2(point.y - arc.centre.y, point.x - arc.centre.x) * 180.0 / std::numbers::pi;
    double behindStart = std::fmod(angle - arc.startDegrees, 360.0);
    if (behindStart < 0.0) behindStart += 360.0;
    if (behindStart <= turnOf(arc)) return (*this)(Circle{arc.centre, arc.radius});
    const KvPoint3d start = pointAt(arc.centre, arc.radius, arc.startDegrees);
    const KvPoint3d end = pointAt(arc.centre, arc.radius, arc.endDegrees);
    return std::min(distanceBetween(point, start), distanceBetween(point, end));
  }

  double operator()(const Text& text) const {
    if (text.text.empty()) return std::numeric_limits<double>::infinity();
    const auto corners = textCorners(text);
    bool isInside = true;
    double nearest = std::numeric_limits<double>::infinity();
    for (std::size_t index = 0; index < corners.size(); ++index) {
      const KvPoint3d& from = corners[index];
      const KvPoint3d& to = corners[(index + 1) % corners.size()];
      nearest = std::min(nearest, distanceToSegment(point, from, to));
      const double side = (to.x - from.x) * (point.y - from.y) - (to.y - from.y) * (point.x - from.x);
      isInside = isInside && side >= 0.0;
    }
    return isInside ? 0.0 : nearest;
  }

  double operator()(const BlockReference& /*reference*/) const {
    return std::numeric_limits<double>::infinity();
  }
  double operator()(const Attribute& attribute) const { return (*this)(attribute.text); }
  double operator()(const AttributeDefinition& definition) const { return (*this)(definition.text); }
};

} // namespace

double distanceBetween(const KvPoint3d& one, const KvPoint3d& other) {
  return std::hypot(one.x - other.x, one.y - other.y);
}

double distanceToSegment(const KvPoint3d& point, const KvPoint3d& from, const KvPoint3d& to) {
  const double along = to.x - from.x;
  const double up = to.y - from.y;
  const double square = along * along + up * up;
  const double place = square > 0.0 ? ((point.x - from.x) * along + (point.y - from.y) * up) / square : 0.0;
  const double within = std::clamp(place, 0.0, 1.0);
  return std::hypot(point.x - from.x - within * along, point.y - from.y - within * up);
}

double distanceTo(const Shape& shape, const KvPoint3d& point) {
  return std::visit(Distance{point}, shape);
}

bool isLevel(const Line& line) {
  return std::abs(line.to.y - line.from.y) < std::abs(line.to.x - line.from.x);
}

} // namespace simhost
