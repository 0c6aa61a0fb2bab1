// A motor's or load's page as its user meets it: lists that narrow each other, a current that sizes the wires, lookups,
// and what is kept.
#include "config/widget_manager_mcc.h"

#include "tests/config/mcc_page.h"
#include "text/split.h"

#include <filesystem>

using namespace brenvolt;
using namespace brenvolt::test;

namespace {

/// Runs a page with actions of an answer file and returns what it shows at the end.
ShownPage runPage(
    std::string_view actions, MccMode mode,
    const std::function<void(PageSession&, PageDialog&)>& prepare = {},
    const std::function<void(MccPage&, ZanSettingsWnd&)>& onOpen = {},
    std::vector<std::string>* calls = nullptr) {
  const EngineeringTables tables;
  PageSession session(actions);
  MccPage page(session, mode, tables.file());
  PageDialog dialog;
  ShownPage shown;
  if (prepare) prepare(session, dialog);
  dialog.onOpen = [&](ZanSettingsWnd& window) {
    page.attach(window);
    if (onOpen) onOpen(page, window);
  };
  dialog.onOk = [&](ZanSettingsWnd& window) { shown = shownPage(window, page.manager); };
  session.run(dialog);
  if (calls) *calls = dialog.calls;
  return shown;
}

constexpr const char* filledMotor =
    "Type=Wound rotor | Load=5 | Units= | Voltage (V)= | Phase= | Frequency (Hz)= | Speed (RPM)= | "
    "Full-load current (A)= | Multiplier=";

/// A lookup of the data group whose result a LISP body returns. Its first two rows have values before.
std::string lookedUp(const std::string& body) {
  return runPage(
             R"j({"press": "settings.1.0.button.0"})j", MccMode::motor,
             [&body](PageSession& session, PageDialog&) {
               session.eval("(defun find_data (type fla) " + body + ") (vz-korvo-defun 'find_data)");
             },
             [](MccPage& page, ZanSettingsWnd& window) {
               window.GroupAt(page.manager.GetPage(), mccplace::data)->WriteValues({L"Wound rotor", L"5"});
             })
      .data;
}

std::vector<ZanGroupRow> valueRows(std::initializer_list<const wchar_t*> values) {
  std::vector<ZanGroupRow> rows;
  for (const wchar_t* value : values)
    rows.push_back({L"", {value}});
  return rows;
}

std::string joined(const std::vector<std::wstring>& texts) {
  return toUtf8(join(texts, L" "));
}

} // namespace

TEST_CASE("a number is taken when it reads as it was typed") {
  const struct {
    const wchar_t* text;
    bool isTaken;
  } rows[] = {{L"", true},         {L"12.5", true},       {L"12.", true}, {L"-5", true},
              {L"12.5a", false},   {L".5", false},        {L" 5", false}, {L"1e3", false},
              {L"0.123456", true}, {L"0.1234567", false}, {L"nan", false}};
  for (const auto& row : rows) {
    CAPTURE(toUtf8(row.text));
    CHECK_EQ(isTypedNumber(row.text), row.isTaken);
  }
}

TEST_CASE("a chosen motor's cells offer its neighbours, whose current follows; a typed current stays") {
  const std::string chosen = R"j({"edit": "settings.1.0", "row": "Type", "to": "Induction"},
      {"edit": "settings.1.0", "row": "Units", "to": "HP"},
      {"edit": "settings.1.0", "row": "Voltage (V)", "to": "460"},
      {"edit": "settings.1.0", "row": "Phase", "to": "3"},
      {"edit": "settings.1.0", "row": "Frequency (Hz)", "to": "60"},
      {"edit": "settings.1.0", "row": "Speed (RPM)", "to": "1800"},
      {"edit": "settings.1.0", "row": "Multiplier", "to": "1.25"},)j";
  const struct {
    const char* current;
    const char* followed;
  } rows[] = {{"14", "21"}, {"16", "16"}};
  for (const auto& row : rows) {
    CAPTURE(row.current);
    const ShownPage shown = runPage(
        chosen + R"j({"edit": "settings.1.0", "row": "Load", "to": "10"},
          {"edit": "settings.1.0", "row": "Full-load current (A)", "to": ")j" +
            row.current + R"j("},
          {"edit": "settings.1.0", "row": "Load", "to": "15"}, {"wait": 300})j",
        MccMode::motor);
    CHECK(shown.data.find("Full-load current (A)=" + std::string(row.followed)) != std::string::npos);
    CHECK_EQ(circuitData().fla, std::stod(row.followed));
  }
}

