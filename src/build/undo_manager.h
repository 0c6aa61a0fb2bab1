// Takes the drawing back one step of a build, or to where it stood before the circuit, by counting the host's undo
// records. It keeps no drawing data of its own.
#pragma once

#include "host/host_api_database.h"

#include <cstdint>
#include <deque>

namespace brenvolt {

class ZanUndoManager {
public:
  ZanUndoManager() = default;
  ZanUndoManager(const ZanUndoManager&) = delete;
  ZanUndoManager& operator=(const ZanUndoManager&) = delete;
  virtual ~ZanUndoManager() { unbind(); }

  [[nodiscard]] bool isBound() const { return database_ != nullptr; }
  /// The marks taken and not stepped back: the number of the last run.
  [[nodiscard]] std::int32_t marks() const { return marks_; }
  [[nodiscard]] bool hasSteps() const { return !stack_.empty(); }

  /// Takes the database unless one is bound; a later call only changes the start. True when one is bound.
  bool bind(KvDbDatabase* database, std::int32_t startPosition);
  /// A point to step back to.
  void mark();
  /// Undoes the drawing to the last mark. False without one, or when the host refuses; the mark is always removed.
  [[nodiscard]] bool stepBack();
  /// Takes the drawing back to the start position. The marks' places stay.
  [[nodiscard]] bool rollback();
  void unbind();

  /// The undo count of a database, 0 without one or without undo.
  [[nodiscard]] static std::int32_t position(KvDbDatabase* database);

private:
  [[nodiscard]] bool undoTo(KvDbUndoController& controller, std::int32_t position, std::int32_t count);

  KvDbDatabase* database_ = nullptr;
  std::int32_t marks_ = 0;
  std::int32_t startPosition_ = 0;
  bool canStep_ = false;
  std::deque<std::int32_t> stack_;
};

} // namespace brenvolt
