#include "tests/build/build_site.h"

#include "host/lisp_calls.h"
#include "host/resources.h"
#include "simhost/json/json_text.h"
#include "tests/support/sheets.h"
#include "text/numbers.h"

#include <nlohmann/json.hpp>

namespace brenvolt::test {

namespace {

constexpr std::string_view product = R"lisp(
(define-block "Zan_BV_Marker_Block" '(0 0) (lambda ()
  (draw-attribute-definition "code" '(0 0) "" 1.0)
  (draw-attribute-definition "ORDER" '(0 0) "" 1.0)
  (draw-attribute-definition "MISC1" '(0 0) "" 1.0)
  (draw-attribute-definition "MISC2" '(0 0) "passed over" 1.0)))
(setq ran nil)
(defun mark (code order &optional misc)
  (insert-block "ZAN_BV_MARKER_BLOCK" '(1.0 2.0) 1.0 0.0 "0"
    (list (cons "CODE" code) (cons "ORDER" order) (cons "MISC1" (or misc "")))))
(defun note (&rest what) (setq ran (append ran (list what))) T)
(defun nest (&rest codes) (setq ran (append ran (list codes))) (dolist (code codes) (mark code "1")) 2)
(defun broken () (car 5))
(defun give (x) x)
(defun is-marker (e)
  (and (equal (entity-get e "kind") "block-reference")
       (string-ci=? (entity-get e "block") "ZAN_BV_MARKER_BLOCK")))
(defun code-of (e) (entity-get (entity-attribute e "CODE") "text"))
(defun codes-left () (mapcar 'code-of (remove-if-not 'is-marker (entities-in-space))))
(defun wipe (code)
  (dolist (e (remove-if-not 'is-marker (entities-in-space))) (if (equal (code-of e) code) (entity-erase e))) T)
(setq seen nil)
(defun look (&rest what) (setq seen (append seen (list (list #xyz #scl #data GBL_qn_bv_marker_data)))) T)
(setq saved nil)
(defun qn_bv_save_codehdl (rows) (setq saved rows) T)
)lisp";

constexpr std::string_view dialogs =
    "dialog ZanBrenvolt.ExecutionError\nmain = failed: {errorFunc} in {place}: {reason}\nbutton 1 = "
    "OK\nbutton 1001 = All\n"
    "dialog ZanBrenvolt.CircuitTemplateDrawing\nmain = foreign template\nbutton 1 = OK\n"
    "text 22420 = %s: deeper than %s\n"
    "text 22430 = marker %s: its full-load current is not known\n"
    "text 22431 = marker %s: the tables of wire sizes cannot be read\n"
    "text 22432 = marker %s: the largest is %s\n"
    "text 22435 = marker %s: its grounding conductor has no size\n"
    "text 22436 = marker %s: grounding, its full-load current is not known\n"
    "text 22437 = marker %s: grounding, the tables of wire sizes cannot be read\n"
    "text 22438 = marker %s: no area for %s\n"
    "text 22440 = %s %s %s %s %s\n";

std::vector<simhost::AnswerStep> answers(int executionErrors) {
  std::vector<simhost::AnswerStep> steps(
      static_cast<std::size_t>(executionErrors), press("ZanBrenvolt.ExecutionError", kvui::ok));
  steps.push_back(press("ZanBrenvolt.CircuitTemplateDrawing", 1));
  return steps;
}

} // namespace

BuildSite::BuildSite(int executionErrors) : lisp_(answers(executionErrors)) {
  simhost::readLanguageFile(dialogs, "words", simhost::LanguageRole::base, resources_);
  setResourceModule(&resources_);
  eval(product);
  for (const wchar_t* name : {L"note", L"nest", L"broken", L"give", L"wipe", L"look", L"qn_bv_save_codehdl"})
    exposeFunction(name);
}

BuildSite::~BuildSite() {
  setResourceModule(nullptr);
}

simhost::DrawingDatabase& BuildSite::drawing() {
  return lisp_.host().documents().current()->drawing();
}

void BuildSite::writeSheet(const std::vector<std::string>& lines) {
  std::vector<std::string> rows = {
      "code|title|x|group|option|value|option code|first|second|third|name|value"};
  rows.insert(rows.end(), lines.begin(), lines.end());
  workbook_ = writeBook(folder_ / "zan_brenvolt.xls", {sheetOf(L"S", rows)});
}

ZanBuildArgs BuildSite::arguments() const {
  ZanBuildArgs args;
  args.workbook = workbook_;
  args.worksheet = L"S";
  args.circuit = L"Motor";
  args.type = L"Direct";
  args.directBuild = true;
  return args;
}

std::unique_ptr<ZanBrenvolt> BuildSite::prepared(ZanBuildArgs args) {
  const ResourceScope resources;
  auto build = std::make_unique<ZanBrenvolt>(std::move(args), lent());
  build->readBuildData();
  if (!build->loadCatalog() || !build->readMarkers()) return nullptr;
  build->readPresets();
  return build;
}

std::vector<std::string> BuildSite::shown() {
  std::vector<std::string> texts;
  const auto recording = simhost::parseJson(lisp_.windows().recording());
  for (const auto& step : recording["steps"])
    texts.push_back(step["shown"]["text"].get<std::string>());
  return texts;
}

std::string describeCodes(const std::vector<std::wstring>& codes) {
  return toUtf8(join(codes, L" "));
}

std::string describeSelections(const BuildState& state) {
  std::vector<std::wstring> texts;
  for (const auto& [code, values] : state.result.selections) {
    std::vector<std::wstring> numbers;
    for (const std::int32_t value : values)
      numbers.push_back(formatInt(value));
    texts.push_back(code + L"=" + join(numbers, L","));
  }
  return describeCodes(texts);
}

std::string describeRows(const ZanAnnotationDataList& rows) {
  std::vector<std::wstring> texts;
  for (const ZanAnnotationDataList::Item& item : rows.items()) {
    if (item.list) {
      texts.push_back(fromUtf8(describeRows(*item.list)));
      continue;
    }
    std::vector<std::wstring> fields;
    for (const ZanAnnotationField& field : item.row->fields) {
      const auto type = static_cast<std::int16_t>(field.type);
      fields.push_back(
          type == kvtype::string ? field.value
          : type == kvtype::nil  ? L"nil"
                                 : field.value + L"/" + formatInt(type));
    }
    texts.push_back(L"(" + join(fields, L" ") + L")");
  }
  return "(" + describeCodes(texts) + ")";
}

} // namespace brenvolt::test
