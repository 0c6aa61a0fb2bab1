// The LISP functions, eight that the parent product knows and one for tools: names, codes, handlers, and the order in which they are registered.
#pragma once

#include "host/result_list.h"

#include <span>

namespace brenvolt {

/// How the dispatcher returns a handler's non-empty result to LISP.
enum class AnswerForm { list, truth };
/// Whether the plug-in's resource module is on top of the stack while the handler runs.
enum class ResourceUse { none, pushed };

struct LispFunction {
  const wchar_t* name;
  int code;
  AnswerForm answer;
  ResourceUse resources;
  /// Takes the arguments and returns the list for LISP; an empty result means nil.
  ResultList (*handler)(const ResultList& arguments);
};

/// In the order of registration.
[[nodiscard]] std::span<const LispFunction> functionTable();

/// The function of a code, null for an unknown code.
[[nodiscard]] const LispFunction* findFunction(int code);

/// Makes the functions known to the host, and two functions of the parent product reachable from here. Done again
/// for each drawing. A function that the host refuses stays unregistered.
void registerFunctions();

} // namespace brenvolt