TEST_CASE("timers wait for the end of a burst, and for all that a current depends on") {
  std::vector<std::string> calls;
  runPage(
      R"j({"edit": "settings.1.0", "row": 8, "to": "10"},
          {"edit": "settings.1.0", "row": 9, "to": "1.25", "quick": true},
          {"edit": "settings.1.0", "row": 9, "to": "1.250"})j",
      MccMode::motor, {},
      [](MccPage& page, ZanSettingsWnd&) {
        CHECK(page.manager.OnCellChanged(1, 1, L"any")); // the wires are not watched
        CHECK(page.manager.OnCellChanged(0, 1, L"Induction"));
        CHECK(page.manager.OnCellChanged(0, 2, L"10"));
        CHECK(page.manager.OnCellChanged(0, 4, L"460"));
        CHECK(page.manager.OnCellChanged(0, 6, L"60"));
        CHECK(page.manager.OnCellChanged(0, 7, L"1800"));
        CHECK(page.manager.OnCellChanged(0, 5, L"3")); // only now all is known
      },
      &calls);
  // The second edit restarts the timer; the third one changes nothing.
  CHECK(
      calls ==
      std::vector<std::string>{"timer 104 254", "kill 104", "timer 105 254", "timer 105 254", "kill 105"});
  CHECK_EQ(circuitData().flaMultiplier, 1.25);

  CircuitContext none;
  CircuitInHand circuits(none);
  ZanWidgetManagerMcc detached(circuits, nullptr); // without a window nothing starts
  CHECK(detached.OnCellChanged(0, 8, L"20"));
  CHECK_FALSE(detached.OnCellChanged(0, 8, L"twenty"));
}

TEST_CASE("choices follow from the rows, sorted as numbers, and a cell asks the tables once") {
  const EngineeringTables tables;
  TextSession session;
  MccPage motor(session, MccMode::motor, tables.file());
  motor.initialise();
  motor.manager.Refresh();
  std::vector<std::wstring> list;
  const auto choices = [&](std::int32_t group, std::uint32_t row, const std::vector<ZanGroupRow>& rows) {
    REQUIRE(motor.manager.GetChoices(group, row, rows, list));
    return joined(list);
  };
  const auto changed = [&] { REQUIRE(motor.manager.OnCellChanged(0, 9, L"1.25")); };

  CHECK_EQ(choices(0, 1, valueRows({L"", L"", L""})), "Induction Synchronous");
  CHECK_EQ(
      choices(0, 2, valueRows({L"Induction", L"", L"HP", L"115", L"1"})).substr(0, 21),
      "0.167 0.25 0.333 0.5 ");
  // Painted again it is the same as before, whatever the rows contain, until a cell changes.
  CHECK_EQ(choices(0, 2, {}).substr(0, 6), "0.167 ");
  changed();
  CHECK_EQ(choices(0, 4, valueRows({L"", L"", L"", L"", L"1"})), "115 200 208 230");
  // The current narrows too; the multiplier, which no table has, does not.
  // Its own current would leave one of them.
  CHECK_EQ(
      choices(0, 2, valueRows({L"Induction", L"", L"", L"115", L"1", L"", L"", L"4.4", L"9"})).substr(0, 15),
      "0.167 0.25 0.33");
  CHECK_EQ(choices(0, 3, valueRows({L"In'duction"})), ""); // a quote fails the query
  CHECK_EQ(choices(-1, 1, {}).find("Induction"), std::string::npos);
  CHECK_EQ(choices(-1, 4, valueRows({L"Heater", L"0.5", L"", L"", L"", L"", L"4.17", L"1.25"})), "120");

  CHECK_FALSE(motor.manager.GetChoices(0, 0, {}, list));
  CHECK_FALSE(motor.manager.GetChoices(-1, 9, {}, list));
  CHECK_FALSE(motor.manager.GetChoices(1, 1, {}, list));
}

