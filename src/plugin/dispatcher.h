// The one function that the host calls for every LISP function of the plug-in.
#pragma once

namespace brenvolt {

struct LispFunction;

/// Serves the call that the host is making: arguments, handler, result. Returns 1, or 0 for a code that is not the
/// plug-in's. An exception ends the call as nil: none reaches the host, and the resource stack is restored.
int dispatchFunction();

/// The part after the choice of the function: runs the handler with the arguments and returns its result.
void serveCall(const LispFunction& function);

} // namespace brenvolt
