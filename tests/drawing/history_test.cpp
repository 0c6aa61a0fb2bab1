// Histories are compared as whole texts: what a save writes is what every later version has to read.
#include "drawing/history.h"

#include "drawing_support.h"
#include "tests/simhost/host_fixture.h"
#include "tests/support/golden.h"
#include "tests/support/temporary_folder.h"
#include "text/encoding.h"

using namespace brenvolt;
using namespace brenvolt::test;
namespace fs = std::filesystem;

namespace {

/// A motor with a chosen breaker and wires, a marker with nothing chosen, one without choices, and a nested one.
void fillMarkers(ZanDwgMarkerList& list) {
  ZanDwgMarker motor = makeMarker(L"MOTOR", L"1");
  motor.record.groups = {
      makeGroup(L"!MCC_CTRL", {{L"1", 0, true}}),
      makeGroup(L"Disconnect <\"&\">", {{L"Fuses", 1, false}, {L"Breaker", -2, true}})};
  ZanAnnotationData part(rowname::catalog);
  part.Add(L"Breaker", kvtype::string, L"TITLE", true);
  part.AddText(L"Zaß 3 Ω", L"MFG");
  part.AddText(L"unnamed", L"");
  motor.catalog.AddRow(part);
  motor.catalog.AddRow(makeRow(L"", {{L"lost", L"with its row"}}));
  motor.controls.AddRow(makeRow(rowname::motorSetup, {{L"Type", L"A\nB"}, {L"Load", L""}}));
  ZanAnnotationDataList wires;
  ZanAnnotationData wire = makeRow(rowname::wireSetup, {{L"W1 - Size", L"12AWG"}});
  wire.Add(L"1", kvtype::shortInteger, L"", false);
  wires.AddRow(wire);
  wires.AddRow(makeRow(rowname::groundingWireSetup, {{L"W01E - Size", L"14AWG"}}));
  motor.controls.AddList(wires);

  ZanDwgMarker open = makeMarker(L"LAMP", L"2");
  open.record.groups = {makeGroup(L"Colour", {{L"Red", 1, false}})};
  list.Insert(std::move(motor));
  list.Insert(std::move(open));
  list.Insert(makeMarker(L"TITLE", L"3"));
  list.Finish();

  ZanDwgMarkerList& below = list.markers()[2].EnsureChildren();
  ZanDwgMarker nested = makeMarker(L"LAMP", L"1", 2);
  nested.record.groups = {makeGroup(L"Colour", {{L"Red", 1, true}})};
  below.Insert(std::move(nested));
  below.Finish();
}

/// A history object as a build fills it, over a folder of its own.
struct Fixture {
  simhost::HostFixture host;
  TemporaryFolder folder;
  ZanDwgMarkerList markers;
  ZanXmlHistory history;
  HistoryEntry entry{{L"Motor", L"Direct on line", L"Pump 1"}, L"MOTOR_SHEET", L"1.000000", L"2.500000"};

  Fixture() {
    fillMarkers(markers);
    history.context = fromUtf8((folder / "site.xls").string());
  }

  [[nodiscard]] fs::path file() const { return folder / "zan_brenvolt.xml"; }
  [[nodiscard]] std::wstring text() const {
    const std::string bytes = bytesOf(file());
    CHECK(bytes.starts_with("\xFF\xFE"));
    return fromUtf16Le(std::string_view(bytes).substr(2));
  }
  [[nodiscard]] std::vector<std::wstring> names() {
    std::vector<std::wstring> found;
    ZanXmlHistory reader;
    reader.context = history.context;
    if (reader.Reload()) reader.GetHistoryNames(L"MOTOR", L"direct on LINE", found);
    return found;
  }
  bool save(const wchar_t* name) {
    entry.key.name = name;
    return history.SaveHistory(entry, markers);
  }
};

using Names = std::vector<std::wstring>;

} // namespace

TEST_CASE_FIXTURE(Fixture, "a first save writes exactly the bytes of the format") {
  history.context = L"/site/zan_brenvolt.xls";
  std::string xml;
  REQUIRE(history.BuildDocument(entry, markers, xml));
  CHECK_FALSE(history.hasDocument());
  REQUIRE(history.WriteDocument(fromUtf8(file().string()), xml));
  CHECK(matchesGolden("tests/drawing/golden/zan_brenvolt.xml", bytesOf(file())));
}

