// Building up a run of the host and writing what it leaves.
#include "simhost/cli/host_run.h"

#include "simhost/cli/site_database.h"
#include "simhost/cli/sql_function.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/drawing/svg.h"
#include "simhost/host/files.h"
#include "simhost/lisp/arguments.h"
#include "simhost/ui/answers.h"
#include "simhost/ui/file_names.h"
#include "text/encoding.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <optional>
#include <stdexcept>
#include <utility>

namespace simhost {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;

namespace {

std::string readInput(const std::string& file) {
  std::optional<std::string> bytes = readFile(file);
  if (!bytes) throw BadInput(file + ": cannot be read");
  return std::move(*bytes);
}

std::unique_ptr<ScriptedWindows> windowsFor(const std::string& answers) {
  if (answers.empty())
    return std::make_unique<ScriptedWindows>(std::vector<AnswerStep>(), "no --answers are given");
  try {
    return std::make_unique<ScriptedWindows>(parseAnswers(readInput(answers), answers), answers);
  } catch (const AnswerError& error) {
    throw BadInput(error.what());
  }
}

std::unique_ptr<DrawingDatabase> drawingFor(const std::string& file) {
  if (file.empty()) return std::make_unique<DrawingDatabase>();
  LoadedDrawing loaded = loadDrawing(fromUtf8(file));
  if (loaded.drawing == nullptr) throw BadInput(toUtf8(loaded.error));
  return std::move(loaded.drawing);
}

/// `(site-database)`: the file of the engineering tables, for the LISP of the site that names it to the plug-in.
void defineSiteDatabase(lisp::Interpreter& interpreter, const HostOptions& options) {
  const std::string site = options.site;
  const std::string database = options.database;
  interpreter.define(L"site-database", 0, 0, [site, database](lisp::Arguments& arguments) {
    try {
      return lisp::Value::string(fromUtf8(database.empty() ? siteDatabase(site).string() : database));
    } catch (const std::runtime_error& error) {
      arguments.fail(fromUtf8(error.what()));
    }
  });
}

SessionOptions sessionOptions(const HostOptions& options) {
  SessionOptions session;
  session.siteFolder = options.site;
  session.language = options.language.empty() ? languageOfEnvironment() : options.language;
  session.settingsFile = options.settings;
  // A run from a file must not hang on what this user has hidden or typed last.
  if (options.settings.empty() && options.answers.empty()) session.settingsFile = defaultSettingsFile();
  return session;
}

} // namespace

void HostOptions::addTo(CLI::App& command) {
  command
      .add_option(
          "--site", site, "Folder of the site: its site.lsp is run first, its files are found by name")
      ->type_name("DIR");
  command.add_option("--drawing", drawing, "Open this drawing instead of an empty one")->type_name("FILE");
  command.add_option("--answers", answers, "Answers to the questions of the run, step by step")
      ->type_name("FILE");
  command.add_option("--record", record, "Write all questions and answers, also when the run fails")
      ->type_name("FILE");
  command.add_option("--save", save, "Save the drawing when all went well")->type_name("FILE");
  command.add_option("--svg", svg, "Write a picture of the current space when all went well")
      ->type_name("FILE");
  command
      .add_option(
          "--settings", settings, "The user's settings; with --answers and without this they are not kept")
      ->type_name("FILE");
  command.add_option("--module", module, "The plug-in, else ZanBrenvolt.kvx beside the program")
      ->type_name("FILE");
  command.add_option("--language", language, "Two letters, else from the environment")->type_name("CODE");
}

HostRun::HostRun(const HostOptions& options)
    : options_(options), windows_(windowsFor(options.answers)),
      session_(std::make_unique<Session>(sessionOptions(options), *windows_)) {
  session_->openDocument(fromUtf8(options.drawing), drawingFor(options.drawing));
  session_->modules().load(options.module.empty() ? defaultModule() : std::filesystem::path(options.module));
  if (options.site.empty()) return;
  defineSiteDatabase(interpreter(), options);
  defineSqlExecute(interpreter());
  runFile((std::filesystem::path(options.site) / "site.lsp").string());
}

lisp::Interpreter& HostRun::interpreter() {
  return session_->documents().current()->interpreter();
}

lisp::Value HostRun::run(std::wstring_view text, std::wstring_view fileName) {
  const auto fail = [](const std::string& message) { throw BadInput(message); };
  try {
    lisp::Value value = interpreter().run(text, fileName);
    if (session_->isCancelled()) throw lisp::Cancelled();
    return value;
  } catch (const lisp::LispError& error) {
    fail(error.what());
  } catch (const lisp::Cancelled&) {
    const std::wstring& failure = windows_->failure();
    fail(failure.empty() ? "the run was cancelled" : toUtf8(failure));
  }
  return {};
}

lisp::Value HostRun::runFile(const std::string& file) {
  const std::optional<std::wstring> text = brenvolt::fromUtf8Strict(readInput(file));
  if (!text) throw BadInput(file + ": is no UTF-8");
  return run(*text, fromUtf8(file));
}

void HostRun::writeResults() {
  if (const std::size_t unused = windows_->unusedSteps(); unused != 0)
    std::fprintf(stderr, "brenvolt: %s: %zu answers were not asked for\n", options_.answers.c_str(), unused);
  DrawingDatabase& drawing = session_->documents().current()->drawing();
  Fault fault;
  if (!options_.save.empty()) fault = saveDrawing(drawing, fromUtf8(options_.save));
  if (!fault && !options_.svg.empty()) fault = saveSvg(drawing, fromUtf8(options_.svg));
  if (fault) throw CannotWrite(toUtf8(*fault));
}

void HostRun::recordAsSession(const SessionRun& run) {
  if (options_.record.empty()) return;
  SessionRun recorded = seenFrom(run, {}, std::filesystem::path(options_.record).parent_path());
  if (recorded.language.empty()) recorded.language = options_.language;
  windows_->setRun(recorded);
}

void HostRun::writeRecording() {
  if (options_.record.empty()) return;
  const std::string reason = replaceFile(options_.record, windows_->recording());
  if (!reason.empty()) throw CannotWrite(reason);
}

SessionRun readSession(const std::string& file) {
  try {
    std::optional<SessionRun> run = parseAnswerFile(readInput(file), file).run;
    if (!run) throw BadInput(file + ": is no session: it does not say what has to be run (\"run\")");
    return std::move(*run);
  } catch (const AnswerError& error) {
    throw BadInput(error.what());
  }
}

} // namespace simhost
