// The prompt of `brenvolt lisp`.
#pragma once

#include "simhost/cli/subcommand.h"

#include <string_view>

namespace simhost {

class HostRun;

/// Whether every list and string that the text opens is closed in it, so that it can be read.
[[nodiscard]] bool isCompleteInput(std::wstring_view text);

/// Reads forms until the end of the input and prints their values. On a terminal lines can be edited and are
/// remembered; from a pipe the same without prompts. An error is told and the next form read; in the end it is
/// ExitCode::badInput for a pipe, and nothing is saved then.
[[nodiscard]] ExitCode runLispPrompt(HostRun& host);

} // namespace simhost
