// The timers of a dialog on a screen: virtual ones, driven by real time. They stop while another window is open, and a
// recording contains exactly how much time they were given.
#pragma once

#include "simhost/ui/virtual_timers.h"

#include <QElapsedTimer>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <optional>

namespace simhost {

class DialogClock final {
public:
  /// `due` is called when time is to be advanced. Manual: time advances only through `timers`.
  explicit DialogClock(std::function<void()> due);

  void start(int timer, int milliseconds);
  void kill(int timer);
  void setByHand() { isByHand_ = true; }
  [[nodiscard]] VirtualTimers& timers() { return timers_; }

  /// Advances the time that has passed. `fire` returns false when the dialog has ended. Returns false when the timers
  /// do not stop.
  bool pass(const std::function<bool(int timer)>& fire);
  /// Time that has passed until now does not count.
  void skip() { watch_.restart(); }
  /// Looks again at when the next timer is due.
  void arm();

  /// An action has been done.
  void markAction();
  /// What must be said of the time since then, so that a replay gives it to the timers: nothing when each timer was
  /// given its time and none is left, else the milliseconds.
  [[nodiscard]] std::optional<std::int64_t> waitToTell() const;

private:
  VirtualTimers timers_;
  QTimer alarm_;
  QElapsedTimer watch_;
  bool isByHand_ = false;
  std::int64_t actionAt_ = 0;   ///< when the last action was done
  std::int64_t dueAt_ = 0;      ///< when each timer that ran then had been due once
  std::int64_t restsSince_ = 0; ///< when the last timer stopped
};

} // namespace simhost
