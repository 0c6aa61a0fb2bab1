// The electrical codes of a site, read from LISP and by other modules.
#include "plugin/handlers/code_standard_description.h"

#include "host/resources.h"
#include "platform/table_import.h"
#include "plugin/function_table.h"
#include "simhost/host/resource_module.h"
#include "tests/support/golden.h"
#include "tests/support/lisp_session.h"
#include "tests/support/temporary_folder.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

#include <map>
#include <string>

using namespace brenvolt;

namespace {

/// An engineering database with option tables, which LISP names while the object lives.
class StandardsDatabase final {
public:
  explicit StandardsDatabase(test::LispSession& lisp) {
    std::filesystem::create_directory(folder_ / "csv");
    for (const auto& [table, name] :
         {std::pair{"OPT", "FULLNAME,Plain"},
          {"OPT_NEC", "FULLNAME,National Code"},
          {"OPT_IEC", "FULLNAME,IEC 60364"},
          {"OPT_CSA", "FULLNAME,"},
          {"OPT_DIN", "VOLTS,400"},
          {"OPTIONS", "FULLNAME,Stray"}})
      test::writeBytes(
          folder_ / ("csv/" + std::string(table) + ".csv"),
          "CODE,DEFAULT,LIST\n" + std::string(name) + ",\nPHASE,3,1;3\n");
    const std::string file = (folder_ / "tables.db").string();
    REQUIRE(importTables(fromUtf8(file), {fromUtf8((folder_ / "csv").string())}).isDone());
    lisp.eval("(defun c:zan_bv_figure_mccdb_fnam () \"" + file + "\")");
  }

private:
  test::TemporaryFolder folder_;
};

} // namespace

TEST_CASE("LISP learns the full name of the standard in use, or nil") {
  test::LispSession lisp;
  registerFunctions();
  lisp.eval("(setq GBL_qn_electcodestd \"NEC\")");
  CHECK_EQ(lisp.eval("(zan_bv_code_std_desc)"), "nil");
  const StandardsDatabase database(lisp);
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

  const StandardsDatabase database(lisp);
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
