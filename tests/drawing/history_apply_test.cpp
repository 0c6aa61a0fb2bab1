#include "drawing/history_apply.h"

#include "drawing_support.h"
#include "tests/support/golden.h"
#include "tests/support/temporary_folder.h"
#include "text/encoding.h"

using namespace brenvolt;
using namespace brenvolt::test;

namespace {

/// An opened history whose one marker entry has this content.
struct OpenedHistory {
  TemporaryFolder folder;
  ZanXmlHistory history;
  int wireTypeQuestions = 0;
  WireTypeSource wireTypes = [this] {
    ++wireTypeQuestions;
    return std::vector<std::wstring>{L"RED_12AWG"};
  };

  explicit OpenedHistory(const std::wstring& markerContent, const wchar_t* tag = L"motor.1.1") {
    writeBytes(
        folder / "zan_brenvolt.xml", toUtf8(
                                         L"<BrenvoltHistory Version=\"1.0\"><Circuit Name=\"C\"><CircuitType "
                                         L"Name=\"T\"><History Name=\"H\">"
                                         L"<Marker Tag=\"" +
                                         std::wstring(tag) + L"\">" + markerContent +
                                         L"</Marker></History></CircuitType></Circuit></BrenvoltHistory>"));
    history.context = fromUtf8((folder / "site.xls").string());
    REQUIRE(history.OpenHistory({L"C", L"T", L"H"}));
  }
};

std::wstring property(const wchar_t* name, const wchar_t* value) {
  return std::wstring(L"<Property Name=\"") + name + L"\" Value=\"" + value + L"\"/>";
}

/// A marker in a list, with its own choices and rows.
struct Marked {
  ZanDwgMarkerList list;
  ZanDwgMarker& marker;
  Marked() : marker(make(list)) {}

private:
  static ZanDwgMarker& make(ZanDwgMarkerList& list) {
    ZanDwgMarker made = makeMarker(L"MOTOR");
    made.record.groups = {
        makeGroup(L"Disconnect", {{L"Fuses", 1, true}, {L"Breaker", 2, false}}),
        makeGroup(L"Lamp", {{L"Red", 10, false}, {L"Green", 20, false}})};
    made.catalog.AddRow(makeRow(L"Catalog", {{L"MFG", L"own"}}));
    made.controls.AddRow(makeRow(L"MotorSetup", {{L"Type", L"own"}}));
    list.Insert(std::move(made));
    list.Finish();
    return list.markers()[0];
  }
};

const std::wstring ownCatalog = L"(Catalog[MFG=own])";
const std::wstring ownControls = L"(MotorSetup[Type=own])";

} // namespace

TEST_CASE("saved choices are taken where the worksheet still offers them") {
  const struct {
    const wchar_t* title;
    const wchar_t* value;
    std::int32_t disconnect;
    std::int32_t lamp; ///< 0: none
  } rows[] = {
      {L"Disconnect", L"2", 2, 0}, {L"DISCONNECT", L"2", 2, 0}, {L"Disconnect", L"7", 1, 0},
      {L"Lamp", L"20", 1, 20},     {L"Lamp", L"30", 1, 0},      {L"Gone", L"2", 1, 0},
      {L"Disconnect", L"x", 1, 0},
  };
  for (const auto& row : rows) {
    CAPTURE(std::wstring(row.title) + L"=" + row.value);
    OpenedHistory opened(
        std::wstring(L"<SelectOption UI_TITLE=\"") + row.title + L"\" UI_PROMPT=\"p\" UI_VAL=\"" + row.value +
        L"\"/>");
    Marked marked;
    CHECK(applyHistoryToMarker(opened.history, marked.marker, opened.wireTypes, nullptr));
    const auto& groups = marked.marker.record.groups;
    CHECK(groups[0].selected()->value == row.disconnect);
    CHECK((groups[1].selected() == nullptr ? 0 : groups[1].selected()->value) == row.lamp);
    CHECK(describe(marked.marker.catalog) == ownCatalog);
    CHECK(describe(marked.marker.controls) == ownControls);
  }
}

TEST_CASE("catalog rows come back with their title hidden; sets without properties count as none") {
  OpenedHistory opened(
      L"<Catalog>" + property(L"Title", L"Breaker") + property(L"MFG", L"saved") +
      L"</Catalog><Catalog/><Catalog>" + property(L"CAT", L"2") + L"</Catalog>");
  Marked marked;
  applyHistoryToMarker(opened.history, marked.marker, opened.wireTypes, nullptr);
  CHECK(describe(marked.marker.catalog) == L"(Catalog[!Title=Breaker;MFG=saved] Catalog[CAT=2])");

  OpenedHistory empty(L"<Catalog/>");
  Marked other;
  applyHistoryToMarker(empty.history, other.marker, empty.wireTypes, nullptr);
  CHECK(describe(other.marker.catalog) == ownCatalog);
}

TEST_CASE("control rows come back with wires, marks for layers to be made, and one grounding row") {
  OpenedHistory opened(
      L"<ControlGroup><MotorSetup>" + property(L"Type", L"A") + L"</MotorSetup><WireSetup>" +
      property(L"Size", L"12AWG") + property(L"Layer", L"red_12awg") + L"</WireSetup><WireSetup>" +
      property(L"Size", L"12AWG") + property(L"Layer", L"BLUE") + L"</WireSetup><GroundingWireSetup>" +
      property(L"Size", L"14AWG") + L"</GroundingWireSetup><GroundingWireSetup>" +
      property(L"Layer", L"GREEN") + L"</GroundingWireSetup></ControlGroup><ControlGroup><MotorSetup>" +
      property(L"Type", L"second group") + L"</MotorSetup></ControlGroup>");
  Marked marked;
  ZanAnnotationDataList circuit;
  circuit.AddRow(makeRow(L"MotorSetup", {{L"Type", L"of another marker"}}));
  applyHistoryToMarker(opened.history, marked.marker, opened.wireTypes, &circuit);
  CHECK(
      describe(marked.marker.controls) ==
      L"(MotorSetup[Type=A] (WireSetup[Size=12AWG;Layer=red_12awg;=#5019] "
      L"WireSetup[Size=12AWG;Layer=BLUE;=1#5003] GroundingWireSetup[Size=14AWG;Layer=GREEN;=3#5003]))");
  CHECK(circuit == marked.marker.controls);
  CHECK(opened.wireTypeQuestions == 1);
}

TEST_CASE("setups pile up in one working row, and the 29th property of a set is the grounding size") {
  std::wstring motor;
  for (int number = 1; number <= 29; ++number)
    motor += property(L"P", number == 29 ? L"8AWG" : L"x");
  OpenedHistory opened(
      L"<ControlGroup><MotorSetup>" + motor + L"</MotorSetup><MotorSetup>" + property(L"Q", L"short") +
      L"</MotorSetup><LOADSetup>" + property(L"L", L"load") + L"</LOADSetup></ControlGroup>");
  Marked marked;
  applyHistoryToMarker(opened.history, marked.marker, opened.wireTypes, nullptr);
  const auto& items = marked.marker.controls.items();
  REQUIRE(items.size() == 4);
  CHECK(items[0].row->Count() == 29);
  CHECK(items[1].row->name == rowname::motorSetup);
  CHECK(items[1].row->Count() == 30);
  CHECK(items[2].row->name == rowname::loadSetup);
  CHECK(items[2].row->fields.back().value == L"load");
  CHECK(items[2].row->Count() == 31);
  CHECK(describe(*items[3].list) == L"(GroundingWireSetup[=8AWG;=;=3#5003])");
  CHECK(opened.wireTypeQuestions == 0);
}
