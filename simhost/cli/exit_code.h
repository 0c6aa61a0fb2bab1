// How the programs of the host end.
#pragma once

namespace simhost {

enum class ExitCode {
  done = 0,
  wrongArguments = 1,
  unexpected = 2, ///< a fault of the program
  badInput = 3,   ///< also a LISP error, and a question without an answer
  cannotWrite = 4,
  findings = 5 ///< a check found something
};

} // namespace simhost
