#include "circuits/check/check_session.h"

#include "platform/table_import.h"
#include "simhost/drawing/drawing_database.h"
#include "simhost/host/errors.h"
#include "simhost/host/files.h"
#include "simhost/lisp/arguments.h"
#include "simhost/lisp/input.h"
#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <set>
#include <system_error>
#include <unistd.h>

namespace circuits {

namespace fs = std::filesystem;
namespace lisp = simhost::lisp;
using brenvolt::fromUtf8;

namespace {

constexpr const char* databaseName = "engineering.db";

std::wstring joined(const std::vector<std::wstring>& lines) {
  return brenvolt::join(lines, L"; ");
}

fs::path makeFolder() {
  std::string name = (fs::temp_directory_path() / "brenvolt-check-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr)
    throw simhost::CannotWrite(name + ": no folder for the check can be made");
  return name;
}

simhost::SessionOptions sessionOptions(const fs::path& site) {
  simhost::SessionOptions options;
  options.siteFolder = site;
  return options;
}

/// A text cut into pieces that can be read on their own, each one or more whole forms. Every piece is led by the line
/// ends before it, so that errors name the right line.
std::vector<std::wstring> formsOf(const std::wstring& text) {
  std::vector<std::wstring> pieces;
  std::wstring lead;
  std::wstring piece;
  std::size_t begin = 0;
  while (begin < text.size()) {
    const std::size_t end = std::min(text.find(L'\n', begin), text.size() - 1) + 1;
    piece.append(text, begin, end - begin);
    begin = end;
    if (begin < text.size() && !lisp::isCompleteInput(piece)) continue;
    pieces.push_back(lead + piece);
    lead.append(static_cast<std::size_t>(std::ranges::count(piece, L'\n')), L'\n');
    piece.clear();
  }
  return pieces;
}

} // namespace

CheckSession::CheckSession(const SiteModel& site, const fs::path& module, Findings& findings)
    : site_(site), folder_(makeFolder()) {
  session_.emplace(sessionOptions(site.folder), windows_);
  session_->commandLine().setSink([this](std::wstring_view text) {
    constexpr std::size_t mostPrinted = 1'000'000; // a form that prints without end
    if (printed_.size() < mostPrinted) printed_ += text;
  });
  document_ = &session_->openDocument({}, std::make_unique<simhost::DrawingDatabase>());
  session_->modules().load(module.empty() ? simhost::defaultModule() : module);
  interpreter().setStepLimit(stepLimit);
  replaceOutside();
  loadSite(findings);
}

CheckSession::~CheckSession() {
  session_.reset();
  std::error_code error;
  fs::remove_all(folder_, error);
}

void CheckSession::replaceOutside() {
  interpreter().define(L"site-database", 0, 0, [this](lisp::Arguments& arguments) {
    std::wstring error;
    const fs::path file = isNameEnough_ ? folder_ / databaseName : database(error);
    if (file.empty()) arguments.fail(error);
    return lisp::Value::string(fromUtf8(file.string()));
  });
  // Rows of a project database belong to the user.
  interpreter().define(L"sql-execute", 2, 2, [](lisp::Arguments& arguments) {
    static_cast<void>(arguments.text(0));
    static_cast<void>(arguments.text(1));
    return lisp::Value::truth(true);
  });
}

bool CheckSession::answersDatabase(std::wstring_view function) {
  isNameEnough_ = true;
  const Answer answer = call(function, {});
  isNameEnough_ = false;
  return answer.value && answer.value->isString() &&
         answer.value->asString() == fromUtf8((folder_ / databaseName).string());
}

fs::path CheckSession::database(std::wstring& error) {
  const fs::path copy = folder_ / databaseName;
  std::error_code code;
  if (fs::exists(copy, code)) return copy;
  const fs::path own = site_.folder / databaseName;
  if (fs::exists(own, code)) {
    fs::copy_file(own, copy, code);
    if (!code) return copy;
    error = fromUtf8(own.string()) + L": " + fromUtf8(code.message());
    return {};
  }
  const fs::path tables = site_.folder / "tables";
  if (!fs::is_directory(tables, code)) {
    error = L"the site has neither " + fromUtf8(databaseName) + L" nor tables/*.csv";
    return {};
  }
  const fs::path beside = folder_ / "import.db";
  const brenvolt::ImportReport report =
      brenvolt::importTables(fromUtf8(beside.string()), {fromUtf8(tables.string())});
  if (!report.isDone()) {
    fs::remove(beside, code);
    error = joined(report.errors);
    return {};
  }
  fs::rename(beside, copy, code);
  return copy;
}

fs::path CheckSession::workbookWith(std::string_view savedConfigurations) {
  const fs::path copy = folder_ / "zan_brenvolt.xls";
  std::error_code code;
  fs::copy_file(site_.workbook, copy, fs::copy_options::skip_existing, code);
  if (code || !simhost::replaceFile(folder_ / "zan_brenvolt.xml", savedConfigurations).empty()) return {};
  return copy;
}

void CheckSession::loadSite(Findings& findings) {
  std::set<std::wstring> before;
  for (const lisp::Symbol* symbol : interpreter().symbols().all())
    if (symbol->function.isFunction()) before.insert(symbol->name);

  const fs::path file = site_.folder / "site.lsp";
  const std::optional<std::string> bytes = simhost::readFile(file);
  if (!bytes) {
    findings.add(L"lisp-file", {.file = L"site.lsp"}, {{L"file", L"site.lsp"}});
    isComplete_ = false;
    return;
  }
  const std::optional<std::wstring> text = brenvolt::fromUtf8Strict(*bytes);
  if (!text) findings.add(L"lisp-encoding", {.file = L"site.lsp"}, {{L"file", L"site.lsp"}});
  for (const std::wstring& form : formsOf(text ? *text : fromUtf8(*bytes))) {
    const Answer answer = run(form, fromUtf8(file.string()));
    if (answer.value) continue;
    isComplete_ = false;
    FindingPlace place = answer.place;
    if (place.file.empty()) place.file = L"site.lsp";
    findings.add(answer.isLoop ? L"lisp-loops" : L"lisp-load", std::move(place), {{L"error", answer.error}});
  }
  for (const lisp::Symbol* symbol : interpreter().symbols().all())
    if (symbol->function.isFunction() && (!before.contains(symbol->name) || document_->isReachable(*symbol)))
      siteFunctions_.push_back(brenvolt::toLower(symbol->name));
}

template <typename Action>
CheckSession::Answer CheckSession::guarded(const Action& action) {
  session_->clearCancel();
  windows_.beginRun();
  Answer answer;
  try {
    answer.value = action();
    if (session_->isCancelled()) answer = {{}, L"it asks the user"};
  } catch (const lisp::LispError& error) {
    answer.value.reset();
    answer.error = shownText(error.message());
    answer.isLoop = error.cause() == lisp::LispError::Cause::stepLimit;
    if (!error.file().empty()) answer.place.file = site_.shownFile(error.file());
    answer.place.row = static_cast<int>(error.line());
  } catch (const lisp::Cancelled&) {
    answer = {{}, L"it asks the user"};
  } catch (const std::exception& error) {
    answer = {{}, shownText(fromUtf8(error.what()))};
  }
  return answer;
}

CheckSession::Answer CheckSession::call(std::wstring_view function, std::span<const lisp::Value> arguments) {
  return guarded([&] { return interpreter().call(function, arguments); });
}

CheckSession::Answer CheckSession::run(std::wstring_view text, std::wstring_view fileName) {
  return guarded([&] { return interpreter().run(text, fileName); });
}

std::wstring CheckSession::shownText(const std::wstring& text) const {
  return site_.shownText(brenvolt::replaceAll(text, fromUtf8(folder_.string()) + L"/", L""));
}

std::vector<std::wstring> CheckSession::takeLines() {
  return brenvolt::splitSkippingEmpty(std::exchange(printed_, {}), L'\n');
}

} // namespace circuits
