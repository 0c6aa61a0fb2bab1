// Similarities of the plane that keep right angles exact.
#include "simhost/drawing/geometry.h"

#include <cmath>
#include <numbers>

namespace simhost {
namespace {

/// Angles are kept within one turn, 0 included.
double withinTurn(double degrees) {
  const double rest = std::fmod(degrees, 360.0);
  return rest < 0.0 ? rest + 360.0 : rest;
}

struct Direction {
  double cosine;
  double sine;
};

Direction directionOf(double degrees) {
  const double turn = withinTurn(degrees);
  // Right angles are the rule in circuit drawings and must not smear coordinates.
  if (turn == 0.0) return {1.0, 0.0};
  if (turn == 90.0) return {0.0, 1.0};
  if (turn == 180.0) return {-1.0, 0.0};
  if (turn == 270.0) return {0.0, -1.0};
  const double radians = turn * std::numbers::pi / 180.0;
  return {std::cos(radians), std::sin(radians)};
}

Text placedText(Text text, const Placement& placement) {
  text.position = placement.apply(text.position);
  text.height = placement.length(text.height);
  text.rotationDegrees = placement.angle(text.rotationDegrees);
  return text;
}

struct Placer {
  const Placement& placement;

  Shape operator()(const Line& line) const {
    return Line{placement.apply(line.from), placement.apply(line.to)};
  }

  Shape operator()(Polyline polyline) const {
    for (KvPoint3d& point : polyline.points) {
      point = placement.apply(point);
    }
    polyline.width = placement.length(polyline.width);
    return polyline;
  }

  Shape operator()(const Circle& circle) const {
    return Circle{placement.apply(circle.centre), placement.length(circle.radius)};
  }

  Shape operator()(const Arc& arc) const {
    return Arc{
        placement.apply(arc.centre), placement.length(arc.radius), placement.angle(arc.startDegrees),
        placement.angle(arc.endDegrees)};
  }

  Shape operator()(const Text& text) const { return placedText(text, placement); }

  Shape operator()(const BlockReference& reference) const {
    return BlockReference{
        reference.block, placement.apply(reference.position), reference.scale * std::abs(placement.scale()),
        placement.angle(reference.rotationDegrees)};
  }

  Shape operator()(Attribute attribute) const {
    attribute.text = placedText(attribute.text, placement);
    return attribute;
  }

  Shape operator()(AttributeDefinition definition) const {
    definition.text = placedText(definition.text, placement);
    return definition;
  }
};

} // namespace

Placement::Placement(const KvPoint3d& base, const KvPoint3d& position, double scale, double rotationDegrees)
    : scale_(scale), rotationDegrees_(withinTurn(rotationDegrees)) {
  const KvPoint3d moved = apply(base);
  offset_ = {position.x - moved.x, position.y - moved.y, position.z - moved.z};
}

Placement Placement::of(const Placement& inner) const {
  Placement result;
  result.scale_ = scale_ * inner.scale_;
  result.rotationDegrees_ = withinTurn(rotationDegrees_ + inner.rotationDegrees_);
  result.offset_ = apply(inner.offset_);
  return result;
}

KvPoint3d Placement::apply(const KvPoint3d& point) const {
  const Direction direction = directionOf(rotationDegrees_);
  const double x = point.x * scale_;
  const double y = point.y * scale_;
  return {
      x * direction.cosine - y * direction.sine + offset_.x,
      x * direction.sine + y * direction.cosine + offset_.y, point.z * scale_ + offset_.z};
}

double Placement::length(double value) const {
  return value * std::abs(scale_);
}

double Placement::angle(double degrees) const {
  return withinTurn(degrees + rotationDegrees_ + (scale_ < 0.0 ? 180.0 : 0.0));
}

KvPoint3d pointAt(const KvPoint3d& centre, double radius, double degrees) {
  const Direction direction = directionOf(degrees);
  return {centre.x + radius * direction.cosine, centre.y + radius * direction.sine, centre.z};
}

Shape placed(const Shape& shape, const Placement& placement) {
  return std::visit(Placer{placement}, shape);
}

} // namespace simhost
