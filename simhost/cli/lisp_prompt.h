// The prompt of `brenvolt lisp`.
#pragma once

#include "simhost/cli/subcommand.h"

namespace simhost {

class HostRun;

/// Reads forms until the end of the input and prints their values. On a terminal lines can be edited and are
/// remembered; a pipe works the same without prompts. An error is reported and the next form read; for a pipe the
/// result is then ExitCode::badInput, and nothing is saved.
[[nodiscard]] ExitCode runLispPrompt(HostRun& host);

} // namespace simhost
