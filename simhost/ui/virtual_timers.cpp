// Time for timers, advanced by the caller.
#include "simhost/ui/virtual_timers.h"

#include <algorithm>

namespace simhost {

namespace {

/// A flow that needs more than this without an action of the user hangs.
constexpr int mostFirings = 100000;

} // namespace

void VirtualTimers::start(int timer, int milliseconds) {
  const std::int64_t period = std::max(1, milliseconds);
  timers_[timer] = {period, now_ + period, ++started_};
}

void VirtualTimers::kill(int timer) {
  timers_.erase(timer);
}

bool VirtualTimers::pass(std::int64_t milliseconds, const std::function<bool(int timer)>& fire) {
  const std::int64_t until = now_ + milliseconds;
  for (int firings = 0; firings < mostFirings; ++firings) {
    const std::optional<int> timer = nextDue(until);
    if (!timer) {
      now_ = until;
      return true;
    }
    Timer& due = timers_[*timer];
    now_ = due.due;
    due.due += due.period;
    if (!fire(*timer)) return true;
  }
  return false;
}

std::int64_t VirtualTimers::untilAllDue() const {
  std::int64_t last = now_;
  for (const auto& [id, timer] : timers_)
    last = std::max(last, timer.due);
  return last - now_;
}

std::optional<std::int64_t> VirtualTimers::untilNextDue() const {
  std::optional<std::int64_t> next;
  for (const auto& [id, timer] : timers_)
    next = std::min(next.value_or(timer.due), timer.due);
  if (next) *next -= now_;
  return next;
}

std::optional<int> VirtualTimers::nextDue(std::int64_t until) const {
  const std::pair<const int, Timer>* first = nullptr;
  for (const auto& entry : timers_) {
    const Timer& timer = entry.second;
    if (timer.due > until) continue;
    if (first == nullptr || timer.due < first->second.due ||
        (timer.due == first->second.due && timer.order < first->second.order))
      first = &entry;
  }
  if (first == nullptr) return std::nullopt;
  return first->first;
}

} // namespace simhost
