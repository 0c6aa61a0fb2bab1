// Sessions of the two pickers, from LISP, through the windows.
#include "data/circuit_data.h"
#include "flows/rating_selection.h"
#include "host/host_api_lisp.h"
#include "tests/flows/picker_session.h"
#include "tests/support/golden.h"

#include <doctest/doctest.h>

#include <string>

using namespace brenvolt;
using test::fewMotorsAndLoads;
using test::PickerSession;
using test::PickerTables;
using test::stepOf;

namespace {

constexpr wchar_t motorKey[] = L"ZanBrenvolt::ZanDlgMotorSelect";
constexpr wchar_t loadKey[] = L"ZanBrenvolt::ZanDlgPowerFeed";

std::string motorStep(const std::string& actions) {
  return stepOf("ZanDlgMotorSelect", actions);
}

} // namespace

TEST_CASE("one session fits the sample tables and a few rows, whose recording is the expectation") {
  struct Row {
    const char* name;
    const char* call;
    const char* onSite;
    const char* onFew;
  };
  const Row rows[] = {
      {"motor_select", "(zan_bv_motor_select)", R"~(("Induction" "10" "HP" "460" "3" "60" "1800" 14.0 1.5))~",
       R"~(("Induction" "10" "HP" "460" "3" "60" "1800" 14.0 1.5))~"},
      {"load_select", "(zan_bv_power_feed_select)", R"~(("Heater" "15" "kW" "480" "3" "60" 18.0 1.25))~",
       R"~(("Heater" "15" "kW" "480" "3" "60" 18.04 1.15))~"},
  };
  const std::filesystem::path here = "tests/flows";
  const PickerTables site;
  const PickerTables few(fewMotorsAndLoads());
  for (const Row& row : rows) {
    CAPTURE(row.call);
    const std::string name = std::string(row.name) + ".json";
    const std::string steps = test::stepsOfFile(here / "answers" / name);
    CHECK_EQ(PickerSession(site.file(), steps).eval(row.call), row.onSite);
    PickerSession session(few.file(), steps);
    CHECK_EQ(session.eval(row.call), row.onFew);
    CHECK(test::matchesGolden(here / "golden" / name, session.recording()));
  }
}

TEST_CASE("what the caller gives decides filters, numbers and row") {
  struct Row {
    const char* promise;
    const char* arguments;
    const char* expectations;
    const char* answer;
  };
  const Row rows[] = {
      {"all but the multiplier: FLA_MULT", R"~("Induction" "3" "460" "1800" "10" "HP" 14.0 "60")~",
       R"~({"expect": "typeFilter", "text": "Induction"}, {"expect": "frequencyFilter", "text": "60"},
          {"expect": "grid", "selectedRow": 2, "rows": 3,
           "header": ["", "Load", "Units", "Phase", "Speed (RPM)", "FLA (A)", "Description"]},
          {"expect": "multiplier", "text": "1.15"}, {"expect": "total", "text": "16.1"})~",
       R"~(("Induction" "10" "HP" "460" "3" "60" "1800" 14.0 1.15))~"},
      {"a type that the table lacks leaves its filter open and its column shown", R"~("Wound" "" "460")~",
       R"~({"expect": "typeFilter", "text": "All"}, {"expect": "voltageFilter", "text": "460"},
          {"expect": "grid", "selectedRow": 0, "rows": 4,
           "header": ["", "Type", "Load", "Units", "Phase", "Frequency (Hz)", "Speed (RPM)", "FLA (A)",
                      "Description"]})~",
       R"~(("" "" "" "" "" "" "" 0.0 1.15))~"},
      {"a current within 1e-5 fits, names fit without case, the multiplier is kept",
       R"~("INDUCTION" "" "" "" "" "" 28.000001 "" 1.5)~",
       R"~({"expect": "typeFilter", "text": "Induction"}, {"expect": "grid", "selectedRow": 3})~",
       R"~(("Induction" "10" "HP" "230" "3" "60" "1800" 28.0 1.5))~"},
      {"another current fits no row, and then nothing but the numbers is answered",
       R"~("Induction" "" "460" "" "" "" 13.9 "" 1.0)~", R"~({"expect": "grid", "selectedRow": 0})~",
       R"~(("" "" "" "" "" "" "" 13.9 1.0))~"},
      {"a row that was found without a current gives its own", R"~("" "" "" "1200")~",
       R"~({"expect": "grid", "selectedRow": 4}, {"expect": "total", "text": "29.9"})~",
       R"~(("Synchronous" "25" "HP" "460" "3" "60" "1200" 26.0 1.15))~"},
      {"filter values alone mean no row", R"~("Synchronous")~",
       R"~({"expect": "grid", "selectedRow": 0, "rows": 1})~", R"~(("" "" "" "" "" "" "" 0.0 1.15))~"},
      {"wrong types are stepped over", R"~(5 "3" '("460") "1800" nil "HP" 7 "60" 2.0 "more")~",
       R"~({"expect": "voltageFilter", "text": "All"}, {"expect": "frequencyFilter", "text": "60"},
          {"expect": "grid", "selectedRow": 1})~",
       R"~(("Induction" "5" "HP" "460" "3" "60" "1800" 7.6 2.0))~"},
  };
  const PickerTables tables(fewMotorsAndLoads());
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    PickerSession session(
        tables.file(), "[" + motorStep(std::string(row.expectations) + R"~(, {"press": "ok"})~") + "]");
    CHECK_EQ(session.eval("(zan_bv_motor_select " + std::string(row.arguments) + ")"), row.answer);
  }
}

