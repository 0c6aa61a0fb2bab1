#include "tests/flows/config_site.h"

#include "drawing/history.h"
#include "host/resources.h"
#include "plugin/function_table.h"
#include "plugin/process_record.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/lisp/errors.h"
#include "tests/support/answer_steps.h"
#include "tests/support/sheets.h"
#include "text/numbers.h"

#include <doctest/doctest.h>

namespace brenvolt::test {

namespace {

constexpr std::string_view product = R"lisp(
(define-block "ZAN_BV_MARKER_BLOCK" '(0 0) (lambda ()
  (draw-attribute-definition "CODE" '(0 0) "" 1.0) (draw-attribute-definition "ORDER" '(0 0) "" 1.0)
  (draw-attribute-definition "MISC1" '(0 0) "" 1.0)))
(draw-line '(0 0) '(9 9))
(defun mark (code order &optional misc)
  (insert-block "ZAN_BV_MARKER_BLOCK" '(1 2) 1.0 0.0 "0"
    (list (cons "CODE" (symbol-name code)) (cons "ORDER" (number->string order)) (cons "MISC1" (or misc "")))))
(defun put (what) (draw-text '(1 2) what 2.0) T)
(defun nest (what &rest codes)
  (put what) (dolist (code codes) (mark (intern (string-upcase code)) 1)) 2)
(defun bare () (draw-circle '(0 0) 1.0) 2)
(defun fail () (car 5))
(defun texts () (mapcar '(lambda (e) (entity-get e "text"))
  (remove-if-not '(lambda (e) (equal (entity-get e "kind") "text")) (entities-in-space))))
(defun is-marker (e) (equal (entity-get e "kind") "block-reference"))
(defun markers-left () (mapcar '(lambda (e) (entity-get (entity-attribute e "CODE") "text"))
  (remove-if-not 'is-marker (entities-in-space))))
(setq saved nil)
(defun qn_bv_save_codehdl (rows) (setq saved rows) T)
(mapc 'vz-korvo-defun '(put nest bare fail stop-undo post-quit throw-number qn_bv_save_codehdl))
)lisp";

std::string inQuotes(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

std::string listOf(std::initializer_list<std::string_view> texts) {
  std::string list;
  for (const std::string_view text : texts)
    list += (list.empty() ? "" : ", ") + inQuotes(text);
  return "[" + list + "]";
}

std::vector<simhost::AnswerStep> parse(const std::vector<std::string>& steps) {
  std::string list;
  for (const std::string& step : steps)
    list += (list.empty() ? "" : ",\n") + step;
  return answerSteps(list);
}

/// What forms can do to the host.
void defineFaults(LispSession& lisp) {
  using simhost::lisp::Value;
  simhost::Document& document = *lisp.host().documents().current();
  simhost::lisp::Interpreter& interpreter = document.interpreter();
  interpreter.define(L"stop-undo", 0, 0, [&document](auto&) {
    document.drawing().undoLog().setOff(true);
    return Value::truth(true);
  });
  interpreter.define(L"post-quit", 0, 0, [&lisp](auto&) {
    lisp.windows().postQuit();
    return Value::truth(true);
  });
  interpreter.define(L"throw-number", 0, 0, [](auto&) -> Value {
    throw 5; // of no class that the host would catch
  });
}

} // namespace

std::string configStep(std::initializer_list<std::string> actions) {
  std::string list;
  for (const std::string& action : actions)
    list += (list.empty() ? "" : ", ") + action;
  return R"({"dialog": "ZanDlgConfig", "do": [)" + list + "]}";
}

std::string answerStep(std::string_view key, int button) {
  return R"({"dialog": "ZanBrenvolt.)" + std::string(key) + R"(", "do": [{"press": )" +
         std::to_string(button) + "}]}";
}

std::string pressing(std::string_view control) {
  return R"({"press": )" + inQuotes(control) + "}";
}

std::string choosing(std::string_view list, std::string_view entry) {
  return R"({"choose": "options/)" + std::string(list) + R"(", "to": )" + inQuotes(entry) + "}";
}

std::string selecting(std::initializer_list<std::string_view> path) {
  return R"({"select": "units", "path": )" + listOf(path) + "}";
}

std::string naming(std::string_view name) {
  return R"({"set": "historyName", "to": )" + inQuotes(name) + "}";
}

std::string expectingUnits(std::initializer_list<std::string_view> outline) {
  return R"({"expect": "units", "items": )" + listOf(outline) + "}";
}

std::string expecting(std::string_view control, std::string_view members) {
  return R"({"expect": )" + inQuotes(control) + ", " + std::string(members) + "}";
}

std::vector<std::string> ConfigSite::usualSheet() {
  return {
      "BRK|Breaker|x|Frame|Small|1|1|(put small)",
      "||||Large|2|2|(put large)",
      "CON|Contactor|x|Kind|Plain|1|1|(put plain)",
      "||||Nested|2|2|(nest outer AUX HEAD)",
      "||||Empty|3|3|(bare)",
      "AUX|Auxiliary|x|Count|One|1|1|(put one)",
      "||||Deep|2|2|(nest inner LMP)",
      "LMP|Lamp|x|Colour|Red|1|1|(put red)",
      "||||Green|2|2|(put green)",
      "||||Broken|3|3|(put half)(fail)",
      "||||Quit|4|4|(post-quit)",
      "||||Throws|5|5|(put thrown)(throw-number)",
      "||||Last|6|6|(put last)(stop-undo)",
      "HEAD|Heading||||||(put head)"};
}

ConfigSite::ConfigSite(const std::vector<std::string>& lines) {
  std::vector<std::string> rows = {
      "code|title|x|group|option|value|option code|first|second|third|name|value"};
  rows.insert(rows.end(), lines.begin(), lines.end());
  workbook_ = writeBook(folder_ / "zan_brenvolt.xls", {sheetOf(L"S", rows)});
}

ConfigResult ConfigSite::run(const ConfigRun& run) {
  return this->run(run, nullptr);
}

ConfigResult ConfigSite::run(const ConfigRun& run, const std::function<bool(ZanBrenvolt&)>& configure) {
  LispSession lisp(parse(run.steps));
  resetProcessRecord();
  registerFunctions();
  setResourceModule(kvdsLoadResourceModule(resourceModuleName));
  REQUIRE(resourceModule() != nullptr);
  defineFaults(lisp);
  lisp.eval(std::string(product) + run.setup);
  simhost::DrawingDatabase& drawing = lisp.host().documents().current()->drawing();

  ConfigResult result;
  result.before = simhost::drawingToJson(drawing);
  lisp.eval("(setq last (entity-handle (entity-last)) start (undo-count))");
  lisp.eval("(mapc '(lambda (m) (apply 'mark m)) '" + run.markers + ")");
  lisp.takePrinted();
  try {
    if (configure) {
      const ResourceScope resources;
      ZanBuildArgs args;
      args.workbook = workbook_;
      args.worksheet = L"S";
      args.circuit = L"Motor";
      args.type = L"Direct";
      args.lastHandleText = fromUtf8(lisp.eval("(intern last)"));
      args.undoPosition = toInt(fromUtf8(lisp.eval("start")));
      ProcessRecord& lent = processRecord();
      ZanBrenvolt build(std::move(args), {circuitContext(), lentTables(), lent.lastMarkerId});
      build.readBuildData();
      REQUIRE((build.loadCatalog() && build.readMarkers() && build.prepare(BuildKind::interactive)));
      result.answer = configure(build) ? "T" : "nil";
    } else {
      lisp.host().documents().current()->interpreter().setValue(
          L"book", simhost::lisp::Value::string(workbook_));
      result.answer = lisp.eval(
          "(zan_bv_build_circuit (list book \"S\" \"Motor\" \"Direct\" \"" + run.historyName + "\" " +
          (run.isDirect ? "T" : "nil") + " last start))");
    }
  } catch (const simhost::lisp::Cancelled&) {
    result.answer = "cancelled";
  }
  result.printed = lisp.takePrinted();
  result.drawing = simhost::drawingToJson(drawing);
  result.failure = toUtf8(lisp.windows().failure());
  if (result.failure.empty() && lisp.windows().unusedSteps() > 0) result.failure = "steps are left over";
  CHECK_EQ(lisp.host().documents().resourceDepth(), 0);
  CHECK_EQ(drawing.openObjectCount(), 0);
  // A run that has failed takes no further forms.
  if (result.failure.empty()) {
    result.drawn = lisp.eval("(texts)");
    result.markers = lisp.eval("(markers-left)");
    result.saved = lisp.eval("saved");
  }
  setResourceModule(nullptr);
  return result;
}

std::string ConfigSite::evaluate(std::string_view forms) {
  LispSession lisp;
  defineFaults(lisp);
  return lisp.eval(std::string(product) + std::string(forms));
}

std::string ConfigSite::historyNames() const {
  ZanXmlHistory file;
  file.context = workbook_;
  std::vector<std::wstring> names;
  if (file.Reload()) file.GetHistoryNames(L"Motor", L"Direct", names);
  return toUtf8(join(names, L"|"));
}

} // namespace brenvolt::test
