// The preset fields of the arguments, and what wires become of them.
#include "build/preset_texts.h"
#include "build/wire_expansion.h"

#include "tests/build/build_site.h"
#include "tests/support/sheets.h"
#include "text/numbers.h"

#include <doctest/doctest.h>

using namespace brenvolt;

TEST_CASE("preset defaults select by value and keep what has no option") {
  test::TemporaryFolder folder;
  ZanCircuitCatalog catalog(test::writeBook(
      folder / "book.xls", {test::sheetOf(
                               L"S", {"c|t|x|g|o|v|n|f|s", "M1|Motor||Start|A|1", "||x||B|2", "||x||C|3",
                                      "||||D|3", "|||Brake|None|0", "||||Disc|5"})}));
  struct Row {
    const char* text;
    const char* selected; ///< values of the selected options, group by group
  };
  const Row rows[] = {
      {"M1=1,5", "1/5"},
      {" m1 = 1 , 5 ;", "1/5"},
      {"M1=-1,5", "2,3/5"},
      {"M1=,,5", "3/"}, // empty items are skipped: 5 is for the first group, and is not an option
      {"M1=", "2,3/"},
      {"M1=9,9", "3/0"},
      {"M1=1,5,7,8", "1/5"},
      {"M1[=1A2B]=1,5", "1/5"},
      {"M1=1=5", "2,3/"},
      {"M1", "2,3/"},
      {"X=1;M1=1;;M2=3", "1/"},
      {"M1=3", "3/"},
      {"M1=1;M1=2", "2/"},
      {"[M1=1;]M1=-1,0", "2,3/0"},
      {"M1=1[", "1/"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.text);
    REQUIRE(catalog.readWorksheet(L"S"));
    applyPresetDefaults(fromUtf8(row.text), catalog);
    std::vector<std::wstring> groups;
    for (const ZanOptionGroup& group : catalog.findRecord(L"M1")->groups) {
      std::vector<std::wstring> values;
      for (const ZanOption& option : group.options)
        if (option.selected) values.push_back(formatInt(option.value));
      groups.push_back(join(values, L","));
    }
    CHECK_EQ(toUtf8(join(groups, L"/")), row.selected);
  }
}

TEST_CASE("marker presets need a handle; only the bracket characters go") {
  std::wstring text;
  for (const MarkerPreset& preset : parseMarkerPresets(L"M1[=1A2B]=1,2;M2=3; M3 = FF = 4 ;M4[=]=;M5=1=2=3"))
    text += preset.code + L"," + preset.handle + L"," + formatInt(preset.sum) + L";";
  CHECK_EQ(toUtf8(text), "M1,1A2B,3;M3,FF,4;M4,,0;");
}

TEST_CASE("wire numbers keep their positions") {
  struct Row {
    const char* text;
    const char* numbers;
    std::size_t count;
  };
  const Row rows[] = {
      {"\"1\";\"\";\"3\"", "1||3", 3}, {"\"1\"", "1", 1}, {"", "", 0}, {"\"\"", "", 0}, {"1\";\"2", "1|2", 2},
      {"\"a;b\";\"c\"", "a;b|c", 2}};
  for (const Row& row : rows) {
    CAPTURE(row.text);
    const auto numbers = parseCodeHandles(fromUtf8(row.text));
    CHECK_EQ(numbers.size(), row.count);
    CHECK_EQ(toUtf8(join(numbers, L"|")), row.numbers);
  }
}

TEST_CASE("wires stand in a wrapped list; a group that is not wrapped gives nothing") {
  struct Row {
    const char* text;
    const char* wires;
  };
  const Row rows[] = {
      {R"((("2AWG" "x" "1") ("6AWG" "y" "3")))", "2AWG,x,1;6AWG,y,3;"},
      {R"(("2AWG" "x" "1"))", ""},
      {R"(((2AWG x 1)))", "2AWG,x,1;"},
      {R"((("2AWG" "1")("word")))", "2AWG,,1;"},
      {"", ""},
  };
  for (const Row& row : rows) {
    CAPTURE(row.text);
    std::wstring text;
    for (const PresetWire& wire : parsePresetWires(fromUtf8(row.text)))
      text += wire.firstWord + L"," + wire.secondWord + L"," + wire.kind + L";";
    CHECK_EQ(toUtf8(text), row.wires);
  }
}

