// Putting a session together, and the LISP functions of the host itself.
#include "simhost/host/session.h"

#include "host/host_api_lisp.h"
#include "simhost/drawing_lisp/drawing_functions.h"
#include "simhost/host/files.h"
#include "simhost/lisp/list.h"
#include "simhost/ui/file_names.h"
#include "text/assertion.h"
#include "text/encoding.h"

#include <optional>
#include <system_error>
#include <utility>

namespace simhost {

using lisp::Arguments;
using lisp::Value;

namespace {

Session*& currentSlot() {
  static Session* session = nullptr;
  return session;
}

/// (find-file name): the full path of a file of the site, nil when there is none.
Value findFileFunction(Arguments& arguments) {
  const std::filesystem::path file = Session::current()->findFile(arguments.text(0));
  return file.empty() ? Value() : Value::string(textOfPath(file));
}

/// (veval-str+ text): evaluates the forms of a text and returns the value of the last one.
Value evaluateText(Arguments& arguments) {
  return arguments.interpreter().run(arguments.text(0), L"veval-str+");
}

/// (pick-entity prompt): the entity name and the point of what the user picks, nil for a pick of nothing. A cancel
/// ends the run.
Value pickEntityFunction(Arguments& arguments) {
  KvEntityName entity{};
  KvPoint3d point;
  const int status = kvedEntSel(arguments.text(0).c_str(), entity, point);
  if (status == kvstatus::cancel) throw lisp::Cancelled();
  if (status != kvstatus::normal) return {};
  return lisp::makeList({Value::entity(entity.value), lisp::makePoint(point.x, point.y, point.z)});
}

std::optional<lisp::LoadedText> loadLisp(
    const Session& session, std::wstring_view name, std::wstring_view fromFile) {
  const std::filesystem::path beside = pathOf(fromFile).parent_path() / pathOf(name);
  std::error_code error;
  const std::filesystem::path file =
      std::filesystem::is_regular_file(beside, error) ? beside : session.findFile(name);
  if (file.empty()) return std::nullopt;
  const std::optional<std::string> bytes = readFile(file);
  if (!bytes) return std::nullopt;
  return lisp::LoadedText{brenvolt::fromUtf8(*bytes), textOfPath(file)};
}

} // namespace

Session::Session(SessionOptions options, WindowSystem& windows)
    : options_(std::move(options)), windows_(windows), settings_(options_.settingsFile, commandLine_),
      resources_(options_.resourceFolder, options_.language), circuits_(*this), functions_(*this),
      modules_(*this) {
  BRENVOLT_ASSERT(currentSlot() == nullptr, "two sessions of the host at once");
  currentSlot() = this;
  windows_.setFormFolder(options_.resourceFolder / "forms");
  windows_.setLanguage(options_.language);
  setWindowSystem(&windows_);
}

Session::~Session() {
  for (const auto& document : documents_.all()) {
    documents_.setCurrent(document.get());
    modules_.tellDrawingUnloading();
  }
  modules_.unloadAll();
  documents_.activate(nullptr);
  setWindowSystem(nullptr);
  currentSlot() = nullptr;
}

void Session::chooseLanguage(const std::string& language) {
  resources_.choose(language);
  options_.language = language;
  windows_.setLanguage(language);
}

Session* Session::current() {
  return currentSlot();
}

Document& Session::openDocument(std::wstring fileName, std::unique_ptr<DrawingDatabase> drawing) {
  Document& document = documents_.add(std::make_unique<Document>(std::move(fileName), std::move(drawing)));
  lisp::Interpreter& interpreter = document.interpreter();
  interpreter.setPrinter([this](std::wstring_view text) { commandLine_.print(text); });
  interpreter.setLoader(
      [this](std::wstring_view name, std::wstring_view fromFile) { return loadLisp(*this, name, fromFile); });
  defineDrawingFunctions(
      interpreter, {[&document] { return &document.drawing(); },
                    [this](const std::wstring& name) {
                      const std::filesystem::path file = findFile(name);
                      return insertedDrawings_.read(file.empty() ? name : textOfPath(file));
                    }});
  // (circuit-continue id): the next build continues this circuit instead of beginning one.
  interpreter.define(L"circuit-continue", 1, 1, [this](Arguments& arguments) {
    circuits_.continueCircuit(arguments.text(0));
    return arguments[0];
  });
  interpreter.define(L"find-file", 1, 1, findFileFunction);
  interpreter.define(L"pick-entity", 1, 1, pickEntityFunction);
  interpreter.define(L"veval-str+", 1, 1, evaluateText);
  document.expose(interpreter.symbols().intern(L"veval-str+"));
  // (vz-korvo-defun 'name): lets native code call a LISP function; it need not be defined yet.
  interpreter.define(L"vz-korvo-defun", 1, 1, [&document](Arguments& arguments) {
    document.expose(arguments.symbol(0));
    return Value::truth(true); // not the symbol: native code calls this, and has no type for a symbol
  });
  modules_.tellDrawingLoaded();
  return document;
}

std::filesystem::path Session::findFile(std::wstring_view name) const {
  if (name.empty()) return {};
  const std::filesystem::path asked = pathOf(name);
  std::error_code error;
  for (const std::filesystem::path& file : {options_.siteFolder / asked, asked})
    if (std::filesystem::is_regular_file(file, error))
      return std::filesystem::absolute(file, error).lexically_normal();
  return {};
}

} // namespace simhost
