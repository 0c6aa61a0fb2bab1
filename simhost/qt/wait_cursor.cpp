// Counting who waits.
#include "simhost/qt/wait_cursor.h"

#include <QCursor>
#include <QGuiApplication>

#include <utility>

namespace simhost {

void WaitCursor::show(bool isShown) {
  waiting_ += isShown ? 1 : -1;
  apply();
}

void WaitCursor::suspend() {
  waitingBelow_.push_back(std::exchange(waiting_, 0));
  apply();
}

void WaitCursor::resume() {
  waiting_ += waitingBelow_.back();
  waitingBelow_.pop_back();
  apply();
}

void WaitCursor::apply() const {
  const bool isShown = QGuiApplication::overrideCursor() != nullptr;
  if (waiting_ > 0 && !isShown) QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  if (waiting_ <= 0 && isShown) QGuiApplication::restoreOverrideCursor();
}

} // namespace simhost