TEST_CASE("wires take the positions of their pass, and the last one is repeated by the layer rule") {
  ZanWireFormatter three;
  for (const wchar_t* code : {L"WT01", L"WT02", L"WT03"})
    three.AddMarker(code, std::wstring(L"_WIRETYPE=") + code + L"_@SIZE@;");
  three.AddMarker(L"WT01E", L"");
  three.AddMarker(L"WT02E", L"");
  three.AddMarker(L"WT01-A", L"_WIRETYPE=A_@S@;");
  const ZanWireFormatter none;
  struct Row {
    const char* promise;
    const ZanWireFormatter& formatter;
    const char* wires; ///< p: a phase of size 2, n: a neutral of 4, e: an earth wire of 6
    const wchar_t* suffix;
    WirePass pass;
    const wchar_t* layerValue;
    const char* rows;
  };
  using enum WirePass;
  const Row rows[] = {
      {"conductors take no place for earth wires", three, "pen", L"", conductors, L"",
       "((2 WT01_2 1/5003) (4 WT02_4 2/5003) (4 WT03_4 1/5003))"},
      {"more wires than positions", three, "pppp", L"", conductors, L"",
       "((2 WT01_2 1/5003) (2 WT02_2 1/5003) (2 WT03_2 1/5003))"},
      {"no wires", three, "", L"", conductors, L"", "(( WT01_ 1/5003) ( WT02_ 1/5003) ( WT03_ 1/5003))"},
      {"an empty layer value empties what is repeated", three, "e", L"", grounding, L"",
       "((6 A_6 3/5003) ( A_ 3/5003))"},
      {"another keeps it", three, "e", L"", grounding, L"6", "((6 A_6 3/5003) (6 A_6 3/5003))"},
      {"positions of another suffix do not count", three, "pp", L"-A", conductors, L"", "((2 A_2 1/5003))"},
      {"no positions: no conductors", none, "p", L"", conductors, L"x", "()"},
      {"no positions: the earth wire alone", none, "pe", L"", grounding, L"x", "((6 nil 3/5003))"},
      {"no positions, no earth wire", none, "p", L"", grounding, L"x", "(( nil 3/5003))"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    std::vector<PresetWire> wires;
    for (const char kind : std::string(row.wires))
      wires.push_back(
          kind == 'p'   ? PresetWire{L"2", L"", L"1"}
          : kind == 'n' ? PresetWire{L"4", L"", L"2"}
                        : PresetWire{L"6", L"", L"3"});
    ZanAnnotationDataList list;
    expandWires(wires, row.formatter, row.suffix, row.pass, row.layerValue, list);
    CHECK_EQ(test::describeRows(list), row.rows);
  }
}

TEST_CASE("the tenth position has two digits, its earth position as well") {
  ZanWireFormatter formatter;
  for (int number = 1; number <= 10; ++number) {
    formatter.AddMarker(wireCode(number, L"-B"), L"");
    formatter.AddMarker(wireCode(number, L"E-B"), L"");
  }
  formatter.AddMarker(L"WT10-B", L"_WIRETYPE=TEN;");
  formatter.AddMarker(L"WT10E-B", L"_WIRETYPE=EARTH;");
  for (const WirePass pass : {WirePass::conductors, WirePass::grounding}) {
    ZanAnnotationDataList list;
    expandWires({}, formatter, L"-B", pass, L"", list);
    const auto& tenth = list.items()[9].row->fields[1];
    CHECK_EQ(toUtf8(tenth.value), pass == WirePass::conductors ? "TEN" : "EARTH");
  }
}
