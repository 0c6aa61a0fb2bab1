// How each kind of change is played backwards and forwards.
#include "simhost/drawing/undo_log.h"

#include "text/assertion.h"

#include <type_traits>
#include <utility>

namespace simhost {
namespace {

enum class Direction { backwards, forwards };

void play(DrawingStore& store, EntityCreation& change, Direction direction) {
  if (direction == Direction::backwards) {
    change.undone = store.detach(change.handle);
    // The counter is restored too: a drawing undone to an earlier state is saved as the same bytes.
    store.setNextHandle(change.handle);
  } else {
    store.attach(std::move(change.undone));
    store.setNextHandle(KvDbHandle(change.handle.value() + 1));
  }
}

void play(DrawingStore& store, EntityErasure& change, Direction direction) {
  store.setErased(*store.findEntity(change.handle), direction == Direction::forwards);
}

void play(DrawingStore& store, EntityReplacement& change, Direction /*direction*/) {
  store.exchange(*store.findEntity(change.handle), change.other);
}

void play(DrawingStore& store, BlockCreation& change, Direction direction) {
  if (direction == Direction::backwards) {
    change.undone = store.popBlock();
    store.setNextHandle(change.handle);
  } else {
    store.pushBlock(std::move(change.undone));
    store.setNextHandle(KvDbHandle(change.handle.value() + 1));
  }
}

void play(DrawingStore& store, LayerCreation& change, Direction direction) {
  if (direction == Direction::backwards) {
    change.undone = store.popLayer();
  } else {
    store.pushLayer(std::move(*change.undone));
    change.undone.reset();
  }
}

void play(DrawingStore& store, LayerReplacement& change, Direction /*direction*/) {
  // Both values have the same name but for its case, so the name index stays right.
  std::swap(*store.findLayer(change.other.name), change.other);
}

/// Exchanges what a map holds for a key, nothing included, with the change's other value.
template <typename Map, typename Value>
void exchange(Map& map, const std::wstring& key, std::optional<Value>& other) {
  const auto found = map.find(key);
  std::optional<Value> now;
  if (found != map.end()) now = std::move(found->second);
  if (other) {
    map[key] = std::move(*other);
  } else {
    map.erase(key);
  }
  other = std::move(now);
}

void play(DrawingStore& store, VariableReplacement& change, Direction /*direction*/) {
  exchange(store.variables(), change.name, change.other);
}

void play(DrawingStore& store, CircuitReplacement& change, Direction /*direction*/) {
  exchange(store.circuits(), change.id, change.other);
}

} // namespace

int UndoLog::undoCount() const {
  isOpen_ = false;
  return static_cast<int>(done_.size());
}

void UndoLog::playBack(Record& record, std::size_t keep) {
  for (std::size_t i = record.changes.size(); i-- > keep;)
    std::visit([&](auto& one) { play(store_, one, Direction::backwards); }, record.changes[i]);
}

int UndoLog::undo(int records) {
  if (records == 0) return 0;
  if (isOff_ || records < 0 || records > undoCount()) return 1;
  ++changeCount_;
  ++replayCount_;
  for (; records > 0; --records) {
    Record record = std::move(done_.back());
    done_.pop_back();
    playBack(record, 0);
    undone_.push_back(std::move(record));
  }
  return 0;
}

int UndoLog::redo(int records) {
  if (records == 0) return 0;
  if (isOff_ || records < 0 || records > redoCount()) return 1;
  ++changeCount_;
  ++replayCount_;
  for (; records > 0; --records) {
    Record record = std::move(undone_.back());
    undone_.pop_back();
    for (Change& change : record.changes) {
      std::visit([&](auto& one) { play(store_, one, Direction::forwards); }, change);
    }
    done_.push_back(std::move(record));
  }
  closeGroup();
  return 0;
}

void UndoLog::rollBack(const Place& place) {
  const auto changesNow = [this] { return done_.empty() ? 0 : done_.back().changes.size(); };
  const bool isBehind =
      done_.size() > place.records || (done_.size() == place.records && changesNow() >= place.changes);
  if (isOff_ || !isBehind) return;
  ++changeCount_;
  ++replayCount_;
  for (; done_.size() > place.records; done_.pop_back())
    playBack(done_.back(), 0);
  if (!done_.empty()) {
    playBack(done_.back(), place.changes);
    std::vector<Change>& changes = done_.back().changes;
    changes.erase(changes.begin() + static_cast<std::ptrdiff_t>(place.changes), changes.end());
  }
  isOpen_ = place.isOpen;
}

void UndoLog::setOff(bool isOff) {
  if (isOff == isOff_) return;
  isOff_ = isOff;
  closeGroup();
  if (!done_.empty()) ++unlogged_; // the state that is kept is none of the log's any more
  done_.clear();
  undone_.clear();
}

bool UndoLog::KeptRedo::restore() {
  if (log_.state() != state_) return false;
  if (undone_) log_.undone_ = std::move(*undone_);
  undone_.reset();
  return true;
}

void UndoLog::note(Change change) {
  ++changeCount_;
  if (isOff_) {
    ++unlogged_;
    return;
  }
  // Records fit only the state that they were undone from.
  if (kept_ != nullptr && !kept_->undone_ && state() == kept_->state_) kept_->undone_ = std::move(undone_);
  undone_.clear();
  if (!isOpen_) done_.push_back({++lastId_});
  isOpen_ = true;
  done_.back().changes.push_back(std::move(change));
}

} // namespace simhost
