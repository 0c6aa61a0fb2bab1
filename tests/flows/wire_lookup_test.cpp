// Sessions of the wire lookup, from LISP, through the windows, on the tables of the sample site.
#include "data/circuit_data.h"
#include "tests/flows/picker_session.h"
#include "tests/support/golden.h"
#include "tests/support/temporary_folder.h"

#include <doctest/doctest.h>

#include <functional>
#include <string>

using namespace brenvolt;
using test::PickerSession;
using test::PickerTables;
using test::stepOf;

namespace {

/// The tables of the sample site as a database, made once.
const std::string& siteTables() {
  static const PickerTables tables;
  static const std::string file = tables.file();
  return file;
}

std::string lookupStep(const std::string& actions) {
  return stepOf("ZanDlgWireSelect", actions);
}

/// A motor's circuit, as a motor picker leaves it.
void putMotor() {
  ZanCircuitData& data = circuitData();
  data.type = L"Induction";
  data.load = L"20";
  data.voltage = L"460";
  data.phase = L"3";
  data.fla = 28.0;
  data.fromSelection = true;
}

struct SessionRow {
  const char* promise;
  const char* call;
  std::function<void()> prepare;
  const char* actions; ///< of the lookup's dialog, to its end
  const char* answer;
};

void runRow(const SessionRow& row) {
  CAPTURE(row.promise);
  PickerSession session(siteTables(), "[" + lookupStep(row.actions) + "]");
  if (row.prepare) row.prepare();
  CHECK_EQ(session.eval(row.call), row.answer);
}

constexpr char wire[] = "(zan_bv_wire_select)";

} // namespace

TEST_CASE("a whole session on the sample tables, as a person sees it") {
  PickerSession session(siteTables(), test::stepsOfFile("tests/flows/answers/wire_select.json"));
  CHECK_EQ(session.eval(wire), R"(("8AWG" ""))");
  CHECK(test::matchesGolden("tests/flows/golden/wire_select.json", session.recording()));
}

