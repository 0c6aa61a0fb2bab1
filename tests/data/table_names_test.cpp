// Names of tables: composed, resolved with their fallback, and checked before they are needed.
#include "table_fixture.h"

#include "data/option_tables.h"
#include "data/table_names.h"

using namespace brenvolt;

namespace {

constexpr const char* anyTable = "A\n1\n";

TableTexts named(std::initializer_list<const char*> names) {
  TableTexts tables;
  for (const char* name : names)
    tables[name] = anyTable;
  return tables;
}

} // namespace

TEST_CASE("a table is the code's own, else the one for all codes, else that of NEC") {
  struct Row {
    std::initializer_list<const char*> tables;
    const wchar_t* code = nullptr;
    const char* found = nullptr;
  };
  const Row rows[] = {
      {{"OPT_IEC", "OPT", "OPT_NEC"}, L"IEC", "OPT_IEC"},
      {{"OPT", "OPT_NEC"}, L"IEC", "OPT"},
      {{"OPT_NEC"}, L"IEC", "OPT_NEC"},
      {{"opt_iec"}, L"IEC", "OPT_IEC"}, // found without case, named as composed
      {{"OPT_NEC"}, L"", "OPT_NEC"},    // an empty code still falls back
      {{"OPT_IEC"}, L"NEC", ""},
      {{"OPTX"}, L"IEC", ""},
  };
  for (const Row& row : rows) {
    TableFixture tables(named(row.tables));
    const ZanDbReaderUtils utils(tables.connection());
    std::wstring name = L"before";
    CHECK(utils.ResolveTable(name, ZanTableKind::options, row.code) == (*row.found != '\0'));
    CHECK(toUtf8(name) == row.found);
  }
  std::wstring name;
  CHECK_FALSE(ZanDbReaderUtils(nullptr).ResolveTable(name, ZanTableKind::options, L"NEC"));
}

TEST_CASE("a missing table is told for its code, and once more when no fallback serves") {
  struct Row {
    const char* why = nullptr;
    std::initializer_list<const char*> tables;
    const wchar_t* metal = nullptr;
    const wchar_t* code = nullptr;
    unsigned mask = 0;
    const char* forCode = nullptr;
    const char* everywhere = nullptr;
  };
  using namespace tablemask;
  const Row rows[] = {
      {"a fallback still leaves the code's own name",
       {"AMP_CU_AWG_NEC", "INSUL_CU_AWG_IEC", "XL&R_CU_AWG_IEC", "FILL_IEC"},
       L"CU",
       L"IEC",
       wires,
       "AMP_CU_AWG_IEC",
       ""},
      {"NEC never enters the second list", {"OTHER"}, L"CU", L"NEC", options, "OPT_NEC", ""},
      {"nothing anywhere", {"OTHER"}, L"CU", L"IEC", loads, "FEED_IEC", "FEED|FEED_NEC"},
      {"the plain table serves all codes", {"MOTOR"}, L"CU", L"IEC", motors, "MOTOR_IEC", ""},
      {"an empty code reports nothing", {"OTHER"}, L"CU", L"", motors | options, "", ""},
      {"without a metal its tables are not looked for", {"FILL_NEC"}, L"", L"NEC", wires | grounding, "", ""},
      {"grounding counts with the wires only", {"OTHER"}, L"CU", L"NEC", grounding, "", ""},
      {"the order is that of the families",
       {"OTHER"},
       L"CU",
       L"NEC",
       wires | grounding | options,
       "OPT_NEC|AMP_CU_AWG_NEC|INSUL_CU_AWG_NEC|XL&R_CU_AWG_NEC|FILL_NEC|AMPG_CU_AWG_NEC",
       ""},
      {"components are three tables",
       {"MOTOR_I_MAP_NEC"},
       L"",
       L"NEC",
       components,
       "MOTOR_I_CALC_NEC|MOTOR_I_DESC_NEC",
       ""},
  };
  for (const Row& row : rows) {
    CAPTURE(row.why);
    TableFixture tables(named(row.tables));
    MissingTables missing;
    const bool isComplete =
        ZanDbReaderUtils(tables.connection()).CheckTables(row.metal, L"AWG", row.code, missing, row.mask);
    CHECK(joinedTexts(missing.forCode) == row.forCode);
    CHECK(joinedTexts(missing.everywhere) == row.everywhere);
    CHECK(isComplete == (missing.forCode.empty() && missing.everywhere.empty()));
  }
}

TEST_CASE("options are found in any case, the first row of a setting wins, lists end at an empty choice") {
  TableFixture tables(
      TableTexts{{"OPT_NEC", "CODE,DEFAULT,LIST\nvolts,480,208;;480\nVOLTS,1,1\nPHASE,3,1;3\nNONE,,\n"}});
  ZanOptTableReader reader(tables.connection());
  REQUIRE(reader.GetOptions());
  std::wstring value;
  std::vector<std::wstring> list;
  CHECK(reader.GetValue(L"Volts", L"default", value));
  CHECK(value == L"480");
  CHECK(reader.GetList(L"VOLTS", list));
  CHECK(joinedTexts(list) == "208");
  CHECK_FALSE(reader.GetValue(L"PHASE", L"list", value)); // lists go through GetList
  CHECK(value.empty());
  CHECK_FALSE(reader.GetValue(L"LENGTH", L"DEFAULT", value));
  CHECK(reader.GetValue(L"NONE", L"DEFAULT", value));
  CHECK(reader.GetList(L"NONE", list));
  CHECK(list.empty());
  CHECK(reader.GetFlaMultiplier() == 1.25);
}
