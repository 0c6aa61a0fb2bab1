// Collecting what is to be seen, and the measures that all pictures share.
#include "simhost/drawing/display_list.h"

#include "simhost/drawing/geometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_map>
#include <utility>

namespace simhost {
namespace {

/// Height of a capital letter of DejaVu Sans in units of the font size: drawings give the letter's height.
constexpr double capitalHeight = 0.729;
/// Mean advance of its letters in the same unit, for the extents of texts.
constexpr double meanAdvance = 0.6;
constexpr std::size_t shapeLimit = 500'000;
constexpr int nestingLimit = 200;

class Collector final {
public:
  explicit Collector(const DrawingDatabase& drawing) : drawing_(drawing) {
    const std::vector<Layer>& layers = drawing.store().layers();
    for (std::size_t index = 0; index < layers.size(); ++index)
      layerPlaces_[&layers[index]] = static_cast<std::uint32_t>(index);
  }

  /// False when there is too much to show. `source`: the entity of the space that contains the block, null for the
  /// space itself.
  [[nodiscard]] bool collect(
      const BlockNode& block, const Placement& placement, const EntityNode* source = nullptr,
      int nesting = 0) {
    if (nesting > nestingLimit) return false;
    for (const EntityNode* entity = block.first; entity != nullptr; entity = entity->next) {
      if (++visited_ > shapeLimit) return false;
      const EntityNode& shown = source == nullptr ? *entity : *source;
      const auto* reference = std::get_if<BlockReference>(&entity->value.shape);
      if (reference == nullptr) {
        if (nesting == 0 || entity->value.kind() != EntityKind::attributeDefinition)
          add(entity->value, placement, shown.handle);
        continue;
      }
      const BlockNode& inner = *drawing_.store().findBlock(reference->block);
      const Placement innerPlacement(
          inner.basePoint, reference->position, reference->scale, reference->rotationDegrees);
      if (!collect(inner, placement.of(innerPlacement), &shown, nesting + 1)) return false;
      for (const KvDbHandle handle : entity->attributes)
        if (const EntityNode* attribute = drawing_.find(handle))
          add(attribute->value, placement, shown.handle);
    }
    return true;
  }

  [[nodiscard]] std::vector<DisplayItem> take() { return std::move(items_); }

private:
  void add(const Entity& entity, const Placement& placement, KvDbHandle source) {
    Shape shape = placed(entity.shape, placement);
    if (auto* attribute = std::get_if<Attribute>(&shape)) {
      if (!attribute->isVisible) return;
      shape = Text(attribute->text);
    } else if (auto* definition = std::get_if<AttributeDefinition>(&shape)) {
      Text text = definition->text;
      text.text = definition->tag;
      shape = text;
    }
    const Layer& layer = *drawing_.store().findLayer(entity.layer);
    items_.push_back(
        {std::move(shape), entity.colour.value_or(layer.colour), layer.lineType, layerPlaces_.at(&layer),
         source});
  }

  const DrawingDatabase& drawing_;
  std::unordered_map<const Layer*, std::uint32_t> layerPlaces_;
  std::vector<DisplayItem> items_;
  std::size_t visited_ = 0;
};

struct Measure {
  Box& box;

  void operator()(const Line& line) const {
    box.include(line.from);
    box.include(line.to);
  }
  void operator()(const Polyline& polyline) const {
    for (const KvPoint3d& point : polyline.points)
      box.includeAround(point, polyline.width / 2.0);
  }
  void operator()(const Circle& circle) const { box.includeAround(circle.centre, circle.radius); }
  void operator()(const Arc& arc) const {
    box.include(pointAt(arc.centre, arc.radius, arc.startDegrees));
    box.include(pointAt(arc.centre, arc.radius, arc.endDegrees));
    for (const double quarter : {0.0, 90.0, 180.0, 270.0})
      if (std::fmod(quarter - arc.startDegrees + 720.0, 360.0) < turnOf(arc))
        box.include(pointAt(arc.centre, arc.radius, quarter));
  }
  void operator()(const Text& text) const {
    for (const KvPoint3d& corner : textCorners(text))
      box.include(corner);
  }
  void operator()(const BlockReference& /*reference*/) const {}
  void operator()(const Attribute& /*attribute*/) const {}
  void operator()(const AttributeDefinition& /*definition*/) const {}
};

double anchorOf(Justification justification) {
  switch (justification) {
  case Justification::left:
    return 0.0;
  case Justification::right:
    return 1.0;
  case Justification::centre:
  case Justification::middle:
    break;
  }
  return 0.5;
}

} // namespace

std::optional<std::vector<DisplayItem>> displayList(const DrawingDatabase& drawing, KvDbHandle block) {
  const BlockNode* node = drawing.store().findBlock(block);
  if (node == nullptr) return std::vector<DisplayItem>();
  Collector collector(drawing);
  if (!collector.collect(*node, Placement())) return std::nullopt;
  return collector.take();
}

Box boxOf(const Shape& shape) {
  Box box;
  std::visit(Measure{box}, shape);
  return box;
}

double turnOf(const Arc& arc) {
  const double turn = std::fmod(arc.endDegrees - arc.startDegrees, 360.0);
  return turn <= 0.0 ? turn + 360.0 : turn;
}

TextPlace textPlace(const Text& text) {
  KvPoint3d position = text.position;
  if (text.justification == Justification::middle)
    position = pointAt(position, -text.height / 2.0, text.rotationDegrees + 90.0);
  return {position, text.height / capitalHeight, anchorOf(text.justification)};
}

std::array<KvPoint3d, 4> textCorners(const Text& text) {
  const double length = static_cast<double>(text.text.size()) * text.height / capitalHeight * meanAdvance;
  const double start = -length * anchorOf(text.justification);
  const double low = text.justification == Justification::middle ? -0.75 : -0.25; // descenders
  const auto corner = [&](double along, double up) {
    const KvPoint3d base = pointAt(text.position, along, text.rotationDegrees);
    return pointAt(base, up * text.height, text.rotationDegrees + 90.0);
  };
  const double high = low + 1.5;
  return {corner(start, low), corner(start + length, low), corner(start + length, high), corner(start, high)};
}

const std::vector<double>& dashesOf(LineType type) {
  static const std::array<std::vector<double>, lineTypeCount> dashes{
      std::vector<double>{}, {9.0, 5.0}, {1.5, 4.0}, {10.0, 4.0, 1.5, 4.0}};
  return dashes[static_cast<std::size_t>(type)];
}

Colour readable(Colour colour, Paper paper) {
  const double brightness = 0.299 * colour.red + 0.587 * colour.green + 0.114 * colour.blue;
  constexpr double brightest = 110.0; // on light paper
  constexpr double darkest = 185.0;   // on dark paper, where thin letters look darker than they are
  if (paper == Paper::light) {
    if (brightness <= brightest) return colour;
    const auto darker = [&](std::uint8_t part) {
      return static_cast<std::uint8_t>(part * brightest / brightness);
    };
    return {darker(colour.red), darker(colour.green), darker(colour.blue)};
  }
  if (brightness >= darkest) return colour;
  // Mixed with white, as scaling would leave black black and pure blue dark.
  const double share = (darkest - brightness) / (255.0 - brightness);
  const auto lighter = [&](std::uint8_t part) {
    return static_cast<std::uint8_t>(part + (255.0 - part) * share);
  };
  return {lighter(colour.red), lighter(colour.green), lighter(colour.blue)};
}

} // namespace simhost
