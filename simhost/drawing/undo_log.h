// The drawing's memory of what was done, as a log of changes that can be played backwards and forwards. Its cost is
// that of the changes, never that of the drawing.
//
// A record contains all changes between two marks. Marks are: `closeGroup()`, an undo or redo, and reading the count,
// because the caller may want to return to the position that it has read. Between marks the next change opens a
// record by itself, so an evaluation without changes leaves none. A host closes the group before and after each
// evaluation or command (`UndoGroup`), which makes it one step for the user unless the running code has read
// positions in between.
#pragma once

#include "simhost/drawing/drawing_store.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace simhost {

// Each change contains what its inverse needs; applying it turns it into its own inverse.

struct EntityCreation {
  KvDbHandle handle;
  std::unique_ptr<EntityNode> undone{}; ///< the entity while its creation is undone
};

struct EntityErasure {
  KvDbHandle handle;
};

struct EntityReplacement {
  KvDbHandle handle;
  Entity other;
};

struct BlockCreation {
  KvDbHandle handle;
  std::unique_ptr<BlockNode> undone{};
};

struct LayerCreation {
  std::optional<Layer> undone{};
};

struct LayerReplacement {
  Layer other;
};

struct VariableReplacement {
  std::wstring name; ///< upper case
  std::optional<VariableValue> other{};
};

struct CircuitReplacement {
  std::wstring id;
  std::optional<CircuitFields> other{};
};

using Change = std::variant<
    EntityCreation, EntityErasure, EntityReplacement, BlockCreation, LayerCreation, LayerReplacement,
    VariableReplacement, CircuitReplacement>;

class UndoLog final : public KvDbUndoController {
public:
  /// The store must outlive the log.
  explicit UndoLog(DrawingStore& store) : store_(store) {}
  UndoLog(const UndoLog&) = delete;
  UndoLog& operator=(const UndoLog&) = delete;

  [[nodiscard]] int undoCount() const override;
  [[nodiscard]] bool isOff() const override { return isOff_; }
  void closeGroup() override { isOpen_ = false; }
  /// Refused for a negative number, for more records than there are, and while undo is off. No records: nothing
  /// to do, always a success.
  int undo(int records) override;

  /// Records that were undone and can come back; any new change drops them.
  [[nodiscard]] int redoCount() const { return static_cast<int>(undone_.size()); }
  /// As `undo`, in the other direction.
  int redo(int records);
  /// Nothing can be redone from now on: what was undone was not a step of the user's.
  void forgetUndone() { undone_.clear(); }
  class KeptRedo;

  /// Switching off forgets all records: without the changes made meanwhile they could not be played any more.
  void setOff(bool isOff);
  /// Grows with every change of the drawing, also with undone ones and while undo is off: a display compares it to
  /// decide whether it must draw again.
  [[nodiscard]] std::uint64_t changeCount() const { return changeCount_; }
  /// Grows with every undo and redo, a roll-back included: code that counts changes has to start again.
  [[nodiscard]] std::uint64_t replayCount() const { return replayCount_; }
  /// Identifies states of the drawing. Undo and redo return to earlier states, so code that keeps the state of the
  /// last save knows whether the drawing is the saved one. An open group grows with each change.
  struct State {
    std::uint64_t record = 0;   ///< the last one that is done, 0 for none
    std::size_t changes = 0;    ///< in it
    std::uint64_t unlogged = 0; ///< changes while undo was off, which cannot be taken back
    friend bool operator==(const State&, const State&) = default;
  };
  [[nodiscard]] State state() const {
    if (done_.empty()) return {0, 0, unlogged_};
    return {done_.back().id, done_.back().changes.size(), unlogged_};
  }
  /// Enters a change that has just been made in the store.
  void note(Change change);

  /// A position in the log that is not a mark: records do not end there.
  struct Place {
    std::size_t records = 0;
    std::size_t changes = 0; ///< of the last record
    bool isOpen = false;
  };
  [[nodiscard]] Place place() const {
    return {done_.size(), done_.empty() ? 0 : done_.back().changes.size(), isOpen_};
  }
  /// Undoes everything recorded since, without redo. Does nothing while undo is off, or when the recorded changes were
  /// already undone.
  void rollBack(const Place& place);

private:
  struct Record {
    std::uint64_t id = 0; ///< never used again
    std::vector<Change> changes{};
  };

  /// Undoes the changes after the first `keep`, in reverse order.
  void playBack(Record& record, std::size_t keep);

  DrawingStore& store_;
  std::vector<Record> done_;
  std::vector<Record> undone_;
  mutable bool isOpen_ = false;
  bool isOff_ = false;
  std::uint64_t changeCount_ = 0;
  std::uint64_t replayCount_ = 0;
  std::uint64_t lastId_ = 0;
  std::uint64_t unlogged_ = 0;
  KeptRedo* kept_ = nullptr; ///< of the command that runs
};

/// One command. When it leaves the drawing as it was, what could come back before it can come back again.
class UndoLog::KeptRedo final {
public:
  explicit KeptRedo(UndoLog& log) : log_(log), state_(log.state()) { log_.kept_ = this; }
  KeptRedo(const KeptRedo&) = delete;
  KeptRedo& operator=(const KeptRedo&) = delete;
  ~KeptRedo() { log_.kept_ = nullptr; }

  /// False, and nothing is done, when the drawing is not as it was.
  bool restore();

private:
  friend class UndoLog;

  UndoLog& log_;
  State state_;
  std::optional<std::vector<Record>> undone_; ///< what the first change of the command would have dropped
};

/// Makes what a scope changes a record of its own.
class UndoGroup final {
public:
  explicit UndoGroup(UndoLog& log) : log_(log) { log_.closeGroup(); }
  ~UndoGroup() { log_.closeGroup(); }
  UndoGroup(const UndoGroup&) = delete;
  UndoGroup& operator=(const UndoGroup&) = delete;

private:
  UndoLog& log_;
};

} // namespace simhost
