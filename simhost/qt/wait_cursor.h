// The wait cursor: each window that opens while a caller waits must be usable, so the arrow is shown until it is closed.
#pragma once

#include <vector>

namespace simhost {

class WaitCursor final {
public:
  /// One more (true) or one less of the callers waits.
  void show(bool isShown);
  /// A window opens, and closes.
  void suspend();
  void resume();

private:
  void apply() const;

  int waiting_ = 0;               ///< number of wait cursors since the topmost window opened
  std::vector<int> waitingBelow_; ///< the same for those below it
};

} // namespace simhost
