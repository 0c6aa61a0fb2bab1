// What the LISP tests share: a form in, its printed value or its error out.
#pragma once

#include "simhost/lisp/evaluator.h"
#include "simhost/lisp/printer.h"
#include "text/encoding.h"

#include <string>
#include <string_view>

namespace simhost::lisp {

/// One row of a table test, both in UTF-8.
struct Expectation final {
  std::string_view form;
  std::string_view printed;
};

/// The printed value of a text's last form, or "error: " and the error's line.
inline std::string evaluated(Interpreter& interpreter, std::string_view text) {
  try {
    return brenvolt::toUtf8(printValue(interpreter.run(brenvolt::fromUtf8(text), L"test.lsp")));
  } catch (const LispError& error) {
    return std::string("error: ") + error.what();
  }
}

inline std::string evaluated(std::string_view text) {
  Interpreter interpreter;
  return evaluated(interpreter, text);
}

} // namespace simhost::lisp
