// Timers without a clock: time passes only when a step says so, and timers fire in the order in which they are due.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>

namespace simhost {

class VirtualTimers final {
public:
  /// Repeats until killed. A running timer starts anew; a period below one millisecond counts as one.
  void start(int timer, int milliseconds);
  void kill(int timer);

  /// Lets this much time pass. `fire` may start and kill timers; false from it ends the time at once.
  /// False when the timers cannot come to rest: too many firings for the time.
  [[nodiscard]] bool pass(std::int64_t milliseconds, const std::function<bool(int timer)>& fire);
  /// Until each timer that runs now has been due once, 0 when none runs.
  [[nodiscard]] std::int64_t untilAllDue() const;

  [[nodiscard]] bool isIdle() const { return timers_.empty(); }
  /// Until the next timer is due, nothing when none runs.
  [[nodiscard]] std::optional<std::int64_t> untilNextDue() const;
  /// Milliseconds that have passed since the beginning.
  [[nodiscard]] std::int64_t now() const { return now_; }

private:
  struct Timer {
    std::int64_t period = 1;
    std::int64_t due = 0;
    std::uint64_t order = 0; ///< of two timers that are due together the one started first comes first
  };

  [[nodiscard]] std::optional<int> nextDue(std::int64_t until) const;

  std::map<int, Timer> timers_;
  std::int64_t now_ = 0;
  std::uint64_t started_ = 0;
};

} // namespace simhost
