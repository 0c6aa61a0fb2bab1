// `brenvolt lisp`: files and forms in the order in which they are given, or a prompt without any.
#include "simhost/cli/host_run.h"
#include "simhost/cli/lisp_prompt.h"
#include "simhost/cli/subcommand.h"
#include "simhost/lisp/printer.h"
#include "text/encoding.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace simhost {

namespace {

using brenvolt::fromUtf8;

struct LispOptions {
  HostOptions host;
  std::vector<std::string> files;
  std::vector<std::string> forms;
};

/// A file to run or a form to evaluate.
struct Step {
  bool isFile = false;
  std::string text;
};

/// Files and forms as they stood on the command line.
std::vector<Step> stepsInOrder(const CLI::App& command, const LispOptions& options) {
  std::vector<Step> steps;
  std::size_t file = 0;
  std::size_t form = 0;
  for (const CLI::Option* option : command.parse_order()) {
    if (option->check_name("FILE")) steps.push_back({true, options.files[file++]});
    if (option->check_name("-e")) steps.push_back({false, options.forms[form++]});
  }
  return steps;
}

ExitCode runSteps(HostRun& host, const std::vector<Step>& steps) {
  lisp::Value value;
  for (const Step& step : steps)
    value = step.isFile ? host.runCommand(readLisp(step.text), fromUtf8(step.text))
                        : host.runCommand(fromUtf8(step.text), L"-e");
  host.writeResults();
  host.session().commandLine().printLine(lisp::printValue(value));
  return ExitCode::done;
}

ExitCode runLisp(const CLI::App& command, const LispOptions& options) {
  const std::vector<Step> steps = stepsInOrder(command, options);
  HostRun host(options.host);
  SessionRun run;
  run.drawing = options.host.drawing;
  host.recordAsSession(run);
  try {
    const ExitCode code = steps.empty() ? runLispPrompt(host) : runSteps(host, steps);
    host.writeRecording();
    return code;
  } catch (const BadInput&) {
    host.writeRecording();
    throw;
  }
}

} // namespace

Command setUpLisp(CLI::App& command) {
  auto options = std::make_shared<LispOptions>();
  options->host.addTo(command);
  command.add_option("FILE", options->files, "LISP files, run in the order given")->type_name("");
  command.add_option("-e", options->forms, "Forms, run in their place among the files")
      ->type_name("FORM")
      ->allow_extra_args(false);
  command.footer(
      "The value of the last file or form is the last line of standard output. A LISP error names file, "
      "line and form; nothing is saved then. Without files and forms there is a prompt.");
  return [&command, options] { return runLisp(command, *options); };
}

} // namespace simhost
