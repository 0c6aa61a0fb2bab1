// Passes an exception around Qt, which gives no guarantees for exceptions from event handlers: caught there, rethrown
// after the event loop.
#pragma once

#include <exception>
#include <utility>

namespace simhost {

class HeldException final {
public:
  /// Runs what is the flow's. False when it threw; the first exception is held.
  template <typename Body>
  [[nodiscard]] bool guard(Body&& body) {
    try {
      std::forward<Body>(body)();
      return true;
    } catch (...) {
      if (held_ == nullptr) held_ = std::current_exception();
      return false;
    }
  }
  /// Throws what is held, once.
  void throwOn() {
    if (held_ != nullptr) std::rethrow_exception(std::exchange(held_, nullptr));
  }

private:
  std::exception_ptr held_;
};

} // namespace simhost