TEST_CASE("an accepted motor is the circuit in hand and is kept for the user; a cancelled one is nothing") {
  const PickerTables tables(fewMotorsAndLoads());
  PickerSession session(
      tables.file(),
      "[" + motorStep(R"~({"select": "grid", "row": 2}, {"press": "cancel"})~") + "," +
          motorStep(R"~({"select": "grid", "row": 2}, {"press": "ok"})~") + "," +
          motorStep(R"~({"expect": "typeFilter", "text": "Induction"}, {"expect": "grid", "selectedRow": 2},
                       {"set": "current", "to": "0"}, {"press": "ok"})~") +
          "," + motorStep(R"~({"expect": "current", "text": "14"}, {"press": "cancel"})~") + "]");
  CHECK_EQ(session.eval("(zan_bv_motor_select)"), "nil");
  CHECK(circuitData().type.empty());
  CHECK_FALSE(circuitData().fromSelection);
  CHECK_EQ(session.kept(motorKey, L"MotorType"), "-");

  const char* accepted = R"~(("Induction" "10" "HP" "460" "3" "60" "1800" 14.0 1.15))~";
  CHECK_EQ(session.eval("(zan_bv_motor_select)"), accepted);
  CHECK(circuitData().fromSelection);
  const RatingSelection selection = selectionOf(circuitData());
  CHECK(
      selection.type + L" " + selection.load + L" " + selection.units + L" " + selection.voltage ==
      L"Induction 10 HP 460");
  CHECK(selection.phase + L" " + selection.frequency + L" " + selection.speed == L"3 60 1800");
  CHECK_EQ(selection.fla, 14.0);
  CHECK_EQ(selection.flaMultiplier, 1.15);
  struct Kept {
    const wchar_t* name;
    const char* value;
  };
  const Kept values[] = {{L"MotorType", "Induction"}, {L"MotorVoltage", "460"},   {L"MotorSpeed", "1800"},
                         {L"MotorPower", "10"},       {L"MotorFrequency", "60"},  {L"MotorPhase", "3"},
                         {L"MotorUnits", "HP"},       {L"MotorFLA", "14.000000"}, {L"Derating", "1.150000"}};
  for (const Kept& kept : values)
    CHECK_EQ(session.kept(motorKey, kept.name), kept.value);

  CHECK_EQ(
      session.eval("(zan_bv_motor_select)"), R"~(("Induction" "10" "HP" "460" "3" "60" "1800" 0.0 1.15))~");
  CHECK_EQ(session.eval("(zan_bv_motor_select)"), "nil");
}

TEST_CASE("values that were kept in part or are not numbers have their own defaults, motors and loads each") {
  struct Row {
    const char* call;
    const wchar_t* key;
    std::vector<std::pair<const wchar_t*, const wchar_t*>> kept;
    const char* dialog;
    const char* current;
    const char* multiplier;
  };
  const Row rows[] = {
      {"(zan_bv_motor_select)", motorKey, {}, "ZanDlgMotorSelect", "0", "1.15"},
      {"(zan_bv_motor_select)", motorKey, {{L"MotorUnits", L"HP"}}, "ZanDlgMotorSelect", "1.25", "1.15"},
      {"(zan_bv_motor_select)",
       motorKey,
       {{L"MotorFLA", L"0.000001"}, {L"Derating", L"x"}},
       "ZanDlgMotorSelect",
       "0",
       "1.25"},
      {"(zan_bv_motor_select \"\" \"3\")",
       motorKey,
       {{L"MotorFLA", L"3"}, {L"Derating", L"2"}},
       "ZanDlgMotorSelect",
       "3",
       "2"},
      {"(zan_bv_power_feed_select)", loadKey, {{L"PFUnits", L"kW"}}, "ZanDlgPowerFeed", "1", "1.15"},
      {"(zan_bv_power_feed_select)",
       loadKey,
       {{L"PFFLA", L""}, {L"PFDerating", L"0"}},
       "ZanDlgPowerFeed",
       "0",
       "1"},
  };
  const PickerTables tables(fewMotorsAndLoads());
  for (const Row& row : rows) {
    CAPTURE(row.current);
    CAPTURE(row.multiplier);
    const std::string expectations = R"~({"expect": "current", "text": ")~" + std::string(row.current) +
                                     R"~("}, {"expect": "multiplier", "text": ")~" + row.multiplier +
                                     R"~("}, {"press": "cancel"})~";
    PickerSession session(tables.file(), "[" + stepOf(row.dialog, expectations) + "]");
    for (const auto& [name, value] : row.kept)
      session.lisp().host().settings().setValue(row.key, name, value);
    CHECK_EQ(session.eval(row.call), "nil");
  }
}

