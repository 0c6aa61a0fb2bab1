// Building up a run of the host and writing what it leaves.
#include "simhost/cli/host_run.h"

#include "platform/file_replace.h"
#include "simhost/cli/interrupt_scope.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/drawing/svg.h"
#include "simhost/host/files.h"
#include "simhost/ui/answers.h"
#include "simhost/ui/scripted_windows.h"
#include "text/encoding.h"

#include <cstdio>
#include <filesystem>
#include <optional>
#include <utility>

namespace simhost {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;

namespace {

std::unique_ptr<AnsweredWindows> windowsFor(const std::string& answers) {
  if (answers.empty()) return windowsMaker()({}, "no --answers are given");
  try {
    return windowsMaker()(parseAnswers(readInput(answers), answers), answers);
  } catch (const AnswerError& error) {
    throw BadInput(error.what());
  }
}

SiteRunOptions siteOptions(const HostOptions& options) {
  // A run from a file must not hang on what this user has hidden or typed last.
  const bool isFromFile = !options.answers.empty();
  return {
      options.site,
      options.drawing,
      options.settings,
      options.module,
      options.language,
      isFromFile ? SiteRunOptions::UnnamedSettings::memory : SiteRunOptions::UnnamedSettings::user,
      options.database};
}

/// What cannot be written must be known before anything is saved on the way to it. Throws CannotWrite.
const HostOptions& withWritableFiles(const HostOptions& options) {
  for (const std::string* file : {&options.save, &options.svg}) {
    if (file->empty()) continue;
    if (const auto obstacle = brenvolt::writeObstacle(fromUtf8(*file)))
      throw CannotWrite(*file + ": " + toUtf8(*obstacle));
  }
  return options;
}

} // namespace

OptionRow moduleRow(std::string& module) {
  return {"--module", &module, "The plug-in; default: ZanBrenvolt.kvx of the installation", "FILE"};
}

WindowsMaker& windowsMaker() {
  static WindowsMaker maker = [](std::vector<AnswerStep> steps, std::string source) {
    return std::make_unique<ScriptedWindows>(std::move(steps), std::move(source));
  };
  return maker;
}

OptionRows HostOptions::rows() {
  return {
      {"--site", &site, "Folder of the site: runs its site.lsp first and finds its files by name", "DIR"},
      {"--drawing", &drawing, "Open this drawing instead of an empty one", "FILE"},
      {"--answers", &answers, "Answer file for the questions of the run", "FILE"},
      {"--record", &record, "Record the session: commands, questions and answers, also after an error",
       "FILE"},
      {"--save", &save, "Save the drawing if no error occurs", "FILE"},
      {"--svg", &svg, "Write a picture of the current space if no error occurs", "FILE"},
      {"--settings", &settings,
       "File of the user's settings; with --answers and without this option none are used", "FILE"},
      moduleRow(module),
      {"--language", &language, "Two letters; default: from the environment", "CODE"},
  };
}

HostRun::HostRun(const HostOptions& options)
    : options_(withWritableFiles(options)), windows_(windowsFor(options.answers)),
      site_(std::make_unique<SiteRun>(siteOptions(options), *windows_)) {}

lisp::Value HostRun::run(std::wstring_view text, std::wstring_view fileName) {
  const InterruptScope scope(interpreter());
  return site_->run(text, fileName);
}

lisp::Value HostRun::call(std::wstring_view function, std::span<const lisp::Value> arguments) {
  const InterruptScope scope(interpreter());
  return site_->call(function, arguments);
}

void HostRun::writeResults() {
  if (const std::size_t unused = windows_->unusedSteps(); unused != 0)
    std::fprintf(stderr, "brenvolt: %s: %zu answers were not used\n", options_.answers.c_str(), unused);
  DrawingDatabase& drawing = session().documents().current()->drawing();
  Fault fault;
  if (!options_.save.empty()) fault = saveDrawing(drawing, fromUtf8(options_.save));
  if (!fault && !options_.svg.empty()) fault = saveSvg(drawing, fromUtf8(options_.svg));
  if (fault) throw CannotWrite(toUtf8(*fault));
  writeRecording();
}

void HostRun::recordAsSession(const SessionRun& run) {
  if (options_.record.empty()) return;
  SessionRun recorded = run;
  if (recorded.language.empty()) recorded.language = session().options().language;
  log_.emplace(options_.record, std::move(recorded), [this](const SessionRun& all) {
    windows_->setRun(all);
    return windows_->recording();
  });
}

lisp::Value HostRun::runCommand(std::wstring_view text, std::wstring_view fileName) {
  SessionCommand command;
  command.forms = {toUtf8(text)};
  const auto note = [&] {
    if (log_) log_->add(command);
  };
  try {
    lisp::Value value = run(text, fileName);
    note();
    return value;
  } catch (const BadInput& error) {
    command.end = session().isCancelled() ? SessionCommand::End::cancelled : SessionCommand::End::failed;
    command.fault = error.what();
    note();
    throw;
  }
}

void HostRun::writeRecording() {
  if (options_.record.empty()) return;
  if (log_) return log_->write();
  const std::string reason = replaceFile(options_.record, windows_->recording());
  if (!reason.empty()) throw CannotWrite(reason);
}

SessionRun readSession(const std::string& file) {
  try {
    std::optional<SessionRun> run = parseAnswerFile(readInput(file), file).run;
    if (!run) throw BadInput(file + ": is not a session: the member \"run\" is missing");
    return std::move(*run);
  } catch (const AnswerError& error) {
    throw BadInput(error.what());
  }
}

} // namespace simhost
