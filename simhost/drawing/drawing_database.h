// A drawing for the rest of the simulated host: the rules of its contents, handles, and an undo log that records every
// change. The plug-in uses the same drawing through the classes of the host API.
#pragma once

#include "host/host_api_database.h"
#include "simhost/drawing/drawing_store.h"
#include "simhost/drawing/entity.h"
#include "simhost/drawing/undo_log.h"

#include <optional>
#include <string>
#include <string_view>

namespace simhost {

inline constexpr std::wstring_view modelSpaceName = L"*Model_Space";
inline constexpr std::wstring_view paperSpaceName = L"*Paper_Space";
/// 1: model space is current, 0: paper space.
inline constexpr std::wstring_view currentSpaceVariable = L"TILEMODE";

/// Why something cannot be done, as a sentence without a full stop; nothing when it can.
using Fault = std::optional<std::wstring>;

/// A new drawing contains both spaces, layer "0" and TILEMODE 1. Every
/// change has two operations: a `...Fault` operation that says whether the
/// change is possible, and the change itself. Calling the change with a
/// fault is a bug.
class DrawingDatabase final : public KvDbDatabase {
public:
  /// Handles stay below this, which leaves room for the database's number in an object id.
  static constexpr std::uint64_t handleLimit = std::uint64_t{1} << 40U;

  DrawingDatabase();
  DrawingDatabase(const DrawingDatabase&) = delete;
  DrawingDatabase& operator=(const DrawingDatabase&) = delete;
  /// No object of it may be open any more. A working database stops being one.
  ~DrawingDatabase() override;

  /// The database of an object id; null when it no longer exists.
  [[nodiscard]] static DrawingDatabase* of(KvDbObjectId id);
  [[nodiscard]] static KvDbHandle handleOf(KvDbObjectId id);
  [[nodiscard]] KvDbObjectId idOf(KvDbHandle handle) const;

  [[nodiscard]] KvDbObjectId blockTableId() const override;
  [[nodiscard]] KvDbObjectId currentSpaceId() const override;
  [[nodiscard]] KvDbStatus objectIdOf(KvDbHandle handle, KvDbObjectId& id) const override;
  [[nodiscard]] KvDbUndoController* undoController() override { return &undoLog_; }

  [[nodiscard]] UndoLog& undoLog() { return undoLog_; }
  [[nodiscard]] const UndoLog& undoLog() const { return undoLog_; }
  [[nodiscard]] const DrawingStore& store() const { return store_; }
  [[nodiscard]] KvDbHandle blockTable() const;
  [[nodiscard]] KvDbHandle modelSpace() const;
  [[nodiscard]] KvDbHandle paperSpace() const;
  [[nodiscard]] KvDbHandle currentSpace() const;
  /// The entity of a handle; null when there is none or it is erased.
  [[nodiscard]] const EntityNode* find(KvDbHandle handle) const;

  [[nodiscard]] Fault blockFault(std::wstring_view name, const KvPoint3d& basePoint) const;
  KvDbHandle addBlock(std::wstring name, const KvPoint3d& basePoint);

  /// `owner`: a block's record, for an attribute its block reference.
  [[nodiscard]] Fault entityFault(KvDbHandle owner, const Entity& entity) const;
  /// Adds the entity after all others of its owner. A missing layer is created.
  KvDbHandle addEntity(KvDbHandle owner, Entity entity);
  /// A change keeps the kind of the entity.
  [[nodiscard]] Fault changeFault(KvDbHandle handle, const Entity& entity) const;
  void changeEntity(KvDbHandle handle, Entity entity);
  /// Erases the entity, a block reference with its attributes. False when there is none to erase.
  bool eraseEntity(KvDbHandle handle);

  [[nodiscard]] static Fault layerFault(const Layer& layer);
  /// Defines the layer or replaces its definition; the name keeps its first spelling.
  void putLayer(Layer layer);

  [[nodiscard]] static Fault variableFault(std::wstring_view name, const VariableValue& value);
  void setVariable(std::wstring_view name, VariableValue value);
  /// Name without case; null when it was never set.
  [[nodiscard]] const VariableValue* variable(std::wstring_view name) const;

  /// Keeps what is known of a circuit, in place of what was; no fields forget it. The id is a handle's text.
  void putCircuit(const std::wstring& id, CircuitFields fields);

  /// What every new entity of a space is marked with from now on, its order counted up; nothing ends it. A host sets
  /// it while a build draws.
  void setStamp(std::optional<Provenance> stamp) { stamp_ = std::move(stamp); }
  [[nodiscard]] const std::optional<Provenance>& stamp() const { return stamp_; }

  /// Objects that were opened and not closed yet.
  [[nodiscard]] int openObjectCount() const { return openObjectCount_; }
  void countOpenObjects(int change) { openObjectCount_ += change; }

private:
  friend class DrawingReader;

  /// The rules for the value of any entity, for every owner.
  [[nodiscard]] Fault valueFault(const Entity& entity) const;
  [[nodiscard]] KvDbHandle takeHandle();
  void useLayer(Entity& entity);
  void markOrigin(Entity& entity, KvDbHandle owner);

  std::uint64_t number_;
  DrawingStore store_;
  UndoLog undoLog_{store_};
  std::optional<Provenance> stamp_;
  int openObjectCount_ = 0;
};

/// A handle as it is shown and saved: hexadecimal, upper case, without leading zeros.
[[nodiscard]] std::wstring formatHandle(KvDbHandle handle);
/// Reads a handle in either case; nothing for a text that is none, for 0 and for one beyond the limit.
[[nodiscard]] std::optional<KvDbHandle> parseHandle(std::wstring_view text);

} // namespace simhost
