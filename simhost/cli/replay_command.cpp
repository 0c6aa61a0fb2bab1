// `brenvolt replay`: a recorded session once more, without a screen and on copies of what it may change.
#include "simhost/cli/circuit_run.h"
#include "simhost/cli/host_run.h"
#include "simhost/cli/site_options.h"
#include "simhost/cli/subcommand.h"
#include "simhost/cli/working_copy.h"
#include "simhost/host/errors.h"
#include "simhost/lisp/printer.h"
#include "simhost/site/command_steps.h"
#include "text/encoding.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace simhost {

namespace {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;

struct ReplayOptions {
  SiteWorkbookOptions site;
  HostOptions host;
  std::string work;
};

/// Runs the commands of a session on the copies. Commands that failed or were cancelled must end the same way again,
/// and the session then continues.
class CommandReplay final {
public:
  CommandReplay(HostRun& host, const SessionRun& run, const WorkingCopy& copy)
      : host_(host), steps_(host.site(), host.windows()), run_(run), copy_(copy) {}

  /// Points the LISP of the site at the copies; opening a drawing runs it again.
  void prepare() {
    host_.run(workbookForm(copy_.workbook()), L"replay");
    if (isFirst_ && !run_.project.empty()) host_.site().setProject(copy_.project());
    isFirst_ = false;
  }

  /// The value of the last LISP.
  [[nodiscard]] lisp::Value run() {
    for (const std::string& form : run_.forms)
      doCommand({SessionCommand::Kind::lisp, {form}});
    for (const SessionCommand& command : run_.commands)
      doCommand(command);
    return value_;
  }

private:
  using End = SessionCommand::End;

  [[noreturn]] void fail(const std::string& message) const {
    throw BadInput("command " + std::to_string(number_) + " of the session: " + message);
  }

  void doCommand(const SessionCommand& command) {
    ++number_;
    switch (command.kind) {
    case SessionCommand::Kind::lisp:
      return evaluate(command);
    case SessionCommand::Kind::undo:
      if (steps_.undo().empty()) fail("nothing to undo");
      return;
    case SessionCommand::Kind::redo:
      if (steps_.redo().empty()) fail("nothing to redo");
      return;
    case SessionCommand::Kind::open:
      steps_.open(command.file);
      return prepare();
    case SessionCommand::Kind::project:
      return host_.site().setProject(command.file.empty() ? std::string() : copy_.addProject(command.file));
    }
  }

  void evaluate(const SessionCommand& command) {
    const CommandOutcome outcome = steps_.runSteps(L"replay", [&](const CommandSteps::Evaluate& evaluate) {
      std::optional<lisp::Value> value;
      for (const std::string& form : command.forms)
        value = evaluate(fromUtf8(form));
      return value;
    });
    // A question without an answer: not an end that the user has recorded.
    const std::wstring& unanswered = host_.windows().failure();
    if (!unanswered.empty()) throw BadInput(toUtf8(unanswered));
    const bool isFailed = outcome.kind == CommandOutcome::Kind::failed;
    const bool isDone = outcome.kind == CommandOutcome::Kind::done;
    const std::string outcomeText = isFailed ? toUtf8(outcome.message)
                                    : isDone ? ""
                                             : "the run was cancelled";
    if (command.end != (isFailed ? End::failed : isDone ? End::done : End::cancelled))
      fail(
          command.end == End::done ? outcomeText
          : isDone                 ? "succeeded, but did not when it was recorded"
                                   : "ends differently than recorded: " + outcomeText);
    value_ = isDone ? outcome.value : lisp::Value();
    if (!isDone) std::fprintf(stderr, "brenvolt: as recorded: %s\n", outcomeText.c_str());
  }

  HostRun& host_;
  CommandSteps steps_;
  const SessionRun& run_;
  const WorkingCopy& copy_;
  int number_ = 0;
  bool isFirst_ = true; ///< no drawing has been opened yet
  lisp::Value value_;
};

ExitCode runReplay(ReplayOptions& options) {
  const std::string& session = options.host.answers;
  const SessionRun run = seenFrom(readSession(session), std::filesystem::path(session).parent_path(), {});
  const std::string siteWorkbook = options.site.path();
  const WorkingCopy copy(options.work, siteWorkbook, options.site.site, run.project);

  options.host.site = options.site.site;
  options.host.database = copy.database();
  options.host.drawing = run.drawing;
  if (options.host.language.empty()) options.host.language = run.language;
  HostRun host(options.host);
  host.recordAsSession(run);
  CommandReplay replay(host, run, copy);
  replay.prepare();
  lisp::Value value;
  try {
    value = run.isCircuit() ? callSite(host, circuitCall(run, copy.workbook(), CircuitBuild::withDialog))
                            : replay.run();
  } catch (const BadInput&) {
    host.writeRecording();
    throw;
  }
  host.writeRecording();
  host.writeResults();
  host.session().commandLine().printLine(lisp::printValue(value));
  return ExitCode::done;
}

} // namespace

CommandTable replayCommand() {
  auto options = std::make_shared<ReplayOptions>();
  HostOptions& host = options->host;
  return {
      .name = "replay",
      .description = "run a recorded session again, without a screen",
      .options =
          {{"SITE", &options->site.site, "Folder of the site", {}, {.isRequired = true}},
           {"SESSION", &host.answers, "The recorded session", {}, {.isRequired = true}},
           {"--workbook", &options->site.workbook, "Use this workbook instead of the site's", "FILE"},
           {"--out", &host.save, "Write the drawing here if no error occurs", "FILE"},
           {"--svg", &host.svg, "Write a picture of it", "FILE"},
           {"--record", &host.record, "Record this run of the session", "FILE"},
           {"--work", &options->work,
            "Keep the copies of workbook, saved configurations, tables and project in this folder", "DIR"},
           moduleRow(host.module),
           {"--language", &host.language, "Two letters; default: those of the session", "CODE"}},
      .footer =
          "The site is not changed: the session works on copies. The last line of standard output is "
          "the value of the last form, nil for a build that was cancelled, which leaves the drawing as it "
          "was.",
      .examples =
          {"brenvolt replay site site/pictures/wires.json",
           "brenvolt replay site site/pictures/wires.json --record again.json"},
      .page = "answers.md",
      .run = [options] { return runReplay(*options); },
  };
}

} // namespace simhost
