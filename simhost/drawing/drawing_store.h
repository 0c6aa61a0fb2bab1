// The memory of one drawing: objects by handle and, per block, the chain of its entities in drawing order. Every
// primitive here has an exact inverse, which undo replays; rules and the undo log are in the database.
#pragma once

#include "simhost/drawing/entity.h"
#include "simhost/drawing/entity_grid.h"
#include "simhost/drawing/provenance.h"

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace simhost {

/// One entity. An erased one keeps its neighbours as they were when it went, so that undoing in reverse order links
/// it back in the same place.
struct EntityNode {
  KvDbHandle handle;
  KvDbHandle owner; ///< the block's record; for an attribute its block reference
  Entity value;
  bool isErased = false;
  EntityNode* previous = nullptr;
  EntityNode* next = nullptr;
  std::uint64_t order = 0;              ///< grows along the block's chain
  std::vector<KvDbHandle> attributes{}; ///< of a block reference, erased ones included
};

struct BlockNode {
  KvDbHandle handle;
  std::wstring name;
  KvPoint3d basePoint; ///< the point of the block that lands on a reference's position
  EntityNode* first = nullptr;
  EntityNode* last = nullptr;
  std::size_t entityCount = 0; ///< without erased ones
  std::uint64_t nextOrder = 1;
  std::unique_ptr<EntityGrid> grid{}; ///< created by the first query, then kept up to date
};

class DrawingStore final {
public:
  DrawingStore() = default;
  DrawingStore(const DrawingStore&) = delete;
  DrawingStore& operator=(const DrawingStore&) = delete;

  /// The handle that the next new object gets.
  [[nodiscard]] KvDbHandle nextHandle() const { return nextHandle_; }
  void setNextHandle(KvDbHandle handle) { nextHandle_ = handle; }

  /// In the order of their definition.
  [[nodiscard]] const std::vector<std::unique_ptr<BlockNode>>& blocks() const { return blocks_; }
  [[nodiscard]] BlockNode* findBlock(KvDbHandle handle) const;
  /// By name, without case.
  [[nodiscard]] BlockNode* findBlock(std::wstring_view name) const;
  void pushBlock(std::unique_ptr<BlockNode> block);
  [[nodiscard]] std::unique_ptr<BlockNode> popBlock();

  /// Erased entities are found too.
  [[nodiscard]] EntityNode* findEntity(KvDbHandle handle) const;
  /// Adds an entity after all others of its owner, which must exist.
  void attach(std::unique_ptr<EntityNode> entity);
  /// Takes out the entity that was attached last to its owner; it must not be erased.
  [[nodiscard]] std::unique_ptr<EntityNode> detach(KvDbHandle handle);
  void setErased(EntityNode& entity, bool isErased);
  /// Exchanges the entity's value with another one of its kind.
  void exchange(EntityNode& entity, Entity& other);

  /// The block's entities whose boxes overlap `area`, in drawing order; see `EntityGrid::boxOf`.
  [[nodiscard]] std::vector<const EntityNode*> meeting(const BlockNode& block, const Box& area) const;

  /// The neighbours in drawing order, null at the end; also from an entity that has been erased.
  [[nodiscard]] const EntityNode* following(const EntityNode& entity) const;
  [[nodiscard]] const EntityNode* preceding(const EntityNode& entity) const;

  /// In the order of their definition.
  [[nodiscard]] const std::vector<Layer>& layers() const { return layers_; }
  /// By name, without case.
  [[nodiscard]] Layer* findLayer(std::wstring_view name);
  [[nodiscard]] const Layer* findLayer(std::wstring_view name) const;
  void pushLayer(Layer layer);
  [[nodiscard]] Layer popLayer();

  /// Keys in upper case.
  [[nodiscard]] const std::map<std::wstring, VariableValue>& variables() const { return variables_; }
  [[nodiscard]] std::map<std::wstring, VariableValue>& variables() { return variables_; }

  /// The circuits that builds drew, by id.
  [[nodiscard]] const CircuitRecords& circuits() const { return circuits_; }
  [[nodiscard]] CircuitRecords& circuits() { return circuits_; }

private:
  void link(EntityNode& entity);
  void unlink(EntityNode& entity);

  KvDbHandle nextHandle_{1};
  std::vector<std::unique_ptr<BlockNode>> blocks_;
  std::unordered_map<std::uint64_t, BlockNode*> blocksByHandle_;
  /// Names compare without case; a view finds a name without a copy of it.
  struct NameHash {
    using is_transparent = void;
    [[nodiscard]] std::size_t operator()(std::wstring_view name) const;
  };
  struct NameEqual {
    using is_transparent = void;
    [[nodiscard]] bool operator()(std::wstring_view one, std::wstring_view other) const;
  };
  template <class Value>
  using ByName = std::unordered_map<std::wstring, Value, NameHash, NameEqual>;
  ByName<BlockNode*> blocksByName_;
  std::unordered_map<std::uint64_t, std::unique_ptr<EntityNode>> entities_;
  std::vector<Layer> layers_;
  ByName<std::size_t> layersByName_;
  std::map<std::wstring, VariableValue> variables_;
  CircuitRecords circuits_;
};

} // namespace simhost
