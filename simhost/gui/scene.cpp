// Taking a drawing over, and finding in it what a pointer means.
#include "simhost/gui/scene.h"

#include "simhost/drawing/distance.h"
#include "simhost/drawing/geometry.h"
#include "text/compare.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace simhost {

std::wstring EntityFacts::attribute(std::wstring_view tag) const {
  for (const auto& [known, value] : attributes)
    if (brenvolt::equalsOrdinalNoCase(known, tag)) return value;
  return {};
}

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

} // namespace simhost
