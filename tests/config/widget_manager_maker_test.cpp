// Which managers a unit gets, which head they belong to, and whose values count for the circuit.
#include "config/config_units.h"
#include "config/widget_manager_maker.h"
#include "tests/config/page_dialog.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

namespace brenvolt::test {

namespace {

using Params = std::vector<std::pair<std::wstring, std::wstring>>;

struct MakerScope {
  MakerScope() { REQUIRE(ZanWidgetManagerMaker::Create()); }
  ~MakerScope() { ZanWidgetManagerMaker::Destroy(); }
  ZanWidgetManagerMaker* operator->() const { return widgetManagerMaker(); }
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

/// A head whose export is one row that holds its name.
class NamedHead final : public ZanWidgetManager {
public:
  NamedHead(std::wstring name, ZanConfigUnit& unit) : name_(std::move(name)) {
    unit.BindManager(controlOptionCode, this);
    SetUnit(&unit);
  }
  [[nodiscard]] bool HasWindow() const override { return hasPage; }
  void ExportRows(ZanAnnotationDataList& rows) override {
    rows.Clear();
    if (hasPage) rows.AddRow(ZanAnnotationData(name_));
  }
  bool hasPage = true;

private:
  std::wstring name_;
};

std::string names(const ZanAnnotationDataList& rows) {
  std::string text;
  for (const auto& item : rows.items())
    text += (text.empty() ? "" : " ") + toUtf8(item.row->name);
  return text;
}

NamedHead& addHead(const MakerScope& maker, const wchar_t* name, ZanConfigUnit& unit) {
  auto head = std::make_unique<NamedHead>(name, unit);
  NamedHead& added = *head;
  maker->AddHead(std::move(head));
  return added;
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
    const MakerScope maker;
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
    const MakerScope maker;
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
  const MakerScope maker;
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

TEST_CASE("a motor that was undone takes no parts over and makes room for the next one") {
  LispSession session;
  const MakerScope maker;
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

TEST_CASE("the motor made or used last speaks for the circuit, unless it has no page or lost its unit") {
  const MakerScope maker;
  ZanConfigUnit one(1);
  auto two = std::make_unique<ZanConfigUnit>(2);
  const auto speaker = [&maker] {
    maker->RefreshSettings();
    return names(maker->GetSettings());
  };
  CHECK_EQ(speaker(), "");
  NamedHead& first = addHead(maker, L"first", one);
  NamedHead& second = addHead(maker, L"second", *two);
  CHECK_EQ(speaker(), "second");
  maker->SetCurrent(first);
  CHECK_EQ(speaker(), "first");
  first.hasPage = false;
  CHECK_EQ(speaker(), "second");
  second.hasPage = false;
  CHECK_EQ(speaker(), "");
  first.hasPage = second.hasPage = true;
  two.reset();
  CHECK_EQ(speaker(), "first");
}

TEST_CASE("all heads give their rows in order, and those of one code that follow each other one order text") {
  const MakerScope maker;
  struct Head {
    const wchar_t* code;
    const wchar_t* order;
    const wchar_t* name;
  };
  const Head heads[] = {{L"M", L"1", L"a"}, {L"m", L"2", L"b"}, {L"N", L"3", L"c"}, {L"M", L"4", L"d"}};
  std::vector<std::unique_ptr<ZanConfigUnit>> units;
  for (const Head& head : heads) {
    units.push_back(std::make_unique<ZanConfigUnit>(1));
    units.back()->code = head.code;
    units.back()->order = head.order;
    addHead(maker, head.name, *units.back());
  }
  ZanAnnotationDataList rows;
  std::vector<std::wstring> orders;
  CHECK(maker->CollectSettings(rows, orders));
  CHECK_EQ(names(rows), "a b c d");
  CHECK_EQ(orders, std::vector<std::wstring>{L"1", L"3", L"4"});

  // A run that brought a motor is undone.
  units[2].reset();
  orders.clear();
  CHECK(maker->CollectSettings(rows, orders));
  CHECK_EQ(names(rows), "a b d");
  CHECK_EQ(orders, std::vector<std::wstring>{L"1"});
  units.clear();
  CHECK_FALSE(maker->CollectSettings(rows, orders));
}

TEST_CASE("a motor gets the wires of the scan before it, and what later scans find of its own suffix") {
  PageSession session;
  const MakerScope maker;
  ZanConfigUnit unit(1);
  unit.code = L"MTR-A";
  unit.options = controlRecord(L"!MCC_CTRL");
  const auto scan = [&maker](std::initializer_list<const wchar_t*> codes) {
    ZanWireFormatter formatter;
    for (const wchar_t* code : codes)
      formatter.AddWireType(L"BLK_%s", code);
    maker->SetWireFormatter(formatter);
  };
  scan({L"WT01-A", L"WT01-B", L"WT02-A"});
  REQUIRE(maker->MakeManagers(unit));
  scan({L"WT03-A", L"WT04"});
  scan({});
  CHECK(maker->wireFormatter().types().empty());

  PageDialog dialog;
  dialog.onOpen = [&](ZanSettingsWnd& window) {
    unit.AddManagersToWindow(&window);
    const ZanGroupCtrl* wires = window.GroupAt(unit.managers().front().manager->GetPage(), 1);
    REQUIRE(wires != nullptr);
    CHECK_EQ(wires->ReadRows().size(), 2 * 3);
  };
  session.run(dialog);
}

} // namespace brenvolt::test
