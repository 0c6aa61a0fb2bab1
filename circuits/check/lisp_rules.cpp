#include "circuits/check/lisp_rules.h"

#include "circuits/check/similar_name.h"
#include "simhost/drawing/drawing_database.h"
#include "simhost/lisp/list.h"
#include "simhost/lisp/printer.h"
#include "simhost/site/code_standard.h"
#include "text/compare.h"
#include "text/encoding.h"

#include <algorithm>
#include <optional>
#include <system_error>

namespace circuits {

namespace fs = std::filesystem;
namespace lisp = simhost::lisp;
using lisp::Value;

namespace {

constexpr const wchar_t* siteFile = L"site.lsp";
constexpr const wchar_t* probeLayer = L"CHECK_PROBE";
/// Where the settings of a wire layer say whether its wires carry numbers, counted from 0.
constexpr std::size_t numbersPosition = 24;
constexpr std::size_t mostShown = 60;

enum class Call { native, tool };

struct NeededFunction {
  const wchar_t* name;
  Call call;
  const wchar_t* without; ///< what a user misses then
};
constexpr NeededFunction neededFunctions[] = {
    {L"c:zan_find_file", Call::native, L"no workbook is found, and no circuit can be chosen"},
    {L"c:zan_bv_figure_mccdb_fnam", Call::native, L"no table is found, and nothing is sized"},
    {L"zan_get_active_dwg_wiretype", Call::native, L"the drawing's wire layers are not offered"},
    {L"zan_get_activedrawing_wiretype_settings", Call::native, L"every wire layer counts as numbered"},
    {L"qn_mdb_proj_dbfnam", Call::native, L"circuits of the project cannot be taken over"},
    {L"qn_bv_save_codehdl", Call::native, L"what was chosen reaches nobody"},
    {L"site-build", Call::tool, L"the tool cannot draw a circuit of this site"},
    {L"site-insert-and-build", Call::tool, L"the main window cannot place a circuit of this site"},
};

std::wstring shown(const Value& value) {
  return lisp::printValue(value, lisp::PrintStyle::readable, mostShown);
}

class LispCheck final {
public:
  LispCheck(const SiteModel& site, CheckSession& session, Findings& findings)
      : site_(site), session_(session), findings_(findings) {}

  void run() {
    for (const NeededFunction& function : neededFunctions)
      checkFunction(function);
    checkFindFile();
    checkTables();
    checkProject();
    checkWireLayers();
    checkCode();
    checkBuildData();
  }

private:
  const lisp::Symbol* find(const wchar_t* name) const {
    const lisp::Symbol* symbol = session_.interpreter().symbols().find(name);
    return symbol != nullptr && symbol->function.isFunction() ? symbol : nullptr;
  }

  void checkFunction(const NeededFunction& function) {
    const lisp::Symbol* symbol = find(function.name);
    if (symbol == nullptr)
      findings_.add(
          L"lisp-function-missing", {.file = siteFile},
          {{L"function", function.name},
           {L"without", function.without},
           {L"similar", didYouMean(similarName(function.name, session_.siteFunctions()))}});
    else if (function.call == Call::native && !session_.document().isReachable(*symbol))
      findings_.add(
          L"lisp-not-exposed", {.file = siteFile},
          {{L"function", function.name}, {L"without", function.without}});
  }

  /// The answer of a call; nothing when there is no such function, or when it failed, which is reported unless the error
  /// holds `reportedElsewhere`.
  std::optional<Value> probe(
      const wchar_t* name, std::initializer_list<Value> arguments, std::wstring_view reportedElsewhere = {}) {
    if (find(name) == nullptr) return std::nullopt;
    CheckSession::Answer answer = session_.call(name, {arguments.begin(), arguments.size()});
    if (answer.value) return std::move(answer.value);
    const bool isReported =
        !reportedElsewhere.empty() && answer.error.find(reportedElsewhere) != std::wstring::npos;
    if (isReported) return std::nullopt;
    FindingPlace place = answer.place;
    if (place.file.empty()) place.file = siteFile;
    findings_.add(L"lisp-function-fails", std::move(place), {{L"function", name}, {L"error", answer.error}});
    return std::nullopt;
  }

  void wrong(const wchar_t* name, const Value& value, const wchar_t* expected) {
    findings_.add(
        L"lisp-wrong-answer", {.file = siteFile},
        {{L"function", name}, {L"answer", shown(value)}, {L"expected", expected}});
  }

  static bool isFile(const Value& value) {
    std::error_code error;
    return value.isString() && fs::is_regular_file(brenvolt::toUtf8(value.asString()), error);
  }

