// The one function that the host calls for every LISP function of the plug-in.
#pragma once

namespace brenvolt {

struct LispFunction;

/// Serves the call that the host is making: arguments in, handler, answer out. Answers 1, or 0 for a code that is not
/// the plug-in's. An exception ends the call as nil: none reaches the host, and the resource stack is as before.
int dispatchFunction();

/// The part of it after the choice of the function: runs the handler with the arguments of the call and answers.
void serveCall(const LispFunction& function);

} // namespace brenvolt
