// The functions that every interpreter has, by topic; each file is a table of names and their
// functions.
#pragma once

#include "simhost/lisp/evaluator.h"

#include <cstddef>
#include <span>

namespace simhost::lisp {

struct BuiltinEntry {
  const wchar_t* name;
  std::size_t minimumArguments;
  std::size_t maximumArguments;
  Value (*function)(Arguments& arguments);
};

inline void defineAll(Interpreter& interpreter, std::span<const BuiltinEntry> entries) {
  for (const BuiltinEntry& entry : entries) {
    interpreter.define(entry.name, entry.minimumArguments, entry.maximumArguments, entry.function);
  }
}

void defineListBuiltins(Interpreter& interpreter);
void defineTextBuiltins(Interpreter& interpreter);
void defineNumberBuiltins(Interpreter& interpreter);
void defineControlBuiltins(Interpreter& interpreter);
void definePrintBuiltins(Interpreter& interpreter);

} // namespace simhost::lisp
