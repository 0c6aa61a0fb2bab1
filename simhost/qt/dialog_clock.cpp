// Driving virtual timers by the clock.
#include "simhost/qt/dialog_clock.h"

#include <algorithm>
#include <utility>

namespace simhost {

DialogClock::DialogClock(std::function<void()> due) {
  alarm_.setSingleShot(true);
  QObject::connect(&alarm_, &QTimer::timeout, &alarm_, std::move(due));
  watch_.start();
}

void DialogClock::start(int timer, int milliseconds) {
  if (timers_.isIdle()) watch_.restart();
  timers_.start(timer, milliseconds);
}

void DialogClock::kill(int timer) {
  timers_.kill(timer);
  if (timers_.isIdle()) restsSince_ = timers_.now();
}

bool DialogClock::pass(const std::function<bool(int timer)>& fire) {
  if (isByHand_) return true;
  const std::int64_t passed = watch_.restart();
  return timers_.isIdle() || timers_.pass(passed, fire);
}

void DialogClock::arm() {
  alarm_.stop();
  const std::optional<std::int64_t> next = timers_.untilNextDue();
  if (isByHand_ || !next) return;
  const std::int64_t left = std::max<std::int64_t>(1, *next - watch_.elapsed());
  alarm_.start(static_cast<int>(left));
}

void DialogClock::markAction() {
  actionAt_ = timers_.now();
  dueAt_ = actionAt_ + timers_.untilAllDue();
}

std::optional<std::int64_t> DialogClock::waitToTell() const {
  const std::int64_t passed = timers_.now() - actionAt_;
  const bool ran = dueAt_ > actionAt_;
  const bool isAsUsual = !ran || (timers_.isIdle() && restsSince_ <= dueAt_);
  if (isAsUsual) return std::nullopt;
  return passed;
}

} // namespace simhost
