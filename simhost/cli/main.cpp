// The tool `brenvolt`: reads the command line, runs one subcommand, and turns what went wrong into a message and an
// exit code.
#include "simhost/cli/subcommand.h"
#include "simhost/host/errors.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>
#include <vector>

namespace {

using simhost::ExitCode;

ExitCode tell(const char* kind, const std::exception& error, ExitCode code) {
  std::fflush(stdout);
  std::fprintf(stderr, "brenvolt: %s%s\n", kind, error.what());
  return code;
}

ExitCode run(const simhost::Command& command) {
  try {
    return command();
  } catch (const simhost::BadInput& error) {
    return tell("", error, ExitCode::badInput);
  } catch (const simhost::CannotWrite& error) {
    return tell("cannot write ", error, ExitCode::cannotWrite);
  } catch (const std::exception& error) {
    return tell("unexpected: ", error, ExitCode::unexpected);
  }
}

int runTool(int argc, char** argv) {
  CLI::App app("Electrical circuits in a simulated CAD host", "brenvolt");
  app.set_version_flag("--version", "brenvolt " BRENVOLT_VERSION);
  app.require_subcommand(1);
  app.footer("Exit codes: 0 done, 1 wrong arguments, 2 unexpected, 3 bad input, 4 cannot write, 5 findings.");
  struct Row {
    CLI::App* app;
    simhost::Command command;
  };
  std::vector<Row> rows;
  for (const simhost::Subcommand& subcommand : simhost::subcommands()) {
    CLI::App* added = app.add_subcommand(subcommand.name, subcommand.description);
    rows.push_back({added, subcommand.setUp(*added)});
  }
  const char* const word = argc > 1 ? argv[1] : "";
  const auto isNamed = [word](const simhost::Subcommand& each) { return std::strcmp(each.name, word) == 0; };
  if (*word != '\0' && *word != '-' && std::ranges::none_of(simhost::subcommands(), isNamed)) {
    std::fprintf(stderr, "brenvolt: there is no subcommand \"%s\"; --help lists them\n", word);
    return static_cast<int>(ExitCode::wrongArguments);
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : static_cast<int>(ExitCode::wrongArguments);
  }
  for (const Row& row : rows)
    if (row.app->parsed()) return static_cast<int>(run(row.command));
  return static_cast<int>(ExitCode::wrongArguments);
}

} // namespace

int main(int argc, char** argv) {
  try {
    return runTool(argc, argv);
  } catch (const std::exception& error) {
    return static_cast<int>(tell("unexpected: ", error, ExitCode::unexpected));
  }
}
