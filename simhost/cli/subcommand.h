// The subcommands of the tool.
#pragma once

#include "simhost/cli/command_table.h"

#include <string_view>

namespace simhost {

/// In the order in which --help lists them; the one alone that the first word of a command line names, because the
/// tables of all cost more than a small task.
[[nodiscard]] std::vector<CommandTable> subcommands(std::string_view firstWord);

// One function for each file of this folder that holds a subcommand.
[[nodiscard]] CommandTable catalogCommand();
[[nodiscard]] CommandTable checkCommand();
[[nodiscard]] CommandTable circuitsCommand();
[[nodiscard]] CommandTable componentsCommand();
[[nodiscard]] CommandTable drawCommand();
[[nodiscard]] CommandTable exprCommand();
[[nodiscard]] CommandTable historyCommand();
[[nodiscard]] CommandTable importCommand();
[[nodiscard]] CommandTable lispCommand();
[[nodiscard]] CommandTable loadsCommand();
[[nodiscard]] CommandTable motorsCommand();
[[nodiscard]] CommandTable rebuildCommand();
[[nodiscard]] CommandTable replayCommand();
[[nodiscard]] CommandTable printCommand();
[[nodiscard]] CommandTable reportCommand();
[[nodiscard]] CommandTable setCommand();
[[nodiscard]] CommandTable siteCommand();
/// A command of `siteCommand`.
[[nodiscard]] CommandTable sitePublishCommand();
[[nodiscard]] CommandTable sqlCommand();
[[nodiscard]] CommandTable standardsCommand();
[[nodiscard]] CommandTable wireCommand();
[[nodiscard]] CommandTable workbookCommand();

} // namespace simhost
