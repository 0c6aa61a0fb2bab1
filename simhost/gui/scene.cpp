// Taking a drawing over, and finding in it what a pointer means.
#include "simhost/gui/scene.h"

#include "simhost/drawing/geometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace simhost {
namespace {

double distanceToSegment(const KvPoint3d& from, const KvPoint3d& to, const KvPoint3d& point) {
  const double along = to.x - from.x;
  const double up = to.y - from.y;
  const double square = along * along + up * up;
  double place = square > 0.0 ? ((point.x - from.x) * along + (point.y - from.y) * up) / square : 0.0;
  place = std::clamp(place, 0.0, 1.0);
  return std::hypot(point.x - from.x - place * along, point.y - from.y - place * up);
}

struct Distance {
  const KvPoint3d& point;

  double operator()(const Line& line) const { return distanceToSegment(line.from, line.to, point); }

  double operator()(const Polyline& polyline) const {
    double nearest = std::numeric_limits<double>::infinity();
    const std::size_t count = polyline.points.size();
    for (std::size_t index = polyline.isClosed ? 0 : 1; index < count; ++index) {
      const KvPoint3d& from = polyline.points[index == 0 ? count - 1 : index - 1];
      nearest = std::min(nearest, distanceToSegment(from, polyline.points[index], point));
    }
    return std::max(0.0, nearest - polyline.width / 2.0);
  }

  double operator()(const Circle& circle) const {
    return std::abs(std::hypot(point.x - circle.centre.x, point.y - circle.centre.y) - circle.radius);
  }

  double operator()(const Arc& arc) const {
    const double angle =
        std::atan2(point.y - arc.centre.y, point.x - arc.centre.x) * 180.0 / std::numbers::pi;
    double behindStart = std::fmod(angle - arc.startDegrees, 360.0);
    if (behindStart < 0.0) behindStart += 360.0;
    if (behindStart <= turnOf(arc)) return (*this)(Circle{arc.centre, arc.radius});
    const KvPoint3d start = pointAt(arc.centre, arc.radius, arc.startDegrees);
    const KvPoint3d end = pointAt(arc.centre, arc.radius, arc.endDegrees);
    return std::min(
        std::hypot(point.x - start.x, point.y - start.y), std::hypot(point.x - end.x, point.y - end.y));
  }

  double operator()(const Text& text) const {
    if (text.text.empty()) return std::numeric_limits<double>::infinity();
    const auto corners = textCorners(text);
    bool isInside = true;
    double nearest = std::numeric_limits<double>::infinity();
    for (std::size_t index = 0; index < corners.size(); ++index) {
      const KvPoint3d& from = corners[index];
      const KvPoint3d& to = corners[(index + 1) % corners.size()];
      nearest = std::min(nearest, distanceToSegment(from, to, point));
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

bool Scene::load(const DrawingDatabase& drawing, KvDbHandle space) {
  layerNames_.clear();
  for (const Layer& layer : drawing.store().layers())
    layerNames_.push_back(layer.name);
  markHidden();
  std::optional<std::vector<DisplayItem>> items = displayList(drawing, space);
  const bool isLoaded = items.has_value();
  items_ = isLoaded ? std::move(*items) : std::vector<DisplayItem>();
  boxes_.clear();
  boxes_.reserve(items_.size());
  for (const DisplayItem& item : items_)
    boxes_.push_back(boxOf(item.shape));
  index_ = BoxIndex(boxes_);
  return isLoaded;
}

void Scene::setHiddenLayers(std::set<std::wstring> names) {
  hiddenLayers_ = std::move(names);
  markHidden();
}

void Scene::markHidden() {
  isHidden_.clear();
  for (const std::wstring& name : layerNames_)
    isHidden_.push_back(hiddenLayers_.contains(name));
}

std::vector<std::uint32_t> Scene::itemsIn(const Box& area) const {
  std::vector<std::uint32_t> found = index_.meeting(area);
  std::erase_if(found, [this](std::uint32_t number) { return !isShown(items_[number]); });
  return found;
}

std::optional<KvDbHandle> Scene::entityAt(const KvPoint3d& point, double reach) const {
  Box area;
  area.includeAround(point, reach);
  std::optional<KvDbHandle> nearest;
  double shortest = reach;
  for (const std::uint32_t number : itemsIn(area)) {
    const double distance = distanceTo(items_[number].shape, point);
    if (distance > shortest) continue;
    shortest = distance;
    nearest = items_[number].entity;
  }
  return nearest;
}

std::vector<std::uint32_t> Scene::itemsOf(KvDbHandle entity) const {
  std::vector<std::uint32_t> found;
  for (std::uint32_t number = 0; number < items_.size(); ++number)
    if (items_[number].entity == entity && isShown(items_[number])) found.push_back(number);
  return found;
}

std::optional<EntityFacts> factsOf(const DrawingDatabase& drawing, KvDbHandle handle) {
  const EntityNode* entity = drawing.find(handle);
  if (entity == nullptr) return std::nullopt;
  EntityFacts facts;
  facts.kind = entityKindName(entity->value.kind());
  facts.layer = entity->value.layer;
  facts.handle = formatHandle(handle);
  if (const auto* reference = std::get_if<BlockReference>(&entity->value.shape))
    facts.block = drawing.store().findBlock(reference->block)->name;
  for (const KvDbHandle attached : entity->attributes) {
    const EntityNode* node = drawing.find(attached);
    const auto* attribute = node == nullptr ? nullptr : std::get_if<Attribute>(&node->value.shape);
    if (attribute != nullptr) facts.attributes.emplace_back(attribute->tag, attribute->text.text);
  }
  return facts;
}

double distanceTo(const Shape& shape, const KvPoint3d& point) {
  return std::visit(Distance{point}, shape);
}

} // namespace simhost
