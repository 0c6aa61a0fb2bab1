// The prompt of `brenvolt lisp`.
#pragma once

#include "simhost/cli/subcommand.h"

namespace simhost {

class HostRun;

/// Reads forms until the end of the input and prints their values. On a terminal lines can be edited and are
/// remembered; from a pipe the same without prompts. An error is told and the next form read; in the end it is
/// ExitCode::badInput for a pipe, and nothing is saved then.
[[nodiscard]] ExitCode runLispPrompt(HostRun& host);

} // namespace simhost