TEST_CASE("fields, changes and answers of the lookup") {
  const SessionRow rows[] = {
      {"a motor's circuit comes with its values, and the proposal carries the total", wire, putMotor,
       R"do({"expect": "voltage", "text": "460", "enabled": true}, {"expect": "current", "text": "28"},
          {"expect": "multiplier", "text": "1.25"}, {"expect": "totalCurrent", "text": "35"},
          {"expect": "groundSize", "text": "8 AWG"},
          {"expect": "grid", "row": {"Size": "10 AWG"}, "column": "Utilisation (%)", "is": "125", "alert": true},
          {"expect": "grid", "row": {"Size": "8 AWG"}, "column": "Utilisation (%)", "is": "87.5", "alert": false},
          {"press": "ok"})do",
       R"(("8AWG" ""))"},
      {"what the configuration fixes can be read and no more", wire,
       [] {
         putMotor();
         circuitData().setOpenField(3, false);
         circuitData().setOpenField(4, false);
         circuitData().setOpenField(8, false);
       },
       R"({"expect": "voltage", "text": "460", "enabled": false}, {"expect": "phase", "enabled": false},
          {"expect": "current", "enabled": true}, {"expect": "multiplier", "text": "1.25", "enabled": true},
          {"press": "cancel"})",
       "nil"},
      {"a number that makes no sense is put back", wire, putMotor,
       R"({"tick": "voltageDrop", "to": true}, {"set": "length", "to": "250"},
          {"set": "length", "to": "abc"}, {"expect": "length", "text": "250"},
          {"set": "powerFactor", "to": "1.2"}, {"expect": "powerFactor", "text": "0.85"},
          {"set": "energyPrice", "to": ""}, {"expect": "energyPrice", "text": "0.08"},
          {"set": "continuousFactor", "to": "7"}, {"expect": "continuousFactor", "text": "0.8"},
          {"set": "multiplier", "to": ""}, {"expect": "multiplier", "text": "1.25"},
          {"expect": "totalCurrent", "text": "35"}, {"press": "cancel"})",
       "nil"},
      {"Enter leaves a field and does not close the dialog", wire, putMotor,
       R"({"type": "current", "to": "52"}, {"key": "Enter"}, {"expect": "totalCurrent", "text": "65"},
          {"press": "ok"})",
       R"(("4AWG" ""))"},
      {"the total becomes extra current, and less than that changes the current", wire, putMotor,
       R"({"set": "totalCurrent", "to": "45"}, {"expect": "extraCurrent", "text": "10"},
          {"set": "totalCurrent", "to": "25"}, {"expect": "extraCurrent", "text": "0"},
          {"expect": "current", "text": "20"}, {"press": "ok"})",
       R"(("10AWG" ""))"},
      {"ticks open their fields, and make the columns and the overall factor", wire, putMotor,
       R"do({"expect": "grid", "header": ["", "Size", "Ampacity (A)", "Utilisation (%)"]},
          {"tick": "voltageDrop", "to": true},
          {"expect": "length", "enabled": true}, {"expect": "energyNote", "visible": true},
          {"expect": "grid", "header": ["", "Size", "Ampacity (A)", "Utilisation (%)", "Voltage drop (V)",
            "Voltage drop (%)", "Power loss (kW)", "Yearly cost"]},
          {"tick": "continuousLoad", "to": false},
          {"expect": "energyPrice", "enabled": false}, {"expect": "overallFactor", "text": "1"},
          {"expect": "grid", "header": ["", "Size", "Ampacity (A)", "Utilisation (%)", "Voltage drop (V)",
            "Voltage drop (%)", "Power loss (kW)"]},
          {"tick": "fillCorrection", "to": true}, {"choose": "fillRange", "to": "7~9"},
          {"expect": "fillFactor", "text": "0.7"}, {"expect": "overallFactor", "text": "0.7"},
          {"tick": "ambientCorrection", "to": true}, {"choose": "ambientRange", "to": "36~40C"},
          {"expect": "ambientFactor", "text": "0.88"}, {"expect": "overallFactor", "text": "0.616"},
          {"tick": "spare", "to": true}, {"expect": "spareInput1", "enabled": true},
          {"expect": "overallFactor", "text": "0.616"}, {"press": "ok"})do",
       R"(("6AWG" ""))"},
      {"parallel runs: counts and fill ranges stand in the table, the highest count in the answer", wire,
       [] {
         putMotor();
         circuitData().fla = 400.0;
       },
       R"do({"tick": "parallel", "to": true}, {"choose": "parallelCount", "to": "3"},
          {"expect": "grid", "header": ["", "Size", "Conductors per phase", "Raceway fill", "Ampacity (A)",
            "Utilisation (%)"]},
          {"select": "grid", "row": {"Size": "3/0 AWG", "Conductors per phase": "3", "Raceway fill": "1~3"}},
          {"press": "ok"})do",
       R"a(("3/0AWG" "(3)"))a"},
      {"another insulation keeps the ambient range and takes its factor", wire, putMotor,
       R"({"tick": "ambientCorrection", "to": true}, {"choose": "ambientRange", "to": "41~45C"},
          {"expect": "ambientFactor", "text": "0.82"},
          {"choose": "insulation", "to": "TW - Thermoplastic - moisture resistant - dry and wet / 60C"},
          {"expect": "ambientRange", "text": "41~45C"}, {"expect": "ambientFactor", "text": "0.71"},
          {"press": "ok"})",
       R"(("4AWG" ""))"},
      {"the circuit's own ambient range opens with its factor", wire,
       [] {
         putMotor();
         circuitData().useAmbient = true;
         circuitData().ambientRange = L"41~45C";
       },
       R"({"expect": "ambientCorrection", "checked": true}, {"expect": "ambientRange", "text": "41~45C"},
          {"expect": "ambientFactor", "text": "0.82"}, {"press": "ok"})",
       R"(("8AWG" ""))"},
  };
  for (const SessionRow& row : rows)
    runRow(row);
}

