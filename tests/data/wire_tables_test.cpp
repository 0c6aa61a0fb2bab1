// The wire tables as their reader sees them, good and bad, and what the lookup and a build make of them.
#include "table_fixture.h"

#include "data/auto_wire_size.h"
#include "data/wire_figures.h"
#include "text/numbers.h"

using namespace brenvolt;

namespace {

const WireTableSet copper = {L"CU", L"AWG", L"NEC"};

/// 4 AWG has a cell, 2 AWG is interpolated, 1 AWG has no row, 3 AWG's cell has no semicolon.
TableTexts wireTexts() {
  return {
      {"OPT_NEC",
       "CODE,DEFAULT,LIST\nW_INSUL,THWN,\nT_AMBIENT,30C,\nC_LOAD,0.5,\nAMPG_MAX,i*2.5,\nV_DROP,3,\n"
       "LEN_LIST,250,\nLEN_UNITS,FT,\n"},
      {"AMP_CU_AWG_NEC", "SIZE,SIZE_DESC,60C,75C\n1,1 AWG,110,130\n4,4 AWG,70,85\n3,3 AWG,,100\n2,2 "
                         "AWG,95,115\n12,12 AWG,20,\n"},
      {"AMPG_AL_MM2_NEC", "SIZE_DESC,MAX\n10,40\n"},
      {"INSUL_CU_AWG_NEC",
       "ID,INSUL,INSUL_DESC,TEMP,25C,30C,35C\n1,TW,Plain,60C,1.08,,0.91\n2,THWN,Heat,75C,1.05,1.00,0.94\n"
       "3,BARE,Nothing,75C,,,\n"},
      {"XL&R_CU_AWG_NEC",
       "SIZE,SIZE_DESC,PVC,STEEL\n4,4 AWG,0.157; 1.02,0.2;1\n3,3 AWG,0.154 0.82,\n2,2 AWG,,\n"},
      {"XL&R_DESC_NEC", "CODE,DESCRIPTION\nPVC,Plastic\n,Lost\n"},
      {"FILL_NEC", "MAX,FACTOR\n3,1.00\n6,0.80\n9,0.70\n"},
      {"AMPG_CU_AWG_NEC", "SIZE_DESC,MAX\n8 AWG,100\n6 AWG,200\n4 AWG,\n"},
  };
}

std::string sizesOf(const std::vector<ZanWireRow>& rows) {
  std::vector<std::wstring> sizes;
  sizes.reserve(rows.size());
  for (const ZanWireRow& row : rows)
    sizes.push_back(row.size + L"=" + formatShortest(row.ampacity));
  return joinedTexts(sizes);
}

} // namespace

TEST_CASE("lists come from the catalogue and the tables in their order") {
  TableFixture tables(wireTexts());
  ZanWireTableReader reader(tables.connection());
  REQUIRE(reader.GetOptions());
  std::vector<std::wstring> texts;
  CHECK(reader.ListStandards(texts));
  CHECK(joinedTexts(texts) == "MM2|AWG"); // in catalogue order, grounding tables included
  CHECK(reader.ListMetals(L"awg", texts));
  CHECK(joinedTexts(texts) == "CU"); // but not here
  CHECK(reader.ListMetals(L"MM2", texts));
  CHECK(texts.empty());
  CHECK(reader.ListInsulations(copper, texts));
  CHECK(joinedTexts(texts) == "Plain / 60C|Heat / 75C|Nothing / 75C");
  CHECK(reader.ListRacewayColumns(copper, texts));
  CHECK(joinedTexts(texts) == "PVC|STEEL");
  std::map<std::wstring, std::wstring> raceways;
  CHECK(reader.ListRaceways(L"NEC", raceways));
  CHECK(raceways == std::map<std::wstring, std::wstring>{{L"PVC", L"Plastic"}});
  FactorList fill;
  CHECK(reader.ListFill(L"NEC", fill));
  CHECK(joinedTexts(fill.ranges) == "1~3|4~6|>6");
  CHECK(joinedTexts(fill.factors) == "1.0|0.8|0.7");
  std::vector<std::wstring> one = {L"3"};
  makeFillRanges(one);
  CHECK(joinedTexts(one) == "1~3");
  std::vector<ZanWireRow> rows;
  CHECK(reader.ReadAmpacity(copper, L"75C", rows));
  CHECK(sizesOf(rows) == "4 AWG=85|3 AWG=100|2 AWG=115|1 AWG=130"); // as numbers, without the empty cell
}

TEST_CASE("an ambient bracket without a factor leaves no gap") {
  TableFixture tables(wireTexts());
  ZanWireTableReader reader(tables.connection());
  REQUIRE(reader.GetOptions());
  FactorList ambient;
  std::size_t index = 9;
  CHECK(reader.ListAmbient(copper, L"Heat", ambient, index));
  CHECK(joinedTexts(ambient.ranges) == "0~25C|26~30C|31~35C");
  CHECK(joinedTexts(ambient.factors) == "1.05|1.0|0.94");
  CHECK(index == 1); // 30C
  CHECK(reader.ListAmbient(copper, L"Plain", ambient, index));
  CHECK(joinedTexts(ambient.ranges) == "0~25C|26~35C");
  CHECK(index == 1);
  CHECK(reader.ListAmbient(copper, L"Nothing", ambient, index)); // four leading columns alone
  CHECK(ambient.ranges.empty());
  CHECK_FALSE(reader.ListAmbient(copper, L"Pla'in", ambient, index));
}

