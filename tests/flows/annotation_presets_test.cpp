// Annotation presets: from the workbook, by hand, from the drawing and from the project, in the result.
#include "data/project_values.h"
#include "tests/flows/circuit_site.h"
#include "text/encoding.h"
#include "text/split.h"

#include <doctest/doctest.h>

using namespace brenvolt;
using test::CircuitSite;
using test::circuitStep;
using test::stepOf;

namespace {

const std::string chooseDirect = R"({"select": "circuits", "path": ["Motors", "Direct"]}, )";

std::string presetStep(const std::string& actions) {
  return stepOf("ZanDlgAnnotation", actions);
}
std::string valueStep(const std::string& actions) {
  return stepOf("ZanAttrSelDlg", actions);
}

/// The annotations of a result.
std::string annotations(test::PickerSession& session) {
  return session.eval("(nth 2 (zan_bv_select_circuit))");
}

} // namespace

TEST_CASE("presets that the workbook switches on reach the caller without an edit, others do not") {
  const CircuitSite site;
  const auto session = site.session(
      circuitStep(chooseDirect + R"({"tick": "usePresets", "to": true}, {"press": "ok"})") + "," +
      circuitStep(
          R"({"expect": "usePresets", "enabled": true}, {"tick": "usePresets", "to": true},
             {"select": "circuits", "path": ["Motors", "Reversing"]},
             {"expect": "usePresets", "enabled": false, "checked": false},
             {"expect": "newConfiguration", "checked": true},
             {"select": "circuits", "path": ["Feeds", "Heater"]}, {"expect": "choosePresets", "enabled": false},
             {"press": "ok"})"));
  CHECK_EQ(annotations(*session), R"((("Place" "LOC" "mcc1" "x")))");
  CHECK_EQ(annotations(*session), "nil");
}

TEST_CASE("a typed value switches its preset on, an emptied one off; places are in upper case") {
  const CircuitSite site;
  const auto session = site.session(
      circuitStep(chooseDirect + R"({"press": "choosePresets"})") + "," +
      presetStep(R"({"expect": "presetKey", "text": "MOTOR"},
          {"expect": "presets", "rows": 3, "header": ["", "Use", "Component", "Attribute", "Description", "Value"],
           "row": 1, "texts": ["", "1", "Place", "LOC", "Where it stands", "MCC1"]},
          {"expect": "valuesFromDrawing", "enabled": false}, {"expect": "ok", "enabled": true},
          {"edit": "presets", "row": 1, "column": "Value", "to": "mcc1"},
          {"expect": "presets", "row": 1, "column": "Use", "is": "1"},
          {"key": "Delete", "in": "presets"},
          {"expect": "presets", "row": 1, "texts": ["", "0", "Place", "LOC", "Where it stands", ""]},
          {"expect": "ok", "enabled": false}, {"expect": "valuesFromDrawing", "enabled": true},
          {"select": "presets", "row": 2, "column": "Description"}, {"key": "Delete", "in": "presets"},
          {"expect": "presets", "row": 2, "column": "Description", "is": "What it drives"},
          {"edit": "presets", "row": 2, "column": "Value", "to": "Pump ß"},
          {"expect": "presets", "row": 2, "texts": ["", "1", "Purpose", "DESC1", "What it drives", "Pump ß"]},
          {"edit": "presets", "row": 3, "column": "Use", "to": true},
          {"key": "Delete", "in": "presets"}, {"expect": "presets", "row": 3, "column": "Use", "is": "0"},
          {"edit": "presets", "row": 3, "column": "Use", "to": true}, {"press": "ok"})") +
      "," + circuitStep(R"({"expect": "usePresets", "checked": true}, {"press": "choosePresets"})") + "," +
      presetStep(R"({"edit": "presets", "row": 2, "column": "Value", "to": "lost"}, {"press": "cancel"})") +
      "," + circuitStep(R"({"press": "ok"})") + "," + circuitStep(R"({"press": "choosePresets"})") + "," +
      presetStep(R"({"edit": "presets", "row": 2, "column": "Value", "to": "Fan"}, {"press": "ok"})") + "," +
      circuitStep(R"({"press": "ok"})"));
  CHECK_EQ(annotations(*session), R"((("Purpose" "DESC1" "Pump ß" "") ("Tag" "tag1" "" "y")))");
  session->eval("(setq GBL_qn_strcase 1)");
  CHECK_EQ(annotations(*session), R"((("Place" "LOC" "MCC1" "x") ("Purpose" "DESC1" "FAN" "")))");
}

TEST_CASE("values come from the drawing and from the project, each once") {
  const CircuitSite site;
  const auto session = site.session(
      circuitStep(chooseDirect + R"({"press": "choosePresets"})") + "," +
      presetStep(R"({"select": "presets", "row": 3}, {"press": "valuesFromDrawing"})") + "," +
      valueStep(R"({"expect": "dialog", "title": "Values in the drawing: tag1"},
          {"expect": "values", "choices": ["A1", "A2"]}, {"expect": "ok", "enabled": false},
          {"choose": "values", "to": "A2"}, {"press": "ok"})") +
      "," +
      presetStep(R"({"expect": "presets", "row": 3, "texts": ["", "1", "Tag", "tag1", "Its name", "A2"]},
          {"press": "valuesFromProject"})") +
      "," + valueStep(R"({"expect": "dialog", "title": "Values in the project: tag1"},
          {"expect": "values", "choices": ["1M", "1H", "1CB", "1OL", "1OLC"]}, {"press": "cancel"})") +
      "," + presetStep(R"({"select": "presets", "row": 1}, {"press": "valuesFromProject"})") + "," +
      valueStep(R"({"choose": "values", "to": "MCC8"}, {"press": "ok"})") + "," +
      presetStep(R"({"press": "ok"})") + "," + circuitStep(R"({"press": "ok"})"));
  session->eval(R"lisp(
    (define-block "B" '(0 0) (lambda () (draw-attribute-definition "TAG1" '(0 0) "" 1.0)))
    (dolist (tag '("A1" "A2" "A1")) (insert-block "B" '(0 0) 1.0 0.0 "0" (list (cons "TAG1" tag)))))lisp");
  CHECK_EQ(annotations(*session), R"((("Place" "LOC" "MCC8" "x") ("Tag" "tag1" "A2" "y")))");
}

TEST_CASE("the attribute decides which column of which tables is asked") {
  const CircuitSite site(
      {}, {{"COMP", "TAGNAME,TAGSTRIP,INST\nM1,no,A\n"},
           {"PNLCOMP", "TAGNAME,INST\nP1,\nM1,B\n"},
           {"TERMS", "TAGSTRIP,INST,SIGCODE\nTB1,C,no\n"},
           {"PNLTERM", "TAGSTRIP,INST\nTB2,A\n"},
           {"SIG", "SIGCODE,INST\nS1,no\n"}});
  struct Row {
    const wchar_t* attribute;
    const char* values;
  };
  const Row rows[] = {
      {L"TAG1", "M1 P1"}, {L"tag2", "M1 P1"}, {L"TagStrip", "TB1 TB2"},
      {L"SIGCODE", "S1"}, {L"INST", "A B C"}, {L"MISSING", ""},
      {L"A B'", ""},      {L"", ""},
  };
  const auto session = site.session("");
  for (const Row& row : rows) {
    CAPTURE(toUtf8(row.attribute));
    CHECK_EQ(toUtf8(join(readProjectValues(row.attribute, nullptr), L" ")), row.values);
  }
  session->eval("(setq project-database nil)");
  CHECK(readProjectValues(L"INST", nullptr).empty());
}