TEST_CASE("a database that cannot be opened is told once, and serves as soon as it can") {
  const EngineeringTables tables;
  const std::string late = tables.file() + ".late";
  TextSession session({press("ZanBrenvolt.DatabaseError", kvui::ok)});
  session.eval("(defun c:zan_bv_figure_mccdb_fnam () \"" + late + "\")");
  ZanConfigUnit unit(1);
  CircuitInHand circuits(circuitContext());
  ZanWidgetManagerMcc manager(circuits, nullptr);
  manager.Initialise(&unit, {});
  manager.Refresh();
  std::vector<std::wstring> list = {L"old"};
  CHECK(manager.GetChoices(0, 1, {}, list));
  CHECK(list.empty());
  manager.Recalculate();
  CHECK_EQ(session.lisp().windows().unusedSteps(), 0);

  std::filesystem::copy_file(tables.file(), late);
  manager.Refresh();
  CHECK(manager.OnCellChanged(0, 1, L""));
  CHECK(manager.GetChoices(0, 1, {}, list));
  CHECK_FALSE(list.empty());
  // Half of the tables are gone while the page is open.
  ZanOleDbConnection other;
  REQUIRE(openEngineeringDatabase(other, fromUtf8(late)));
  ZanOleDbCommand drop;
  drop.SetConnection(&other);
  drop.SetCommandText(L"DROP TABLE [MOTOR_NEC]");
  REQUIRE(drop.Execute() == dbStatus::success);
  CHECK(manager.GetChoices(0, 3, {}, list));
  CHECK(list.empty());
}

TEST_CASE("a lookup command may answer anything") {
  const struct {
    const char* body;
    const char* data;
  } rows[] = {
      {"nil", filledMotor},
      {"(error \"no\")", filledMotor},
      {"\"Squirrel\"",
       "Type=Squirrel | Load=5 | Units= | Voltage (V)= | Phase= | Frequency (Hz)= | Speed (RPM)= | "
       "Full-load current (A)= | Multiplier="},
      {"(list \"Induction\" 10 '(1 2) T nil \"60\" \"1800\" 14.50 1.25 \"beyond\" 99.0)",
       "Type=Induction | Load= | Units= | Voltage (V)= | Phase= | Frequency (Hz)=60 | Speed (RPM)=1800 | "
       "Full-load current (A)=14.5 | Multiplier=1.25"},
      {"(list type fla 3.0 \"d\")",
       "Type=Wound rotor | Load=0 | Units=3 | Voltage (V)=d | Phase= | Frequency (Hz)= | Speed (RPM)= | "
       "Full-load current (A)= | Multiplier="},
  };
  for (const auto& row : rows) {
    CAPTURE(row.body);
    CHECK_EQ(lookedUp(row.body), row.data);
  }
}

TEST_CASE("the wire lookup has the current that a lookup brought, and the data of the circuit is fixed") {
  const ShownPage shown = runPage(
      R"j({"press": "settings.1.0.button.0"}, {"press": "settings.1.1.button.0", "quick": true})j",
      MccMode::motor, [](PageSession& session, PageDialog&) {
        session.eval("(defun find_data (type fla) (list \"A\" \"\" \"\" \"\" \"\" \"\" \"\" 14.5 2.0))"
                     "(defun find_wire (fla) (list (if (= fla 14.5) \"8\" \"?\") \"AWG\" 7))"
                     "(mapc (lambda (name) (vz-korvo-defun name)) '(find_data find_wire))");
      });
  CHECK(shown.wires.starts_with("W1 - Size=8AWG | W1 - Layer=BLK_8AWG"));
  CHECK_EQ(circuitData().type, L"A");
  CHECK_FALSE(circuitData().isOpen(OpenField::type));
  CHECK(circuitData().isOpen(OpenField::load)); // empty, so still the user's
  CHECK_FALSE(circuitData().isOpen(OpenField::flaMultiplier));
}

TEST_CASE("a load is looked up by its own rows, and the command finds the circuit in hand up to date") {
  const ShownPage shown = runPage(
      R"j({"press": "settings.1.0.button.0"})j", MccMode::load,
      [](PageSession& session, PageDialog&) {
        session.eval("(defun find_data (type fla)"
                     " (list (string-append type \"+\") \"2\" \"kW\" \"120\" \"1\" \"60\" (* 2 fla) 1.25))"
                     "(vz-korvo-defun 'find_data)");
      },
      [](MccPage& page, ZanSettingsWnd& window) {
        window.GroupAt(page.manager.GetPage(), mccplace::data)
            ->WriteValues({L"Heater", L"1", L"kW", L"120", L"1", L"60", L"8", L"1.5"});
      });
  CHECK_EQ(
      shown.data, "Type=Heater+ | Load=2 | Units=kW | Voltage (V)=120 | Phase=1 | Frequency (Hz)=60 | "
                  "Full-load current (A)=16 | Multiplier=1.25");
  CHECK_EQ(circuitData().type, L"Heater");
  CHECK_EQ(loadFactors().flaMultiplier, 1.5);
  // The command itself wrote nothing: the wires are sized for the current that it returned.
  CHECK_EQ(circuitData().fla, 16.0);
  CHECK(shown.wires.starts_with("W1 - Size=12AWG"));
}