TEST_CASE("numbers follow each other while the picker is open, letters count as 0") {
  const PickerTables tables(fewMotorsAndLoads());
  PickerSession session(
      tables.file(), "[" + motorStep(R"~(
    {"select": "grid", "row": 2}, {"expect": "total", "text": "16.1"},
    {"select": "grid", "row": 5}, {"expect": "current", "text": "14"}, {"expect": "total", "text": "16.1"},
    {"set": "multiplier", "to": "0"}, {"expect": "multiplier", "text": "1.15"},
    {"set": "multiplier", "to": "2"}, {"expect": "total", "text": "28"},
    {"set": "total", "to": "30.0"}, {"expect": "current", "text": "15"}, {"expect": "total", "text": "30.0"},
    {"set": "multiplier", "to": "many"}, {"expect": "multiplier", "text": "2"},
    {"set": "current", "to": "many"}, {"expect": "total", "text": "0"},
    {"set": "current", "to": "7.6"}, {"press": "ok"})~") +
                         "]");
  CHECK_EQ(
      session.eval("(zan_bv_motor_select)"), R"~(("Induction" "1" "HP" "460" "3" "60" "3600" 7.6 2.0))~");
}

TEST_CASE("a row is changed or added in place and saved when it is left") {
  const PickerTables tables(fewMotorsAndLoads());
  PickerSession session(
      tables.file(), "[" + motorStep(R"~(
    {"expect": "grid", "editable": false},
    {"tick": "edit", "to": true}, {"expect": "cancel", "label": "Close"},
    {"edit": "grid", "row": 1, "column": "FLA (A)", "to": "7.x", "refused": true
},
    {"edit": "grid", "row": 1, "column": "FLA (A)", "to": "7.7"}, {"expect": "ok", "enabled": false},
    {"edit": "grid", "row": 1, "column": "Description", "to": "5'' shaft"},
    {"select": "grid", "row": 2}, {"expect": "ok", "enabled": true},
    {"choose": "voltageFilter", "to": "460"},
    {"edit": "grid", "row": 5, "column": "Type", "to": "Wound"},
    {"edit": "grid", "row": 5, "column": "Load", "to": "40"},
    {"edit": "grid", "row": 5, "column": "FLA (A)", "to": "52"},
    {"edit": "grid", "row": 5, "column": "Frequency (Hz)", "to": "50"},
    {"select": "grid", "row": 1},
    {"expect": "typeFilter", "choices": ["All", "Induction", "Synchronous", "Wound"]},
    {"expect": "frequencyFilter", "choices": ["All", "60", "50"]},
    {"edit": "grid", "row": 5, "column": "Units", "to": "HP"},
    {"tick": "edit", "to": false}, {"expect": "cancel", "label": "Cancel"},
    {"choose": "typeFilter", "to": "Wound"}, {"select": "grid", "row": 1}, {"press": "ok"})~") +
                         "]");
  CHECK_EQ(session.eval("(zan_bv_motor_select)"), R"~(("Wound" "40" "HP" "460" "" "50" "" 52.0 1.15))~");
  CHECK_EQ(
      tables.rows("SELECT [ID], [FLA (A)], [Description], [Maker] FROM MOTOR_NEC WHERE ID = 1"),
      "1|7.7|5'' shaft|X\n");
  CHECK_EQ(
      tables.rows(
          "SELECT [ID], [type], [Load], [Units], [Voltage (V)], [FLA (A)] FROM MOTOR_NEC WHERE ID > 5"),
      "6|Wound|40|HP|460|52\n");
}

