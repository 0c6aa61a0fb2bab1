// The electrical codes of a site, read from LISP and by other modules.
#include "plugin/handlers/code_standard_description.h"

#include "host/resources.h"
#include "plugin/function_table.h"
#include "simhost/host/resource_module.h"
#include "tests/support/engineering_tables.h"
#include "tests/support/lisp_session.h"

#include <doctest/doctest.h>

#include <map>
#include <string>

using namespace brenvolt;

namespace {

const test::TableTexts optionTables = {
    {"OPT", "CODE,DEFAULT\nFULLNAME,Plain\n"},         {"OPT_NEC", "CODE,DEFAULT\nFULLNAME,National Code\n"},
    {"OPT_IEC", "CODE,DEFAULT\nFULLNAME,IEC 60364\n"}, {"OPT_CSA", "CODE,DEFAULT\nFULLNAME,\n"},
    {"OPT_DIN", "CODE,DEFAULT\nVOLTS,400\n"},          {"OPTIONS", "CODE,DEFAULT\nFULLNAME,Stray\n"}};

} // namespace

TEST_CASE("LISP learns the full name of the standard in use, or nil") {
  test::LispSession lisp;
  registerFunctions();
  lisp.eval("(setq GBL_qn_electcodestd \"NEC\")");
  CHECK_EQ(lisp.eval("(zan_bv_code_std_desc)"), "nil");
  const test::EngineeringTables tables(optionTables);
  lisp.eval(tables.lisp());
  struct Row {
    const char* standard;
    const char* answer;
  };
  const Row rows[] = {
      {"\"NEC\"", "(\"National Code\")"},
      {"\"iec\"", "(\"IEC 60364\")"},
      {"\"\"", "nil"},
      {"nil", "nil"},
      {"5", "nil"}};
  for (const Row& row : rows) {
    CAPTURE(row.standard);
    lisp.eval("(setq GBL_qn_electcodestd " + std::string(row.standard) + ")");
    CHECK_EQ(lisp.eval("(zan_bv_code_std_desc)"), row.answer);
  }
}

TEST_CASE("sibling modules get every standard, and on request the current one without tables") {
  test::LispSession lisp;
  std::map<std::wstring, std::wstring> standards = {{L"old", L"entry"}};
  readAllCodeStandards(standards, true);
  CHECK(standards.empty());

  const test::EngineeringTables tables(optionTables);
  lisp.eval(tables.lisp());
  KvResourceModule resources;
  resources.texts[static_cast<unsigned>(TextId::standardWithoutTable)] = L"(no table %s)";
  setResourceModule(&resources);
  lisp.eval("(setq GBL_qn_electcodestd \"AS\")");
  readAllCodeStandards(standards, false);
  std::map<std::wstring, std::wstring> expected = {
      {L"Plain", L""}, {L"National Code", L"NEC"}, {L"IEC 60364", L"IEC"}, {L"CSA", L"CSA"}, {L"Stray", L""}};
  CHECK(standards == expected);
  readAllCodeStandards(standards, true);
  expected[L"AS (no table OPT_AS)"] = L"AS";
  CHECK(standards == expected);
  CHECK_EQ(lisp.host().documents().resourceDepth(), 0);
  setResourceModule(nullptr);
}
