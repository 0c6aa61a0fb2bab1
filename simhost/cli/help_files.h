// The help of a program for other programs: manual pages, and completions of shells, made from its tables.
#pragma once

#include "simhost/cli/command_table.h"

#include <string_view>

namespace simhost {

struct HelpFile {
  std::string name; ///< relative to the folder of all
  std::string text;
};

/// man/NAME.1 for the program and each of its commands, NAME-COMMAND.1.
[[nodiscard]] std::vector<HelpFile> manualPages(const CommandTable& program, const std::string& version);

/// bash/NAME, zsh/_NAME and fish/NAME.fish.
[[nodiscard]] std::vector<HelpFile> shellCompletions(const CommandTable& program);

} // namespace simhost
