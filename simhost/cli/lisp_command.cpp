// `brenvolt lisp`: files and forms in the order in which they are given, or a prompt without any.
#include "simhost/cli/host_run.h"
#include "simhost/cli/lisp_prompt.h"
#include "simhost/cli/subcommand.h"
#include "simhost/lisp/printer.h"
#include "text/encoding.h"

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace simhost {

namespace {

using brenvolt::fromUtf8;

struct LispOptions {
  HostOptions host;
  std::vector<OrderedWord> steps; ///< files to run and forms to evaluate
};

constexpr const char* formOption = "-e";

ExitCode runSteps(HostRun& host, const std::vector<OrderedWord>& steps) {
  lisp::Value value;
  for (const OrderedWord& step : steps)
    value = step.option == formOption ? host.runCommand(fromUtf8(step.text), L"-e")
                                      : host.runCommand(readLisp(step.text), fromUtf8(step.text));
  host.writeResults();
  host.session().commandLine().printLine(lisp::printValue(value));
  return ExitCode::done;
}

ExitCode runLisp(const LispOptions& options) {
  HostRun host(options.host);
  SessionRun run;
  run.drawing = options.host.drawing;
  host.recordAsSession(run);
  try {
    const ExitCode code = options.steps.empty() ? runLispPrompt(host) : runSteps(host, options.steps);
    host.writeRecording();
    return code;
  } catch (const BadInput&) {
    host.writeRecording();
    throw;
  }
}

} // namespace

CommandTable lispCommand() {
  auto options = std::make_shared<LispOptions>();
  return {
      .name = "lisp",
      .description = "run LISP files and forms in the simulated host, or open a prompt",
      .options = joinedRows(
          {options->host.rows(),
           {{"FILE", &options->steps, "LISP files, run in the given order"},
            {formOption, &options->steps, "Forms, run in the given order with the files", "FORM"}}}),
      .footer =
          "The value of the last file or form is the last line of standard output. A LISP error names file, "
          "line and form; nothing is saved then. Without files and forms a prompt opens.",
      .examples = {"brenvolt lisp -e '(+ 1 2)'", "brenvolt lisp --site site -e '(zan_bv_code_std_desc)'"},
      .page = "lisp.md",
      .run = [options] { return runLisp(*options); },
  };
}

} // namespace simhost
