// An opened object of the drawing, closed on every way out.
#pragma once

#include "host/host_api_database.h"

namespace brenvolt {

/// Holds an object open as `Object`; empty when it does not open or is of another class.
template <class Object>
class OpenObject final {
public:
  OpenObject(KvDbObjectId id, KvOpenMode mode) {
    if (kvdbOpenKvDbObject(opened_, id, mode) != KvDbStatus::ok) return;
    object_ = dynamic_cast<Object*>(opened_);
  }
  ~OpenObject() {
    if (opened_) opened_->close();
  }
  OpenObject(const OpenObject&) = delete;
  OpenObject& operator=(const OpenObject&) = delete;

  explicit operator bool() const { return object_ != nullptr; }
  [[nodiscard]] Object* operator->() const { return object_; }

private:
  KvDbObject* opened_ = nullptr;
  Object* object_ = nullptr;
};

/// Calls `visit(KvDbObjectId)` for each entity of a block in drawing order.
template <class Visit>
void forEachEntity(KvDbObjectId blockRecord, Visit&& visit) {
  const OpenObject<KvDbBlockTableRecord> block(blockRecord, KvOpenMode::forRead);
  if (!block) return;
  const auto iterator = block->newIterator();
  for (iterator->start(); !iterator->done(); iterator->step())
    visit(iterator->entityId());
}

} // namespace brenvolt
