// Ctrl-C and a termination request while LISP runs: they end the form and report its place; the program continues.
#pragma once

#include "simhost/lisp/evaluator.h"

#include <csignal>

namespace simhost {

class InterruptScope final {
public:
  explicit InterruptScope(lisp::Interpreter& interpreter);
  ~InterruptScope();
  InterruptScope(const InterruptScope&) = delete;
  InterruptScope& operator=(const InterruptScope&) = delete;

private:
  using Handler = void (*)(int);
  lisp::Interpreter* outer_;
  Handler formerInterrupt_;
  Handler formerTermination_;
};

} // namespace simhost