TEST_CASE("an impedance comes from its cell, from its neighbours, or not at all") {
  TableFixture tables(wireTexts());
  const ZanWireTableReader reader(tables.connection());
  struct Row {
    const wchar_t* size;
    bool found;
    double x;
    double r;
  };
  const Row rows[] = {
      {L"4 AWG", true, 0.157, 1.02}, // a blank after the semicolon does no harm
      {L"3 AWG", false, 0, 0},       // no semicolon
      {L"2 AWG", false, 0, 0},       // its neighbour is the cell without semicolon
      {L"1 AWG", false, 0, 0},       // not in the table
      {L"9 AWG", false, 0, 0},       // unknown
      {L"4' AWG", false, 0, 0},
  };
  std::vector<ZanWireRow> sizes;
  for (const Row& row : rows)
    sizes.push_back({row.size, 0.0});
  const auto together = reader.ReadImpedances(L"XL&R_CU_AWG_NEC", L"AMP_CU_AWG_NEC", L"PVC", sizes);
  for (const Row& row : rows) {
    CAPTURE(toUtf8(row.size));
    const auto one = together.find(row.size);
    REQUIRE((one != together.end()) == row.found);
    if (row.found) CHECK(one->second.r == row.r);
    Impedance impedance{9, 9};
    CHECK(
        reader.ReadImpedance(L"XL&R_CU_AWG_NEC", L"AMP_CU_AWG_NEC", L"PVC", row.size, impedance) ==
        row.found);
    CHECK(impedance.x == row.x);
    CHECK(impedance.r == row.r);
  }
  // 2 AWG in steel: 3 AWG has no cell there either, so 4 AWG is the one neighbour.
  Impedance impedance;
  ImpedanceSource source;
  CHECK(reader.ReadImpedance(L"XL&R_CU_AWG_NEC", L"AMP_CU_AWG_NEC", L"STEEL", L"2 AWG", impedance, &source));
  CHECK(impedance.r == 1.0);
  CHECK(source.neighbours.upper->size == L"4");
}

TEST_CASE("sizes for parallel runs start at an integer limit") {
  TableTexts texts = wireTexts();
  texts["AMP_CU_AWG_NEC"] = "SIZE,SIZE_DESC,75C\n1,1 AWG,215.5\n2,2 AWG,215.2\n3,3 AWG,214.9\n";
  TableFixture tables(texts);
  const ZanWireTableReader reader(tables.connection());
  std::vector<ZanWireRow> rows;
  CHECK(reader.ListParallelSizes(copper, L"75C", L"1", rows, ZanWireTableReader::SizeText::key));
  CHECK(sizesOf(rows) == "2=215.2|1=215.5");
  CHECK_FALSE(reader.ListParallelSizes(copper, L"75C", L"7", rows, ZanWireTableReader::SizeText::key));
  double amps = 5;
  CHECK_FALSE(reader.ReadAmpacityAt(copper, L"75C", L"1 AWG", amps)); // by SIZE, not by what is shown
  CHECK(amps == 0.0);
}

TEST_CASE("grounding follows the formula of the options") {
  TableFixture tables(wireTexts());
  const ZanWireTableReader reader(tables.connection());
  std::vector<std::wstring> sizes;
  CHECK(reader.ListGround(copper, L"i*2.5", L"40", sizes)); // 100 is not above 100
  CHECK(joinedTexts(sizes) == "6 AWG");
  CHECK(reader.ListGround(copper, L"", L"40", sizes)); // a blank formula is 1
  CHECK(joinedTexts(sizes) == "8 AWG|6 AWG");
  CHECK_FALSE(reader.ListGround(copper, L"abc", L"40", sizes));
  CHECK(sizes.empty());
}

TEST_CASE("the sizing of a build takes the first size that carries, by its own rules") {
  TableFixture tables(wireTexts());
  WireTableCache cache(*tables.connection());
  const WireDefaults defaults(cache, L"NEC");
  REQUIRE(cache.hasOptions(L"NEC"));
  const auto sizeFor = [&defaults](const ZanCircuitData& data, double current) {
    const std::optional<AutoWire> wire = autoWire(defaults, data, current);
    return wire ? toUtf8(wire->size) + (wire->isLargeEnough ? "" : ", too small") : "none";
  };
  ZanCircuitData data;
  data.useContinuousLoad = false;        // C_LOAD of 0.5 derates all the same
  CHECK(sizeFor(data, 42.5) == "4 AWG"); // 85 x 0.5 is met exactly, which passes here
  CHECK(sizeFor(data, 42.6) == "3 AWG");
  CHECK(sizeFor(data, 42.500009) == "4 AWG");
  CHECK(sizeFor(data, 42.50002) == "3 AWG");
  CHECK(sizeFor(data, 900) == "1 AWG, too small"); // the last row when none carries
  data.useContinuousLoad = true;
  data.continuousFactor = 0.0; // counts as 1
  CHECK(sizeFor(data, 85) == "4 AWG");
  data.useAmbient = true;
  data.ambientFactor = 0.0; // does not
  CHECK(sizeFor(data, 1) == "1 AWG, too small");
  data.useAmbient = false;

  data.useVoltageDrop = true;
  data.fla = 52;
  data.phase = L"3";
  data.voltage = L"2"; // 6.5 V on 2 V is above the limit's 3; sizes without an impedance drop nothing
  CHECK(sizeFor(data, 50) == "3 AWG");
  data.voltage = L"0"; // 6.5 / 0 does not pass, 0 / 0 does
  CHECK(sizeFor(data, 50) == "3 AWG");
  data.raceway = L"Plastic"; // as shown in the list: no such column, no drop
  CHECK(sizeFor(data, 50) == "4 AWG");
  data.temperature = L"90C";
  CHECK(sizeFor(data, 50) == "none");

  ZanCircuitData motor;
  motor.fla = 40;
  motor.extraCurrent = 10;                           // takes no part
  CHECK(autoDesignCurrent(defaults, motor) == 50.0); // the options have no FLA_MULT
}
