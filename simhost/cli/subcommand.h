// The subcommands of the tool, and what their exit codes mean.
#pragma once

#include "simhost/site/exit_code.h"

#include <functional>
#include <span>

namespace CLI {
class App;
}

namespace simhost {

/// Runs a subcommand whose options have been read. May throw BadInput and CannotWrite.
using Command = std::function<ExitCode()>;

struct Subcommand {
  const char* name;
  const char* description; ///< one line for --help
  /// Adds the subcommand's options; `command` and what the options are read into live until the answer has run.
  Command (*setUp)(CLI::App& command);
};

/// In the order in which --help lists them.
[[nodiscard]] std::span<const Subcommand> subcommands();

// One function for each file of this folder that holds a subcommand.
[[nodiscard]] Command setUpCatalog(CLI::App& command);
[[nodiscard]] Command setUpComponents(CLI::App& command);
[[nodiscard]] Command setUpDraw(CLI::App& command);
[[nodiscard]] Command setUpExpr(CLI::App& command);
[[nodiscard]] Command setUpHistory(CLI::App& command);
[[nodiscard]] Command setUpImport(CLI::App& command);
[[nodiscard]] Command setUpLisp(CLI::App& command);
[[nodiscard]] Command setUpLoads(CLI::App& command);
[[nodiscard]] Command setUpMotors(CLI::App& command);
[[nodiscard]] Command setUpReplay(CLI::App& command);
[[nodiscard]] Command setUpSql(CLI::App& command);
[[nodiscard]] Command setUpStandards(CLI::App& command);
[[nodiscard]] Command setUpWire(CLI::App& command);
[[nodiscard]] Command setUpWorkbook(CLI::App& command);

} // namespace simhost
