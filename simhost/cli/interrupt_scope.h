// Ctrl-C and a request to end, while LISP runs: they end the form, which is told with its place, and not the program.
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