  /// Tables and projects are kept in a file or, named by an ODBC connection string, on a server.
  static bool isDatabase(const Value& value) {
    return isFile(value) || (value.isString() && value.asString().starts_with(L"odbc:"));
  }

  void checkFindFile() {
    const std::wstring name = brenvolt::fromUtf8(site_.workbook.filename().string());
    const auto answer = probe(L"c:zan_find_file", {Value::string(name), Value::integer(3)});
    std::error_code error;
    const bool isThere = fs::is_regular_file(site_.workbook, error);
    if (answer && isThere && !isFile(*answer))
      wrong(L"c:zan_find_file", *answer, L"the full path of the site's workbook");
  }

  void checkTables() {
    constexpr const wchar_t* function = L"c:zan_bv_figure_mccdb_fnam";
    if (find(function) != nullptr && session_.answersDatabase(function)) return;
    std::wstring importError;
    static_cast<void>(session_.database(importError));
    const auto answer = probe(function, {}, session_.shownText(importError));
    if (answer && !isDatabase(*answer)) wrong(function, *answer, L"the file of the engineering tables");
  }

  void checkProject() {
    const auto answer = probe(L"qn_mdb_proj_dbfnam", {Value()});
    if (answer && !answer->isNil() && !isDatabase(*answer))
      wrong(L"qn_mdb_proj_dbfnam", *answer, L"the file of the project, or nil for none");
  }

  /// A layer with settings of the length that is read, in a drawing that nobody keeps.
  void checkWireLayers() {
    simhost::DrawingDatabase& drawing = session_.document().drawing();
    const int before = drawing.undoLog().undoCount();
    simhost::Layer layer;
    layer.name = probeLayer;
    layer.wireSettings.emplace();
    for (std::size_t i = 0; i < numbersPosition; ++i)
      layer.wireSettings->push_back({1, std::wstring(L"-")});
    layer.wireSettings->push_back({290, std::int32_t{1}});
    drawing.putLayer(std::move(layer));
    if (const auto layers = probe(L"zan_get_active_dwg_wiretype", {})) {
      const std::vector<Value> names = lisp::toVector(*layers);
      const bool hasProbe = std::ranges::any_of(names, [](const Value& name) {
        return name.isString() && brenvolt::equalsOrdinalNoCase(name.asString(), probeLayer);
      });
      const bool areTexts = std::ranges::all_of(names, [](const Value& name) { return name.isString(); });
      if (!layers->isList() || !areTexts || !hasProbe)
        wrong(L"zan_get_active_dwg_wiretype", *layers, L"a list with the names of the drawing's wire layers");
    }
    const wchar_t* settings = L"zan_get_activedrawing_wiretype_settings";
    if (const auto answer = probe(settings, {Value::string(probeLayer)})) {
      const std::vector<Value> values = lisp::toVector(*answer);
      const Value at = values.size() > numbersPosition ? values[numbersPosition] : Value();
      const Value number = at.isCons() ? at.asCons().cdr() : at;
      if (!number.isInteger() || number.asInteger() != 1)
        wrong(settings, *answer, L"a list with 1 at position 24 for a layer whose wires carry numbers");
    }
    drawing.undoLog().closeGroup();
    static_cast<void>(drawing.undoLog().undo(drawing.undoLog().undoCount() - before));
  }

  void checkCode() {
    const Value code = session_.interpreter().value(simhost::codeStandardSymbol);
    if (!code.isString() || code.asString().empty())
      findings_.add(
          L"lisp-variable", {.file = siteFile},
          {{L"variable", std::wstring(simhost::codeStandardSymbol)},
           {L"value", shown(code)},
           {L"expected", L"the name of an electrical code, such as \"NEC\""}});
  }

  /// (name point circuit-scale rung-spacing spacing component-scale trace workbook)
  void checkBuildData() {
    const Value data = session_.interpreter().value(L"GBL_qn_bv_data");
    const std::vector<Value> values = lisp::toVector(data);
    constexpr std::size_t needed = 6;
    bool isRight = values.size() >= needed && values[0].isString();
    for (std::size_t i = 2; isRight && i < needed; ++i)
      isRight = values[i].isNumber();
    if (!isRight)
      findings_.add(
          L"lisp-variable", {.file = siteFile},
          {{L"variable", L"GBL_qn_bv_data"},
           {L"value", shown(data)},
           {L"expected", L"(name point circuit-scale rung-spacing spacing component-scale trace workbook)"}});
  }

  const SiteModel& site_;
  CheckSession& session_;
  Findings& findings_;
};

} // namespace

void checkLisp(const SiteModel& site, CheckSession& session, Findings& findings) {
  if (session.isComplete()) LispCheck(site, session, findings).run();
}

} // namespace circuits
