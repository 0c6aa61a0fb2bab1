// Timers without a clock: time passes only when a step advances it, and timers fire in the order in which they expire.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>

namespace simhost {

class VirtualTimers final {
public:
  /// Repeats until killed. Restarts a running timer; a period below one millisecond counts as one.
  void start(int timer, int milliseconds);
  void kill(int timer);

  /// Advances the time. `fire` may start and kill timers; if it returns false, the advance ends. Returns false when
  /// the timers do not stop: too many firings for the time.
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
