// One run of the program with windows, from the command line to the exit code.
#pragma once

namespace simhost {

/// Exit codes as those of the tool; a missing screen is bad input.
[[nodiscard]] int runGui(int argc, char** argv);

} // namespace simhost