TEST_CASE("a field that is left by a click into the table: the click means the size that the user saw") {
  const auto leftBy = [](const std::string& actions) { return lookupStep(actions + R"(, {"press": "ok"})"); };
  struct Row {
    const char* promise;
    double fla;
    std::string steps;
    const char* answer;
  };
  const std::string typed = R"({"type": "current", "to": "200"}, )";
  const std::string question = stepOf("ZanBrenvolt.WirAmpacityExceeded", R"({"press": 2})") + ",";
  const Row rows[] = {
      {"the size is gone: nothing is selected, and the table is that of the fields", 10.0,
       leftBy(typed + R"do({"select": "grid", "row": {"Size": "14 AWG"}},
             {"expect": "grid", "row": {"Size": "300 KCMIL"}, "column": "Utilisation (%)", "is": "109.65"})do"),
       R"(("" ""))"},
      {"another row than the selected one, gone too", 10.0,
       leftBy(typed + R"({"select": "grid", "row": {"Size": "12 AWG"}})"), R"(("" ""))"},
      {"the size is still there, at another place", 10.0,
       leftBy(typed + R"({"select": "grid", "row": {"Size": "500 KCMIL"}})"), R"(("500KCMIL" ""))"},
      {"it is there and too small: a question", 10.0,
       leftBy(typed + R"({"select": "grid", "row": {"Size": "4/0 AWG"}})") + "," + question +
           lookupStep(R"({"press": "cancel"})"),
       "nil"},
      {"a double click that brings a new table takes nothing yet", 10.0,
       lookupStep(typed + R"({"doubleClick": "grid", "row": {"Size": "500 KCMIL"}}, {"wait": 2000},
             {"doubleClick": "grid", "row": {"Size": "400 KCMIL"}})"),
       R"(("400KCMIL" ""))"},
      {"the keyboard's way into the table", 10.0, leftBy(typed + R"do({"focus": "grid"},
             {"expect": "grid", "row": {"Size": "300 KCMIL"}, "column": "Utilisation (%)", "is": "109.65"})do"),
       R"(("" ""))"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    PickerSession session(siteTables(), "[" + row.steps + "]");
    putMotor();
    circuitData().fla = row.fla;
    CHECK_EQ(session.eval(wire), row.answer);
  }
}

TEST_CASE("a load has its own power factor and multiplier, and leaves a motor's alone") {
  PickerSession session(
      siteTables(),
      "[" +
          lookupStep(
              R"({"expect": "powerFactor", "text": "0.95"}, {"expect": "multiplier", "text": "1.25"},
                 {"set": "multiplier", "to": "1"}, {"press": "ok"})") +
          "," + lookupStep(R"({"expect": "multiplier", "text": "1"}, {"press": "ok"})") + "]");
  putMotor();
  circuitData().flaMultiplier = 1.15;
  circuitData().powerFactor = 0.8;
  CHECK_EQ(
      session.eval("(list (zan_bv_pf_wire_select) (zan_bv_pf_wire_select))"), R"((("8AWG" "") ("8AWG" "")))");
  CHECK_EQ(circuitData().flaMultiplier, 1.15);
  CHECK_EQ(circuitData().powerFactor, 0.8);
  CHECK_EQ(loadFactors().flaMultiplier, 1.0);
  CHECK_EQ(loadFactors().powerFactor, 0.95);
  CHECK(circuitData().fromSelection);
}

TEST_CASE("what was chosen stands in the circuit's record, and the next lookup shows it") {
  PickerSession session(
      siteTables(),
      "[" +
          lookupStep(
              R"({"tick": "voltageDrop", "to": true}, {"set": "length", "to": "175"},
                 {"set": "current", "to": "abc"}, {"choose": "groundSize", "index": 1}, {"press": "ok"})") +
          "," +
          lookupStep(
              R"({"expect": "voltageDrop", "checked": true}, {"expect": "length", "text": "175"},
                 {"expect": "groundSize", "text": "6 AWG"}, {"press": "cancel"})") +
          "]");
  putMotor();
  CHECK_EQ(session.eval("(list (zan_bv_wire_select) (zan_bv_wire_select))"), R"((("8AWG" "") nil))");
  const ZanCircuitData& data = circuitData();
  CHECK_EQ(data.fla, -1.0);
  CHECK_EQ(data.length, 175.0);
  CHECK(data.temperature == L"75C");
  CHECK(data.insulation.starts_with(L"THWN"));
  CHECK(data.groundSize == L"6AWG");
  CHECK(data.wireChosen);
  CHECK(!data.fromSelection);
}

TEST_CASE("an overloaded size is taken only after a question") {
  const std::string select = R"({"select": "grid", "row": {"Size": "12 AWG"}})";
  PickerSession session(
      siteTables(), "[" + lookupStep(select + R"(, {"press": "ok"})") + "," +
                        stepOf("ZanBrenvolt.WirAmpacityExceeded", R"({"press": 2})") + "," +
                        lookupStep(R"({"doubleClick": "grid", "row": {"Size": "12 AWG"}})") + "," +
                        stepOf("ZanBrenvolt.WirAmpacityExceeded", R"({"press": 1001})") + "]");
  putMotor();
  CHECK_EQ(session.eval(wire), R"(("12AWG" ""))");
}

TEST_CASE("no database, a declined alert: the lookup does not open") {
  {
    PickerSession session(
        "no/such/folder/tables.db", "[" + stepOf("ZanBrenvolt.DatabaseError", R"({"press": "ok"})") + "]");
    CHECK_EQ(session.eval(wire), "nil");
  }
  PickerSession session(
      siteTables(), "[" + stepOf("ZanBrenvolt.TableNotFound", R"({"press": 2})") + "," +
                        stepOf("ZanBrenvolt.TableNotFound", R"({"press": 1001})") + "," +
                        lookupStep(R"({"press": "cancel"})") + "]");
  session.eval("(setq GBL_qn_electcodestd \"CEC\")");
  CHECK_EQ(session.eval("(list (zan_bv_wire_select) (zan_bv_wire_select))"), "(nil nil)");
}

TEST_CASE("a standard whose tables are missing leaves the lists as they were") {
  PickerSession session(
      siteTables(),
      "[" + lookupStep(R"({"choose": "wireStandard", "to": "MM2"})") + "," +
          stepOf("ZanBrenvolt.TableNotFound", R"({"press": 2})") + "," +
          lookupStep(
              R"({"expect": "wireMetal", "text": "CU", "choices": ["AL", "CU"]}, {"press": "cancel"})") +
          "]");
  putMotor();
  CHECK_EQ(session.eval(wire), "nil");
}

TEST_CASE("a report goes to workbook, csv and tabbed text, replaced and appended to") {
  const test::TemporaryFolder folder;
  const auto report = [&folder](const std::string& name) { return (folder / name).string(); };
  const auto save = [](const std::string& actions) {
    return stepOf("file", actions + R"(, {"press": "ok"})");
  };
  const auto ask = [](int button) {
    return stepOf("ZanBrenvolt.WireSizeLookupSaveAs", R"({"press": )" + std::to_string(button) + "}");
  };
  const auto path = [&report](const std::string& name) {
    return R"({"set": "path", "to": ")" + report(name) + R"("})";
  };
  const std::string press = lookupStep(R"({"press": "report"})");
  const std::string steps =
      "[" + lookupStep(R"({"set": "reportTitle", "to": "Pump \"A\""}, {"press": "report"})") + "," +
      save(path("wires.csv")) + "," + press + "," + save(path("wires.csv")) + "," + ask(1002) + "," + press +
      "," + save(path("wires.csv")) + "," + ask(1001) + "," + press + "," + save(path("wires.csv")) + "," +
      ask(1002) + "," + press + "," + save(path("wires") + R"(, {"set": "type", "to": 3})") + "," + press +
      "," + save(path("wires.xls")) + "," + press + "," + save(path("wires.xls")) + "," + ask(1002) + "," +
      press + "," + save(path("none/wires.xls")) + "," + lookupStep(R"({"press": "cancel"})") + "]";
  PickerSession session(siteTables(), steps);
  putMotor();
  circuitData().setOpenField(0, false);
  circuitData().fla = 180.0;
  CHECK_EQ(session.eval(wire), "nil");
  const std::string csv = test::bytesOf(folder / "wires.csv");
  const std::string once = csv.substr(0, csv.size() / 2);
  CHECK_EQ(csv, once + once);
  CHECK(test::matchesGolden("tests/flows/golden/wire_report.csv", once));
  CHECK(test::matchesGolden("tests/flows/golden/wire_report.rep", test::bytesOf(folder / "wires.rep")));
  CHECK(std::filesystem::exists(folder / "wires.xls"));
  const std::string printed = session.lisp().takePrinted();
  CHECK_MESSAGE(printed.find("The report cannot be written") != std::string::npos, printed);
}

