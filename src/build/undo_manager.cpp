#include "build/undo_manager.h"

namespace brenvolt {

namespace {

/// The count travels through LISP as 16 bits, so differences are taken in 16 bits and a wrap stays consistent.
constexpr std::int32_t countMask = 0xffff;

} // namespace

bool ZanUndoManager::bind(KvDbDatabase* database, std::int32_t startPosition) {
  if (!database_) database_ = database;
  startPosition_ = startPosition;
  return database_ != nullptr;
}

void ZanUndoManager::mark() {
  ++marks_;
  if (!database_) return;
  stack_.push_back(position(database_));
  const KvDbUndoController* controller = database_->undoController();
  canStep_ = controller && !controller->isOff();
}

bool ZanUndoManager::stepBack() {
  KvDbUndoController* controller = database_ ? database_->undoController() : nullptr;
  if (!controller || !canStep_ || stack_.empty()) return false;
  // The group is closed before the count: closing it may make the record that has to be undone.
  controller->closeGroup();
  const std::int32_t count = controller->undoCount();
  const std::int32_t top = stack_.back();
  stack_.pop_back();
  --marks_;
  return undoTo(*controller, top, count);
}

bool ZanUndoManager::rollback() {
  KvDbUndoController* controller = database_ ? database_->undoController() : nullptr;
  if (!controller) return false;
  controller->closeGroup();
  marks_ = 0;
  return undoTo(*controller, startPosition_, controller->undoCount());
}

void ZanUndoManager::unbind() {
  canStep_ = false;
  database_ = nullptr;
}

std::int32_t ZanUndoManager::position(KvDbDatabase* database) {
  KvDbUndoController* controller = database ? database->undoController() : nullptr;
  return controller ? controller->undoCount() : 0;
}

bool ZanUndoManager::undoTo(KvDbUndoController& controller, std::int32_t position, std::int32_t count) {
  return controller.undo((count - position) & countMask) == 0;
}

} // namespace brenvolt
