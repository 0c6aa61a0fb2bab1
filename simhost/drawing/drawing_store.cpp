// Attaching and taking out, linking and unlinking: each pair undoes the other exactly.
#include "simhost/drawing/drawing_store.h"

#include "text/assertion.h"
#include "text/compare.h"

#include <algorithm>
#include <utility>

namespace simhost {

std::size_t DrawingStore::NameHash::operator()(std::wstring_view name) const {
  return brenvolt::OrdinalNoCaseHash()(name);
}

bool DrawingStore::NameEqual::operator()(std::wstring_view one, std::wstring_view other) const {
  return brenvolt::equalsOrdinalNoCase(one, other);
}

BlockNode* DrawingStore::findBlock(KvDbHandle handle) const {
  const auto found = blocksByHandle_.find(handle.value());
  return found == blocksByHandle_.end() ? nullptr : found->second;
}

BlockNode* DrawingStore::findBlock(std::wstring_view name) const {
  const auto found = blocksByName_.find(name);
  return found == blocksByName_.end() ? nullptr : found->second;
}

void DrawingStore::pushBlock(std::unique_ptr<BlockNode> block) {
  blocksByHandle_.emplace(block->handle.value(), block.get());
  blocksByName_.emplace(block->name, block.get());
  blocks_.push_back(std::move(block));
}

std::unique_ptr<BlockNode> DrawingStore::popBlock() {
  std::unique_ptr<BlockNode> block = std::move(blocks_.back());
  blocks_.pop_back();
  blocksByHandle_.erase(block->handle.value());
  blocksByName_.erase(block->name);
  return block;
}

EntityNode* DrawingStore::findEntity(KvDbHandle handle) const {
  const auto found = entities_.find(handle.value());
  return found == entities_.end() ? nullptr : found->second.get();
}

void DrawingStore::attach(std::unique_ptr<EntityNode> entity) {
  EntityNode& node = *entity;
  if (BlockNode* block = findBlock(node.owner)) {
    node.previous = block->last;
    node.next = nullptr;
    node.order = block->nextOrder++;
    link(node);
  } else {
    EntityNode* reference = findEntity(node.owner);
    BRENVOLT_ASSERT(reference != nullptr, "an entity needs an owner");
    reference->attributes.push_back(node.handle);
  }
  entities_.emplace(node.handle.value(), std::move(entity));
}

std::unique_ptr<EntityNode> DrawingStore::detach(KvDbHandle handle) {
  const auto found = entities_.find(handle.value());
  BRENVOLT_ASSERT(found != entities_.end(), "an entity that is taken out must be there");
  std::unique_ptr<EntityNode> entity = std::move(found->second);
  entities_.erase(found);
  if (findBlock(entity->owner) != nullptr) {
    unlink(*entity);
  } else {
    findEntity(entity->owner)->attributes.pop_back();
  }
  return entity;
}

void DrawingStore::setErased(EntityNode& entity, bool isErased) {
  if (entity.isErased == isErased) return;
  entity.isErased = isErased;
  if (findBlock(entity.owner) == nullptr) return;
  if (isErased) {
    unlink(entity);
  } else {
    link(entity);
  }
}

void DrawingStore::exchange(EntityNode& entity, Entity& other) {
  std::swap(entity.value, other);
  const BlockNode* block = findBlock(entity.owner);
  if (block == nullptr || block->grid == nullptr || entity.isErased) return;
  block->grid->remove(entity.handle);
  block->grid->insert(entity.handle, EntityGrid::boxOf(entity.value.shape));
}

std::vector<const EntityNode*> DrawingStore::meeting(const BlockNode& block, const Box& area) const {
  if (block.grid == nullptr) {
    BlockNode& node = *findBlock(block.handle);
    node.grid = std::make_unique<EntityGrid>();
    for (const EntityNode* entity = block.first; entity != nullptr; entity = entity->next)
      node.grid->insert(entity->handle, EntityGrid::boxOf(entity->value.shape));
  }
  std::vector<const EntityNode*> found;
  for (const KvDbHandle handle : block.grid->meeting(area))
    found.push_back(findEntity(handle));
  std::sort(found.begin(), found.end(), [](const EntityNode* one, const EntityNode* other) {
    return one->order < other->order;
  });
  return found;
}

const EntityNode* DrawingStore::following(const EntityNode& entity) const {
  const EntityNode* next = entity.next;
  while (next != nullptr && next->isErased)
    next = next->next;
  if (next != nullptr || !entity.isErased) return next;
  // The entity was the last one when it went; what came later is found from the end.
  const BlockNode* block = findBlock(entity.owner);
  if (block == nullptr || block->last == nullptr || block->last->order < entity.order) return nullptr;
  next = block->last;
  while (next->previous != nullptr && next->previous->order > entity.order)
    next = next->previous;
  return next;
}

const EntityNode* DrawingStore::preceding(const EntityNode& entity) const {
  const EntityNode* previous = entity.previous;
  while (previous != nullptr && previous->isErased)
    previous = previous->previous;
  return previous;
}

Layer* DrawingStore::findLayer(std::wstring_view name) {
  const auto found = layersByName_.find(name);
  return found == layersByName_.end() ? nullptr : &layers_[found->second];
}

const Layer* DrawingStore::findLayer(std::wstring_view name) const {
  const auto found = layersByName_.find(name);
  return found == layersByName_.end() ? nullptr : &layers_[found->second];
}

void DrawingStore::pushLayer(Layer layer) {
  layersByName_.emplace(layer.name, layers_.size());
  layers_.push_back(std::move(layer));
}

Layer DrawingStore::popLayer() {
  Layer layer = std::move(layers_.back());
  layers_.pop_back();
  layersByName_.erase(layer.name);
  return layer;
}

void DrawingStore::link(EntityNode& entity) {
  BlockNode& block = *findBlock(entity.owner);
  (entity.previous != nullptr ? entity.previous->next : block.first) = &entity;
  (entity.next != nullptr ? entity.next->previous : block.last) = &entity;
  ++block.entityCount;
  if (block.grid != nullptr) block.grid->insert(entity.handle, EntityGrid::boxOf(entity.value.shape));
}

void DrawingStore::unlink(EntityNode& entity) {
  BlockNode& block = *findBlock(entity.owner);
  (entity.previous != nullptr ? entity.previous->next : block.first) = entity.next;
  (entity.next != nullptr ? entity.next->previous : block.last) = entity.previous;
  --block.entityCount;
  if (block.grid != nullptr) block.grid->remove(entity.handle);
}

} // namespace simhost