TEST_CASE("wire choices that came with a unit go out again as long as none is made") {
  struct Row {
    const char* promise;
    const wchar_t* stored;    ///< grounding size among the motor's fields
    const wchar_t* grounding; ///< size of the stored grounding wire
    bool choosesWire;
    const char* exported; ///< insulation and grounding size
    const char* layer;
  };
  const Row rows[] = {
      {"untouched", L"10AWG", L"8AWG", false, "THHN 10AWG", "GRN_10AWG"},
      {"without a grounding size the stored wire has it", L"", L"10AWG", false, "THHN ", "GRN_10AWG"},
      {"a wire chosen in the dialog replaces all", L"10AWG", L"10AWG", true, "XHHW 6AWG", "GRN_10AWG"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    std::string exported;
    const ShownPage shown = runPage("", MccMode::motor, {}, [&](MccPage& page, ZanSettingsWnd&) {
      ZanAnnotationDataList start = page.manager.ExportRows().value();
      start.items()[0].row->fields[12].value = L"THHN";
      start.items()[0].row->fields[28].value = row.stored;
      start.items()[1].list->items()[2].row->fields[0].value = row.grounding;
      page.manager.ImportRows(start);
      if (row.choosesWire) {
        circuitData().wireChosen = true;
        circuitData().insulation = L"XHHW";
        circuitData().groundSize = L"6AWG";
      }
      const ZanAnnotationDataList again = page.manager.ExportRows().value();
      exported =
          toUtf8(again.items()[0].row->fields[12].value + L" " + again.items()[0].row->fields[28].value);
    });
    CHECK_EQ(exported, row.exported);
    CHECK(shown.wires.ends_with(row.layer));
  }
}

TEST_CASE("parts are kept under the motor last exported, up to the first group that is cut short") {
  const std::vector<std::wstring> tables = {L"CB", L"FU", L"DS"};
  ManagerResults loaded;
  ManagerResults withoutMotor;
  runPage("", MccMode::load, {}, [&](MccPage& page, ZanSettingsWnd&) {
    ZanWidgetManagerMcc& manager = page.manager;
    manager.SaveCatalog(L"CB01", 7, {{L"CB", {L"ACME", L"CB-0"}}});
    manager.LoadCatalog(L"CB01", 7, tables, withoutMotor);
    ZanAnnotationData data(rowname::loadSetup);
    for (const wchar_t* value : {L"Heater", L"2", L"kW", L"120", L"1", L"60"})
      data.AddText(value, L"");
    ZanAnnotationDataList rows;
    rows.AddRow(data);
    manager.ImportRows(rows);
    manager.SaveCatalog(
        L"CB01", 7, {{L"CB", {L"ACME", L"CB-30", L"", L"2"}}, {L"FU", {L"short"}}, {L"DS", {L"ACME", L"D"}}});
    manager.LoadCatalog(L"CB01", 7, tables, loaded);
  });
  CHECK(withoutMotor.empty());
  REQUIRE_EQ(loaded.size(), 1);
  CHECK_EQ(loaded[0].first, L"CB");
  CHECK_EQ(joined(loaded[0].second).substr(0, 13), "ACME CB-30  2");
}

TEST_CASE("parts that cannot be stored are told, and what stands behind them is not stored") {
  const EngineeringTables tables;
  TextSession session;
  MccPage page(session, MccMode::load, tables.file());
  page.initialise();
  const wchar_t* const values[] = {L"Heater", L"2", L"kW", L"120", L"1", L"60"};
  for (std::uint32_t row = 0; row < 6; ++row)
    REQUIRE(page.manager.OnCellChanged(-1, row + 1, values[row]));
  page.manager.SaveCatalog(L"CB01", 7, {{L"CB", {L"O'Neill", L"CB-30"}}, {L"DS", {L"ACME", L"D"}}});
  CHECK(session.lisp().windows().recording().find("\"message\"") != std::string::npos);
  ManagerResults loaded;
  page.manager.LoadCatalog(L"CB01", 7, {L"CB", L"DS"}, loaded);
  CHECK(loaded.empty());
}
