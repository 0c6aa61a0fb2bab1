// The subcommands of the tool.
#pragma once

#include "simhost/cli/command_table.h"

namespace simhost {

/// In the order in which --help lists them.
[[nodiscard]] std::vector<CommandTable> subcommands();

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
[[nodiscard]] CommandTable replayCommand();
[[nodiscard]] CommandTable reportCommand();
[[nodiscard]] CommandTable siteCommand();
/// A command of `siteCommand`.
[[nodiscard]] CommandTable sitePublishCommand();
[[nodiscard]] CommandTable sqlCommand();
[[nodiscard]] CommandTable standardsCommand();
[[nodiscard]] CommandTable wireCommand();
[[nodiscard]] CommandTable workbookCommand();

} // namespace simhost