TEST_CASE("a row that the table refuses keeps its text, and the reason is shown") {
  const PickerTables tables(fewMotorsAndLoads());
  tables.run(
      "CREATE TRIGGER stop BEFORE UPDATE ON MOTOR_NEC BEGIN SELECT RAISE(ABORT, 'no more changes'); END");
  PickerSession session(tables.file(), "[" + motorStep(R"~(
    {"tick": "edit", "to": true},
    {"edit": "grid", "row": 1, "column": "Type", "to": "O'Neil"}, {"select": "grid", "row": 2},
    {"expect": "grid", "row": 1, "column": "Type", "is": "O'Neil"},
    {"expect": "typeFilter", "choices": ["All", "Induction", "Synchronous"]},
    {"edit": "grid", "row": 1, "column": "Type", "to": "Oneil"}, {"select": "grid", "row": 2},
    {"expect": "grid", "row": 1, "column": "Type", "is": "Oneil"}, {"expect": "ok", "enabled": true},
    {"press": "cancel"})~") + "]");
  const std::string before = tables.rows("SELECT * FROM MOTOR_NEC");
  CHECK_EQ(session.eval("(zan_bv_motor_select)"), "nil");
  CHECK_EQ(tables.rows("SELECT * FROM MOTOR_NEC"), before);
  const std::string printed = session.lisp().takePrinted();
  CAPTURE(printed);
  CHECK_NE(printed.find('\''), std::string::npos);
  CHECK_NE(printed.find("no more changes"), std::string::npos);
}