TEST_CASE_FIXTURE(Fixture, "a file that a person indented, or saved as UTF-8, is read and kept") {
  const std::wstring utf8File =
      L"<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n<BrenvoltHistory Context=\"x\" Version=\"2.0\">\n"
      L"  <Circuit Name=\"motor\"><CircuitType Name=\"DIRECT ON LINE\">\n    <History Name=\"Old\" "
      L"ComponentScale=\"\" CircuitScale=\"3\"/><!-- why --></CircuitType></Circuit></BrenvoltHistory>\n";
  for (const bool wide : {true, false}) {
    const std::wstring declared = wide ? utf8File : utf8File.substr(utf8File.find(L'\n'));
    writeBytes(file(), wide ? "\xFF\xFE" + toUtf16Le(declared) : toUtf8(declared));
    CHECK(save(L"New"));
    CHECK(names() == Names{L"Old", L"New"});
    CHECK(text().starts_with(
        L"<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n<BrenvoltHistory Context=\"x\" Version=\"2.0\">"
        L"<Circuit Name=\"motor\"><CircuitType Name=\"DIRECT ON LINE\"><History Name=\"Old\" "
        L"ComponentScale=\"\" CircuitScale=\"3\"/><!-- why --><History Name=\"New\""));
  }
  CHECK_FALSE(fs::exists(folder / "zan_brenvolt.damaged-1.xml"));
}

TEST_CASE_FIXTURE(Fixture, "a damaged file costs neither the parser's reason nor what was loaded before") {
  CHECK(save(L"Pump 1"));
  CHECK(history.Reload());
  writeBytes(file(), "<BrenvoltHistory");
  CHECK_FALSE(history.Reload());
  CHECK_FALSE(history.error.empty());
  Names found;
  CHECK(history.GetHistoryNames(entry.key.circuit, entry.key.type, found));
  CHECK_FALSE(history.SaveFile());
  CHECK_FALSE(history.AddHistory(entry, markers, fromUtf8(file().string())));
}

TEST_CASE_FIXTURE(Fixture, "names that are missing, or a workbook without a folder, save nothing") {
  CHECK(save(L"Pump 1"));
  const std::string before = bytesOf(file());
  for (std::wstring* name : {&entry.key.circuit, &entry.key.type, &entry.key.name}) {
    const std::wstring old = std::exchange(*name, L"");
    CHECK_FALSE(history.SaveHistory(entry, markers));
    CHECK_FALSE(history.OpenHistory(entry.key));
    *name = old;
  }
  history.context = L"zan_brenvolt.xls";
  CHECK_FALSE(history.SaveHistory(entry, markers));
  CHECK_FALSE(history.Reload());
  CHECK(bytesOf(file()) == before);
}

TEST_CASE_FIXTURE(Fixture, "a name with control characters is refused, and the file stays as it is") {
  CHECK(save(L"Pump 1"));
  const std::string before = bytesOf(file());
  for (const wchar_t* name : {L"a\nb", L"tab\t", L"\x01", L"\x9f"})
    CHECK_THROWS_AS(save(name), XmlError);
  entry.key.circuit = L"Bell\a";
  CHECK_THROWS_AS(save(L"Pump 2"), XmlError);
  CHECK(bytesOf(file()) == before);
}

TEST_CASE_FIXTURE(Fixture, "the summary shows setups and choices, the second setup's with its number") {
  ZanDwgMarker second = makeMarker(L"MOTOR", L"9");
  second.record.groups = {makeGroup(L"Disconnect", {{L"Breaker", 1, true}})};
  second.controls.AddRow(makeRow(rowname::loadSetup, {{L"Type", L"Heater"}}));
  markers.Insert(std::move(second));
  markers.Finish();
  CHECK(save(L"Pump 1"));
  CHECK(history.Reload());

  HistorySummary summary;
  CHECK(history.ReadHistory({L"Motor", L"Direct on line", L"PUMP 1"}, summary));
  CHECK(summary.componentScale == L"1.000000");
  CHECK(summary.circuitScale == L"2.500000");
  CHECK(
      summary.pairs == HistoryProperties{
                           {L"Type", L"A\nB"},
                           {L"Load", L""},
                           {L"!MCC_CTRL", L"1"},
                           {L"Disconnect <\"&\">", L"Breaker"},
                           {L"Colour", L"Red"},
                           {L"Type - 2", L"Heater"},
                           {L"Disconnect - 2", L"Breaker"}});
  CHECK_FALSE(history.ReadHistory({L"Motor", L"Direct on line", L"Pump 2"}, summary));
}

TEST_CASE_FIXTURE(Fixture, "open goes by the state on disk") {
  CHECK(save(L"Pump 1"));
  ZanXmlHistory other;
  other.context = history.context;
  const HistoryKey key{L"motor", L"DIRECT ON LINE", L"Pump 2"};
  CHECK_FALSE(other.OpenHistory(key));
  CHECK(save(L"Pump 2"));
  CHECK(other.OpenHistory(key));
  CHECK(other.FindElement(L"Marker", L"Tag", L"lamp.1.2").attribute(L"Code") == L"LAMP");
  CHECK(other.FindElement(L"Marker", L"Tag", L"TITLE.1.1").isNull());
  CHECK(other.FindElement(L"HistoryCheck", L"Worksheet", L"motor_sheet").isNull() == false);
  fs::remove(file());
  CHECK_FALSE(other.OpenHistory(key));
  CHECK_FALSE(other.hasOpenHistory());
}