namespace {

/// A line with data of a circuit that is not a block, a placed circuit, and a device without a circuit.
constexpr char drawing[] = R"lisp(
  (define-block "PLACED" '(0.0 0.0) (lambda () (draw-circle '(0.0 0.0) 1.0)))
  (define-block "DEVICE" '(0.0 0.0)
    (lambda ()
      (draw-attribute-definition "TAG1" '(0.0 0.0) "M" 1.0)
      (draw-attribute-definition "X1TERM01" '(0.0 1.0) "" 1.0)
      (draw-attribute-definition "X2TERM02" '(0.0 2.0) "" 1.0)))
  (setq line (draw-line '(0.0 0.0) '(1.0 1.0))
        placed (insert-block "PLACED" '(5.0 5.0))
        device (insert-block "DEVICE" '(9.0 9.0)))
  (entity-data-set! placed "ORL_QN_BV_CIRCPARAMS"
    (string-append "Induction;20;HP;460;3;60;1800;28;1.15; ;AWG;CU; ; ;150;FT;Steel conduit;1.0;5;0.9; ; ; ; ; ; ; ; ;"
                   " ;!MCC_CTRL; "))
  (entity-data-set! line "ORL_QN_BV_CIRCPARAMS" "Induction;20;HP")
  (entity-data-set! placed "ORL_QN_BV_CIRCPARAMS2" "((\"4AWG(2)\" \"BLK\" \"1\")(\"8AWG\" nil \"3\"))"))lisp";

std::string pickStep(const std::string& handle) {
  return stepOf("pick", R"({"pick": ")" + handle + R"("})");
}

} // namespace

TEST_CASE("a placed circuit is edited from its record and answers its components") {
  PickerSession session(
      siteTables(), "[" +
                        lookupStep(
                            R"({"expect": "current", "text": "28"}, {"expect": "multiplier", "text": "1.15"},
                 {"expect": "length", "text": "150"}, {"expect": "raceway", "text": "Steel conduit"},
                 {"expect": "powerFactor", "text": "1.0", "choices": ["1.0", "0.8", "0.85", "0.9", "1"]},
                 {"expect": "continuousFactor", "text": "0.9"}, {"expect": "groundSize", "text": "8 AWG"},
                 {"press": "ok"})") +
                        "]");
  session.eval(drawing);
  session.eval("(setq answer (zan_bv_edit_wiresize placed))");
  CHECK_EQ(
      session.eval("(list (equal (car (car answer)) placed) (cdr (car answer)))"),
      R"((T ("4AWG" "250KMIL")))");
  CHECK_EQ(
      session.eval("(car (car (cdr answer)))"),
      R"(("BREAKER" "Inverse time circuit breaker rating" 70.0 "70A" "CB-3P-70"))");
  CHECK_EQ(session.eval("(zan_bv_edit_wiresize \"text\")"), "nil");
}

TEST_CASE("a pick goes on to a placed circuit, or to a device that asks for its motor first") {
  std::string line;
  std::string placed;
  std::string device;
  {
    PickerSession session(siteTables(), "[]");
    session.eval(drawing);
    const auto pickOf = [&session](const char* symbol) {
      const std::string text = session.eval("(entity-handle " + std::string(symbol) + ")");
      return pickStep(text.substr(1, text.size() - 2)) + ",";
    };
    line = pickOf("line");
    placed = pickOf("placed");
    device = pickOf("device");
  }
  const std::string ok = R"({"press": "ok"})";
  const std::string cancel = R"({"press": "cancel"})";
  const std::string motor = stepOf("ZanDlgMotorSelect", R"({"select": "grid", "row": 1},)" + ok) + ",";
  struct Row {
    std::string steps;
    const char* prepare;
    const char* answer; ///< the entity, its wire, the number of component rows
  };
  const Row rows[] = {
      {line + device + motor + lookupStep(ok), "", R"((DEVICE "14AWG" 7))"},
      {line + placed +
           lookupStep(R"({"tick": "parallel", "to": true}, {"choose": "parallelCount", "to": "2"},)" + ok),
       "", R"x((PLACED "4AWG(2)" 7))x"},
      {placed + lookupStep(ok), "(setq GBL_qn_electcodestd nil)", R"((PLACED "4AWG" 0))"},
      {device + stepOf("ZanDlgMotorSelect", cancel), "", "nil"},
      {device + motor + lookupStep(cancel), "", "nil"},
      {line + stepOf("pick", cancel), "", "nil"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.steps);
    PickerSession session(siteTables(), "[" + row.steps + "]");
    session.eval(drawing);
    session.eval(row.prepare);
    session.eval("(setq answer (zan_bv_edit_wiresize nil) edited (car answer))");
    CHECK_EQ(
        session.eval("(if answer (list (if (equal (car edited) device) 'device (if (equal (car edited) "
                     "placed) 'placed)) "
                     "(car (cdr edited)) (length (car (cdr answer)))))"),
        row.answer);
  }
}
