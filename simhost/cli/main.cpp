// The tool `brenvolt`: reads the command line, runs one subcommand, and turns what went wrong into a message and an
// exit code.
#include "simhost/cli/subcommand.h"
#include "simhost/host/errors.h"

#include <cstdio>
#include <exception>

namespace {

using simhost::ExitCode;

ExitCode tell(const char* kind, const std::exception& error, ExitCode code) {
  std::fflush(stdout);
  std::fprintf(stderr, "brenvolt: %s%s\n", kind, error.what());
  return code;
}

ExitCode run(const simhost::CommandTable& command) {
  try {
    return command.run();
  } catch (const simhost::BadInput& error) {
    return tell("", error, ExitCode::badInput);
  } catch (const simhost::CannotWrite& error) {
    return tell("cannot write ", error, ExitCode::cannotWrite);
  } catch (const std::exception& error) {
    return tell("unexpected: ", error, ExitCode::unexpected);
  }
}

int runTool(int argc, char** argv) {
  const simhost::CommandTable tool = {
      .name = "brenvolt",
      .description = "Electrical circuits in a simulated CAD host",
      .commands = simhost::subcommands(argc > 1 ? argv[1] : ""),
      .footer = "Exit codes: 0 done, 1 wrong arguments, 2 unexpected error, 3 bad input, 4 cannot write, 5 "
                "findings.",
  };
  const auto given = simhost::readCommandLine(tool, "brenvolt " BRENVOLT_VERSION, argc, argv);
  return given.end ? *given.end : static_cast<int>(run(*given.command));
}

} // namespace

int main(int argc, char** argv) {
  try {
    return runTool(argc, argv);
  } catch (const std::exception& error) {
    return static_cast<int>(tell("unexpected: ", error, ExitCode::unexpected));
  }
}
