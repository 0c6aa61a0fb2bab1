// Which managers a unit gets, which head they belong to, and whose circuit and wires they work on.
#include "config/config_units.h"
#include "config/widget_manager_maker.h"
#include "config/widget_manager_mcc.h"
#include "tests/config/page_dialog.h"
#include "tests/data/table_fixture.h"

#include <doctest/doctest.h>

namespace brenvolt::test {

namespace {

using Params = std::vector<std::pair<std::wstring, std::wstring>>;

struct MakerScope {
  CircuitContext circuit;
  AcceptedTables acceptedTables;
  ZanWidgetManagerMaker maker{circuit, {acceptedTables, nullptr}};
  ZanWidgetManagerMaker* operator->() { return &maker; }
};

/// "7,8" for each manager of the unit in the order of their binding.
std::string describeBindings(const ZanConfigUnit& unit) {
  std::string text;
  for (const ZanManagerBinding& binding : unit.managers()) {
    if (!text.empty()) text += " ";
    for (std::size_t place = 0; place < binding.codes.size(); ++place)
      text += (place == 0 ? "" : ",") + std::to_string(binding.codes[place]);
  }
  return text;
}

ZanCodeRecord controlRecord(const wchar_t* title) {
  ZanCodeRecord record;
  record.groups = {{L"Overload", {}}, {title, {}}};
  record.controlRules = {{L"(motor)", -1, {}}};
  return record;
}

ZanCodeRecord partRecord() {
  ZanCodeRecord record;
  record.controlRules = {{L"(find)", 1, {{L"FU", L"Fuse"}}}};
  return record;
}

} // namespace

TEST_CASE("rules with the same text and tables share a manager; rules without tables have none") {
  const Params fuse = {{L"FU", L"Fuse"}};
  const Params breaker = {{L"CB", L"Breaker"}};
  struct Case {
    const char* name = nullptr;
    ZanScriptRules rules;
    const char* bindings = nullptr;
  };
  const Case cases[] = {
      {"none", {}, ""},
      {"no tables", {{L"(find)", 7, {}}}, ""},
      {"one for two codes", {{L"(find)", 7, fuse}, {L"(FIND)", 8, fuse}}, "7,8"},
      {"other tables", {{L"(find)", 7, fuse}, {L"(find)", 7, breaker}}, "7 7"},
      {"other command", {{L"(find)", 7, fuse}, {L"(seek)", 8, fuse}, {L"(find)", 9, fuse}}, "7,9 8"},
      {"no command", {{L"", -1, fuse}, {L"(x)", 3, {}}}, "-1"},
  };
  for (const Case& each : cases) {
    CAPTURE(each.name);
    MakerScope maker;
    ZanConfigUnit unit(1);
    unit.options.controlRules = each.rules;
    CHECK_EQ(maker->MakeManagers(unit), each.bindings[0] != '\0');
    CHECK_EQ(describeBindings(unit), each.bindings);
    CHECK_FALSE(unit.control);
  }
}

TEST_CASE("a motor or load group among the options makes a control unit, but not without control rules") {
  LispSession session;
  for (const wchar_t* title : {L"!MCC_CTRL", L"!pf_ctrl"}) {
    MakerScope maker;
    ZanConfigUnit unit(1);
    unit.options = controlRecord(title);
    unit.options.controlRules.push_back({L"(find)", 4, {{L"FU", L"Fuse"}}});
    CHECK(maker->MakeManagers(unit));
    CHECK(unit.control);
    CHECK_EQ(describeBindings(unit), "-100");

    ZanConfigUnit silent(2);
    silent.options = controlRecord(title);
    silent.options.controlRules = {};
    CHECK_FALSE(maker->MakeManagers(silent));
    CHECK_FALSE(silent.control);
  }
}

TEST_CASE("catalogue managers belong to the head made before them, the first ones to the first head") {
  LispSession session;
  MakerScope maker;
  std::vector<std::unique_ptr<ZanConfigUnit>> units;
  for (const char kind : std::string("ppMpMp")) {
    units.push_back(std::make_unique<ZanConfigUnit>(static_cast<std::int32_t>(units.size())));
    units.back()->options = kind == 'M' ? controlRecord(L"!MCC_CTRL") : partRecord();
    if (kind == 'M') CHECK_EQ(maker->FindHead(units[0]->FindManager(1)) == nullptr, units.size() == 3);
    REQUIRE(maker->MakeManagers(*units.back()));
  }
  const auto headOf = [&](std::size_t unit) { return maker->FindHead(units[unit]->FindManager(1)); };
  const ZanWidgetManager* first = units[2]->FindManager(controlOptionCode);
  const ZanWidgetManager* second = units[4]->FindManager(controlOptionCode);
  CHECK_EQ(headOf(0), first);
  CHECK_EQ(headOf(1), first);
  CHECK_EQ(headOf(3), first);
  CHECK_EQ(headOf(5), second);
  CHECK_EQ(maker->FindHead(first), nullptr);
}

TEST_CASE("each motor keeps its own circuit, and the one at work has it in hand") {
  LispSession session;
  MakerScope maker;
  const auto makeMotor = [&maker](std::int32_t id) {
    auto unit = std::make_unique<ZanConfigUnit>(id);
    unit->options = controlRecord(L"!MCC_CTRL");
    REQUIRE(maker->MakeManagers(*unit));
    return unit;
  };
  const auto motorOf = [](const ZanConfigUnit& unit) {
    return dynamic_cast<ZanWidgetManagerMcc*>(unit.FindManager(controlOptionCode));
  };
  auto first = makeMotor(1);
  maker.circuit.circuit.fla = 1.0;
  maker.circuit.circuit.groundSize = L"10AWG"; // as a wire lookup of the first page leaves it
  maker.circuit.circuit.wireChosen = true;
  maker.acceptedTables[L"MOTOR_I_MAP"] = 1;
  auto second = makeMotor(2);
  CHECK(maker.acceptedTables.empty());           // a new circuit asks again
  CHECK_FALSE(maker.circuit.circuit.wireChosen); // nothing of the first one's wires
  CHECK(maker.circuit.circuit.groundSize.empty());
  REQUIRE(motorOf(*second)->OnCellChanged(0, 8, L"28"));
  CHECK_EQ(maker.circuit.circuit.fla, 28.0);
  REQUIRE(motorOf(*first)->OnCellChanged(0, 9, L"1.25"));
  CHECK_EQ(maker.circuit.circuit.fla, 1.0);
  CHECK_EQ(maker.circuit.circuit.groundSize, L"10AWG");
  CHECK_EQ(motorOf(*second)->circuit().circuit.fla, 28.0);
  // The run of the active one is undone: the other one is the circuit.
  first.reset();
  maker->TakeBackRun(1);
  CHECK_EQ(maker.circuit.circuit.fla, 28.0);
}

TEST_CASE("a motor that was undone takes no parts over and makes room for the next one") {
  LispSession session;
  MakerScope maker;
  ZanConfigUnit first(1);
  auto undone = std::make_unique<ZanConfigUnit>(2);
  ZanConfigUnit part(3);
  ZanConfigUnit again(4);
  for (ZanConfigUnit* motor : {&first, undone.get()}) {
    motor->options = controlRecord(L"!MCC_CTRL");
    REQUIRE(maker->MakeManagers(*motor));
  }
  undone.reset();
  part.options = partRecord();
  REQUIRE(maker->MakeManagers(part));
  CHECK_EQ(maker->FindHead(part.FindManager(1)), first.FindManager(controlOptionCode));
  again.options = controlRecord(L"!MCC_CTRL");
  ZanConfigUnit partOfAgain(5);
  partOfAgain.options = partRecord();
  REQUIRE(maker->MakeManagers(again));
  REQUIRE(maker->MakeManagers(partOfAgain));
  CHECK_EQ(maker->FindHead(partOfAgain.FindManager(1)), again.FindManager(controlOptionCode));
}

TEST_CASE("unit and manager forget each other, whichever dies first") {
  struct Manager final : ZanWidgetManager {
    using ZanWidgetManager::unit;
  };
  Manager outlives;
  {
    ZanConfigUnit unit(1);
    outlives.SetUnit(&unit);
    unit.BindManager(controlOptionCode, &outlives);
    {
      Manager dies;
      unit.BindManager(1, &dies);
    }
    CHECK_EQ(unit.FindManager(1), nullptr);
    CHECK_EQ(unit.managers().size(), 1);
  }
  CHECK_EQ(outlives.unit(), nullptr);
  CHECK(outlives.GetUnitCode().empty());
}

TEST_CASE("a motor has the wires of the templates before it; later ones go with their run") {
  PageSession session;
  MakerScope maker;
  ZanConfigUnit unit(1);
  unit.code = L"MTR-A";
  unit.options = controlRecord(L"!MCC_CTRL");
  const auto scan =
      [&maker](std::int32_t run, const wchar_t* format, std::initializer_list<const wchar_t*> codes) {
        ZanWireFormatter formatter;
        for (const wchar_t* code : codes)
          formatter.AddWireType(format, code);
        maker->SetWireFormatter(formatter, run);
      };
  scan(0, L"OLD_%s", {L"WT01-A", L"WT01-B", L"WT02-A", L"WT01E-A"});
  scan(1, L"BLK_%s", {L"WT02-A"});
  scan(1, L"", {}); // a nested template without wires
  REQUIRE(maker->MakeManagers(unit));
  CHECK_EQ(maker->wires().formats(SamePosition::eachCounts).types().size(), 5);
  CHECK_EQ(maker->wires().formats(SamePosition::latestCounts).GetWireFormat(L"WT02-A").pattern, L"BLK_*");

  PageDialog dialog;
  dialog.onOpen = [&](ZanSettingsWnd& window) {
    unit.AddManagersToWindow(&window);
    auto& motor = *dynamic_cast<ZanWidgetManagerMcc*>(unit.managers().front().manager);
    const ZanGroupCtrl* wires = window.GroupAt(motor.GetPage(), 1);
    REQUIRE(wires != nullptr);
    // Positions that the page has, and further grounding ones, must not take rows from its conductors.
    scan(2, L"NEW_%s", {L"WT01-A", L"WT01E-A", L"WT02E-A", L"WT03-A", L"WT04"});
    motor.fillWireRows(L"8AWG");
    const char* rows = "W1 - Size=8AWG | W1 - Layer=OLD_8AWG | W2 - Size=8AWG | W2 - Layer=BLK_8AWG | "
                       "W01E - Size= | W01E - Layer=OLD_";
    CHECK_EQ(describeGroup(wires), rows);
    maker->TakeBackRun(2);
    motor.fillWireRows(L"8AWG");
    CHECK_EQ(describeGroup(wires), rows);
    CHECK_EQ(maker->wires().formats(SamePosition::eachCounts).types().size(), 5);
  };
  session.run(dialog);
}

TEST_CASE("components of a motor without formulas for its type are reported; a load needs none") {
  const TableFixture tables(TableTexts{
      {"MOTOR_I_DESC_NEC", "CODE,Description\nCB,Breaker\n"},
      {"MOTOR_I_CALC_NEC", "Type,CB\nInduction,i*2.5\n"},
      {"MOTOR_I_MAP_NEC", "CODE,MAX,RATING,DEFAULT\nCB,15,15A,P15\n"}});
  AcceptedTables accepted;
  TableWatch watch;
  for (const TypeFormulas formulas : {TypeFormulas::optional, TypeFormulas::required}) {
    const auto rows = sizeComponents(L"Wound rotor", 5, formulas, {accepted, &watch});
    REQUIRE_EQ(rows.size(), 1);
    CHECK(rows[0].rating.empty());
    CHECK_EQ(watch.failures().size(), formulas == TypeFormulas::required ? 1 : 0);
  }
  CHECK_EQ(sizeComponents(L"Induction", 5, TypeFormulas::required, {accepted, &watch})[0].rating, L"15A");
}

} // namespace brenvolt::test
