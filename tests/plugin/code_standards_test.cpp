// The electrical codes of a site, read from LISP and by other modules.
#include "plugin/handlers/code_standard_description.h"

#include "host/resources.h"
#include "plugin/function_table.h"
#include "simhost/host/resource_module.h"
#include "tests/support/lisp_session.h"
#include "text/encoding.h"

#include <doctest/doctest.h>
#include <sqlite3.h>

#include <unistd.h>

#include <filesystem>
#include <map>
#include <string>

using namespace brenvolt;

namespace {

/// An engineering database with option tables, which LISP names while the object lives.
class StandardsDatabase final {
public:
  explicit StandardsDatabase(test::LispSession& lisp)
      : file_(
            std::filesystem::temp_directory_path() /
            ("brenvolt_standards_" + std::to_string(getpid()) + ".db")) {
    std::filesystem::remove(file_);
    sqlite3* database = nullptr;
    REQUIRE_EQ(sqlite3_open(file_.c_str(), &database), SQLITE_OK);
    for (const std::string table : {"OPT", "OPT_NEC", "OPT_IEC", "OPTIONS"}) {
      const std::string name = table == "OPT_IEC"   ? "'IEC 60364'"
                               : table == "OPT_NEC" ? "'National Code'"
                                                    : "NULL";
      std::string statement = "CREATE TABLE [" + table;
      statement.append("] ([CODE] TEXT COLLATE NOCASE, [DEFAULT] TEXT, [LIST] TEXT); INSERT INTO [")
          .append(table)
          .append("] VALUES ('FULLNAME', ")
          .append(name)
          .append(", NULL), ('PHASE', '3', '1;3')");
      CHECK_EQ(sqlite3_exec(database, statement.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
    }
    sqlite3_close(database);
    lisp.eval("(defun c:zan_bv_figure_mccdb_fnam () \"" + file_.string() + "\")");
  }
  StandardsDatabase(const StandardsDatabase&) = delete;
  StandardsDatabase& operator=(const StandardsDatabase&) = delete;
  ~StandardsDatabase() { std::filesystem::remove(file_); }

private:
  std::filesystem::path file_;
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
  CHECK_EQ(standards.count(L"IEC 60364"), 1);
  CHECK_EQ(standards.count(L"AS (no table OPT_AS)"), 0);
  readAllCodeStandards(standards, true);
  CHECK(standards[L"National Code"] == L"NEC");
  CHECK(standards[L"AS (no table OPT_AS)"] == L"AS");
  CHECK_EQ(lisp.host().documents().resourceDepth(), 0);
  setResourceModule(nullptr);
}
