// Bringing a site up.
#include "simhost/site/site_run.h"

#include "simhost/drawing/drawing_file.h"
#include "simhost/host/files.h"
#include "simhost/lisp/arguments.h"
#include "simhost/lisp/printer.h"
#include "simhost/site/history_function.h"
#include "simhost/site/site_database.h"
#include "simhost/site/sql_function.h"
#include "text/encoding.h"

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <utility>

namespace simhost {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;

namespace {

std::unique_ptr<DrawingDatabase> drawingFor(const std::string& file) {
  if (file.empty()) return std::make_unique<DrawingDatabase>();
  LoadedDrawing loaded = loadDrawing(fromUtf8(file));
  if (loaded.drawing == nullptr) throw BadInput(toUtf8(loaded.error));
  return std::move(loaded.drawing);
}

/// `(site-database)`: the file of the engineering tables, for the LISP of the site that names it to the plug-in.
void defineSiteDatabase(lisp::Interpreter& interpreter, const SiteRunOptions& options) {
  const std::string site = options.site;
  const std::string database = options.database;
  interpreter.define(L"site-database", 0, 0, [site, database](lisp::Arguments& arguments) {
    try {
      return lisp::Value::string(fromUtf8(database.empty() ? siteDataSource(site) : database));
    } catch (const std::runtime_error& error) {
      arguments.fail(fromUtf8(error.what()));
    }
  });
}

SessionOptions sessionOptions(const SiteRunOptions& options) {
  SessionOptions session;
  session.siteFolder = options.site;
  session.language = options.language.empty() ? languageOfEnvironment() : options.language;
  session.settingsFile = options.settings;
  if (options.settings.empty() && options.unnamedSettings == SiteRunOptions::UnnamedSettings::user)
    session.settingsFile = defaultSettingsFile();
  return session;
}

} // namespace

std::string readInput(const std::string& file) {
  std::optional<std::string> bytes = readFile(file);
  if (!bytes) throw BadInput(file + ": cannot be read");
  return std::move(*bytes);
}

std::wstring readLisp(const std::string& file) {
  std::optional<std::wstring> text = brenvolt::fromUtf8Strict(readInput(file));
  if (!text) throw BadInput(file + ": not UTF-8");
  return std::move(*text);
}

SiteRun::SiteRun(SiteRunOptions options, WindowSystem& windows)
    : options_(std::move(options)), session_(sessionOptions(options_), windows) {
  session_.openDocument(fromUtf8(options_.drawing), drawingFor(options_.drawing));
  session_.modules().load(options_.module.empty() ? defaultModule() : std::filesystem::path(options_.module));
  runSite();
}

lisp::Interpreter& SiteRun::interpreter() {
  return session_.documents().current()->interpreter();
}

void SiteRun::runSite() {
  beginning_.reset();
  if (options_.site.empty()) return;
  defineSiteDatabase(interpreter(), options_);
  defineSqlFunctions(interpreter());
  defineHistoryFunctions(interpreter());
  const std::string file = (std::filesystem::path(options_.site) / "site.lsp").string();
  run(readLisp(file), fromUtf8(file));
  if (!options_.project.empty()) tellProject();
  Document& document = *session_.documents().current();
  if (document.fileName().empty() && document.drawing().undoLog().changeCount() == 0)
    beginning_ = document.lispState();
}

void SiteRun::setProject(const std::string& database) {
  if (options_.project == database) return;
  options_.project = database;
  beginning_.reset();
  tellProject();
}

void SiteRun::tellProject() {
  const lisp::Value file =
      options_.project.empty() ? lisp::Value() : lisp::Value::string(fromUtf8(options_.project));
  run(L"(setq site-project-database " + lisp::printValue(file, lisp::PrintStyle::readable) + L")",
      L"project");
  callSite(L"site-records-saved");
}

void SiteRun::callSite(std::wstring_view function) {
  lisp::Symbol& name = interpreter().symbols().intern(function);
  if (name.function.isNil()) return;
  try {
    const UndoGroup group(session_.documents().current()->drawing().undoLog());
    interpreter().run(L"(" + std::wstring(function) + L")", L"host");
  } catch (const lisp::LispError& error) {
    session_.commandLine().printLine(fromUtf8(error.what()));
  } catch (const lisp::Cancelled&) {
    // Its run was cancelled: the request is repeated after the next one.
  }
}

void SiteRun::openDrawing(const std::string& file) {
  Document& former = *session_.documents().current();
  Document& opened = session_.openDocument(fromUtf8(file), drawingFor(file));
  try {
    runSite();
  } catch (const BadInput&) {
    close(opened, former);
    throw;
  }
  close(former, opened);
}

void SiteRun::beginAgain() {
  if (!beginning_) return openDrawing({});
  Document& document = *session_.documents().current();
  session_.modules().tellDrawingUnloading();
  session_.documents().activate(nullptr);
  document.replaceDrawing(std::make_unique<DrawingDatabase>());
  session_.documents().activate(&document);
  session_.modules().tellDrawingLoaded();
  document.restoreLisp(*beginning_);
}

void SiteRun::close(Document& document, Document& next) {
  session_.documents().activate(&document);
  session_.modules().tellDrawingUnloading();
  session_.documents().close(document);
  session_.documents().activate(&next);
}

namespace {

/// Seals what was built, also when the evaluation fails after the build.
class Seals final {
public:
  explicit Seals(CircuitRecorder& circuits) : circuits_(circuits) {}
  Seals(const Seals&) = delete;
  Seals& operator=(const Seals&) = delete;
  ~Seals() { circuits_.sealBuilt(); }

private:
  CircuitRecorder& circuits_;
};

} // namespace

/// One undo step for everything that happens in it.
template <class Work>
lisp::Value SiteRun::guarded(Work work) {
  const auto fail = [](const std::string& message) { throw BadInput(message); };
  try {
    const UndoGroup group(session_.documents().current()->drawing().undoLog());
    const Seals seals(session_.circuits());
    lisp::Value value = work();
    if (session_.isCancelled()) throw lisp::Cancelled();
    return value;
  } catch (const lisp::LispError& error) {
    fail(error.what());
  } catch (const lisp::Cancelled&) {
    const std::wstring& failure = session_.windows().failure();
    fail(failure.empty() ? "the run was cancelled" : toUtf8(failure));
  }
  return {};
}

lisp::Value SiteRun::run(std::wstring_view text, std::wstring_view fileName) {
  return guarded([&] { return interpreter().run(text, fileName); });
}

lisp::Value SiteRun::call(std::wstring_view function, std::span<const lisp::Value> arguments) {
  return guarded([&] { return interpreter().call(function, arguments); });
}

} // namespace simhost
