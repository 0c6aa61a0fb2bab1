// Signals on their way into the interpreter.
#include "simhost/cli/interrupt_scope.h"

#include <utility>

namespace simhost {

namespace {

lisp::Interpreter* interruptible = nullptr;

/// A second signal is for what does not come back to LISP, and ends the program.
void interruptForm(int signal) {
  if (interruptible != nullptr) interruptible->interrupt();
  std::signal(signal, SIG_DFL);
}

} // namespace

InterruptScope::InterruptScope(lisp::Interpreter& interpreter)
    : outer_(std::exchange(interruptible, &interpreter)),
      formerInterrupt_(std::signal(SIGINT, interruptForm)),
      formerTermination_(std::signal(SIGTERM, interruptForm)) {}

InterruptScope::~InterruptScope() {
  std::signal(SIGTERM, formerTermination_);
  std::signal(SIGINT, formerInterrupt_);
  interruptible = outer_;
}

} // namespace simhost