TEST_CASE("ratings are taken from the drawing, asked for until a motor is picked") {
  const PickerTables tables(fewMotorsAndLoads());
  // Handles in the order of drawing; the block of the second one has "MO" at positions 1 and 2 of its name.
  const char* drawing = R"~(
    (define-block "WIDGET" '(0 0) (lambda () (draw-line '(0 0) '(1 1))))
    (define-block "HMOT" '(0 0) (lambda () (draw-line '(0 0) '(1 1))))
    (setq other (insert-block "WIDGET" '(0 0)))
    (setq motor (insert-block "HMOT" '(5 0)))
    (entity-data-set! motor "ORL_QN_BV_CIRCPARAMS"
      (list "Induction;10;HP;230;3;60;1800;28;1.4")))~";
  std::string other;
  std::string motor;
  {
    PickerSession drawn(tables.file(), "[]");
    drawn.eval(drawing);
    other = drawn.eval("(entity-handle other)");
    motor = drawn.eval("(entity-handle motor)");
  }
  const auto pick = [](const std::string& handle) { return stepOf("pick", R"~({"pick": )~" + handle + "}"); };
  const std::string cancel = stepOf("pick", R"~({"press": "cancel"})~");

  struct Row {
    const char* promise;
    std::string picks;
    const char* after;
    const char* answer;
  };
  const Row rows[] = {
      {"the motor's ratings", pick(other) + "," + pick(motor),
       R"~({"expect": "voltageFilter", "text": "230"}, {"expect": "total", "text": "39.2"},
          {"expect": "grid", "selectedRow": 1})~",
       R"~(("Induction" "10" "HP" "230" "3" "60" "1800" 28.0 1.4))~"},
      {"cancelled, all is as before", pick(other) + "," + cancel,
       R"~({"expect": "voltageFilter", "text": "460"}, {"expect": "current", "text": "26"})~",
       R"~(("Synchronous" "25" "HP" "460" "3" "60" "1200" 26.0 1.15))~"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    PickerSession session(
        tables.file(),
        "[" + motorStep(R"~({"choose": "voltageFilter", "to": "460"}, {"select": "grid", "row": 3},
                           {"press": "pick"})~") +
            "," + row.picks + "," + motorStep(std::string(row.after) + R"~(, {"press": "ok"})~") + "]");
    session.eval(drawing);
    CHECK_EQ(session.eval("(zan_bv_motor_select)"), row.answer);
  }
}

TEST_CASE("a load is taken by the mark of its record, and kept under names of its own") {
  const PickerTables tables(fewMotorsAndLoads());
  const char* drawing = R"~(
    (define-block "WIDGET" '(0 0) (lambda () (draw-line '(0 0) '(1 1))))
    (setq load (insert-block "WIDGET" '(5 0)))
    (entity-data-set! load "ORL_QN_BV_CIRCPARAMS"
      (list "Oven;20;kW;480;3;60; ;24.06; ; ; ; ; ; ; ; ; ; ; ; ; ; ; ; ; ; ; ; ; ;!PF_CTRL")))~";
  std::string load;
  {
    PickerSession drawn(tables.file(), "[]");
    drawn.eval(drawing);
    load = drawn.eval("(entity-handle load)");
  }
  PickerSession session(
      tables.file(),
      "[" + stepOf("ZanDlgPowerFeed", R"~({"set": "multiplier", "to": "1.5"}, {"press": "pick"})~") + "," +
          stepOf("pick", R"~({"pick": )~" + load + "}") + "," +
          stepOf("ZanDlgPowerFeed", R"~({"expect": "phaseFilter", "text": "3"},
                           {"expect": "multiplier", "text": "1.5"}, {"press": "ok"})~") +
          "]");
  session.eval(drawing);
  CHECK_EQ(session.eval("(zan_bv_power_feed_select)"), R"~(("Oven" "20" "kW" "480" "3" "60" 24.06 1.5))~");
  CHECK(circuitData().speed.empty());
  CHECK_EQ(circuitData().flaMultiplier, 1.5);
  CHECK_EQ(loadFactors().flaMultiplier, -1.0);
  std::string kept;
  for (const wchar_t* name :
       {L"PFType", L"PFVoltage", L"PFPower", L"PFFrequency", L"PFPhase", L"PFUnits", L"PFFLA", L"PFDerating",
        L"MotorSpeed"})
    kept += session.kept(loadKey, name) + " ";
  CHECK_EQ(kept, "Oven 480 20 60 3 kW 24.060000 1.500000 - ");
}

TEST_CASE("without a table of the code the user decides, without a database nothing starts") {
  const PickerTables tables(fewMotorsAndLoads());
  const std::string accept = stepOf("ZanBrenvolt.LoadTableNotFound", R"~({"press": 1001})~");
  struct Row {
    const char* promise;
    std::string steps;
    const char* form;
    const char* answer;
  };
  const Row rows[] = {
      {"declined", stepOf("ZanBrenvolt.MotorTableNotFound", R"~({"press": 2})~"), "(zan_bv_motor_select)",
       "nil"},
      {"accepted, once for the process: the default table serves",
       accept + "," + stepOf("ZanDlgPowerFeed", R"~({"expect": "table", "text": "FEED_NEC"},
                {"expect": "dialog", "title": "Select Load"}, {"select": "grid", "row": 1}, {"press": "ok"})~") +
           "," + stepOf("ZanDlgPowerFeed", R"~({"press": "cancel"})~"),
       "(list (zan_bv_power_feed_select) (zan_bv_power_feed_select))",
       R"~((("Heater" "1" "kW" "120" "1" "60" 8.33 1.15) nil))~"},
      {"no database", stepOf("ZanBrenvolt.DatabaseError", R"~({"press": "ok"})~"),
       "(progn (defun c:zan_bv_figure_mccdb_fnam () nil) (zan_bv_motor_select))", "nil"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    PickerSession session(tables.file(), "[" + row.steps + "]");
    session.eval("(setq GBL_qn_electcodestd \"IEC\")");
    CHECK_EQ(session.eval(row.form), row.answer);
  }
}

TEST_CASE("a table that no fallback serves, accepted all the same, gives an empty dialog") {
  const PickerTables tables({{"FEED_NEC", fewMotorsAndLoads()["FEED_NEC"]}});
  PickerSession session(
      tables.file(),
      "[" + stepOf("ZanBrenvolt.MotorTableNotFound", R"~({"press": 1001})~") + "," +
          motorStep(R"~({"expect": "typeFilter", "choices": ["All"]}, {"expect": "grid", "rows": 0},
                           {"set": "total", "to": "10"}, {"press": "ok"})~") +
          "]");
  CHECK_EQ(session.eval("(zan_bv_motor_select)"), R"~(("" "" "" "" "" "" "" 8.0 1.25))~");
}

namespace {

int lockCountSeen = -1;

int countLocks() {
  lockCountSeen = simhost::Session::current()->documents().current()->lockCount();
  kvedRetNil();
  return 1;
}

} // namespace

TEST_CASE("the document is locked while a picker is open") {
  const PickerTables tables(fewMotorsAndLoads());
  PickerSession session(
      tables.file(), "[" + stepOf("ZanBrenvolt.DatabaseError", R"~({"press": "ok"})~") + "]");
  REQUIRE_EQ(kvedDefun(L"count_locks", 900), kvstatus::normal);
  REQUIRE_EQ(kvedRegFunc(countLocks, 900), kvstatus::normal);
  session.eval("(defun c:zan_bv_figure_mccdb_fnam () (count_locks))");
  CHECK_EQ(session.eval("(zan_bv_power_feed_select)"), "nil");
  CHECK_EQ(lockCountSeen, 1);
}
