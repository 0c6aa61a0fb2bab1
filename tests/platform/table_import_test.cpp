// The import: what becomes of types, NULLs and names, and that a failed one changes nothing.
#include "platform/table_import.h"

#include "table_test_support.h"

#include "text/encoding.h"

#include <doctest/doctest.h>

using namespace brenvolt;
using namespace brenvolt::testing;

namespace {

using Lines = std::vector<std::wstring>;

std::string shownErrors(const ImportReport& report) {
  return shown(report.errors);
}

std::wstring notesOf(const ImportReport& report) {
  std::wstring notes;
  for (const ImportedTable& table : report.tables) {
    for (const std::wstring& note : table.notes)
      notes += table.name + L": " + note + L"\n";
  }
  return notes;
}

} // namespace

TEST_CASE("delimited text becomes tables whose columns compare as the statements need them") {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.file("csv"));
  folder.write(
      "csv/AMP_CU_AWG_NEC.csv",
      "\xEF\xBB\xBFSIZE,SIZE_DESC,60C,75C\r\n14,14 AWG,15,20\r\n1/0,\"1/0 AWG\",125,\r\n");
  folder.write("csv/AMPG_CU_AWG_NEC.csv", "SIZE_DESC,MAX\n14 AWG,15\n8 AWG,100\nnone,\n");
  folder.write("csv/FILL_NEC.csv", "MAX,FACTOR\n3,1.00\n6,0.80\n");
  folder.write(
      "csv/MOTOR_NEC.csv", "ID,Type,\"Voltage (V)\",Description\n7,Induction,460,\"5 HP, \"\"TEFC\"\"\nline "
                           "2\"\n9,INDUCTION,230,\n");
  const ImportReport report = importTables(folder.name("out.db"), {folder.name("csv")});
  INFO(shownErrors(report));
  REQUIRE(report.isDone());
  REQUIRE(report.tables.size() == 4);
  CHECK(report.tables[1].name == L"AMP_CU_AWG_NEC");
  CHECK(report.tables[1].rows == 2);
  CHECK(notesOf(report).empty());

  const auto connection = opened(folder.name("out.db"));
  // As texts 100 would come ahead of 15.
  CHECK(
      rowsOf(
          *connection,
          L"SELECT [SIZE_DESC],[MAX] FROM [AMPG_CU_AWG_NEC] WHERE [MAX]>=15 ORDER BY [MAX] ASC") ==
      Lines{L"14 AWG|15", L"8 AWG|100"});
  CHECK(rowsOf(*connection, L"SELECT [75C] FROM [AMP_CU_AWG_NEC] WHERE [SIZE]='1/0'") == Lines{L"<null>"});
  CHECK(rowsOf(*connection, L"SELECT * FROM [FILL_NEC]") == Lines{L"3|1.00", L"6|0.80"});
  CHECK(rowsOf(*connection, L"SELECT DISTINCT [Type] FROM [motor_nec]") == Lines{L"Induction"});
  CHECK(
      rowsOf(*connection, L"SELECT [Description] FROM [MOTOR_NEC] WHERE [ID]=7") ==
      Lines{L"5 HP, \"TEFC\"\nline 2"});
  // The key goes on counting.
  mustRun(*connection, L"INSERT INTO [MOTOR_NEC] ([Type]) VALUES ('Synchronous')");
  CHECK(rowsOf(*connection, L"SELECT [ID] FROM [MOTOR_NEC] WHERE [Type]='synchronous'") == Lines{L"10"});
}

TEST_CASE("every bad row of every file is named in one message and the output is untouched") {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.file("csv"));
  folder.write("csv/A.csv", "X,Y\n1,2\n1\n\n1,2,3\n");
  folder.write("csv/B.csv", "X\n\"a\nb\"\n1,2\n\xFF\n");
  folder.write("csv/C.csv", "");
  folder.write("csv/D.csv", "X\n\"never closed\n");
  makeSqlite(folder.file("out.db"), {"CREATE TABLE OLD(A)"});
  const std::string before = readFile(folder.file("out.db"));
  const ImportReport report = importTables(folder.name("out.db"), {folder.name("csv")});
  REQUIRE(report.errors.size() == 1);
  const std::string expected =
      "A.csv, line 3: 1 cell, the header has 2 cells\nA.csv, line 5: 3 cells, the header has 2 cells\n"
      "B.csv, line 4: 2 cells, the header has 1 cell\nB.csv, line 5: the text is not UTF-8\n"
      "C.csv, line 1: the file is empty\nD.csv, line 2: a quoted cell has no closing quote";
  std::string message = toUtf8(report.errors.front());
  const std::string place = folder.file("csv").string() + "/";
  for (std::size_t at = message.find(place); at != std::string::npos; at = message.find(place))
    message.erase(at, place.size());
  CHECK(message == expected);
  CHECK(readFile(folder.file("out.db")) == before);
}

TEST_CASE("an existing table is refused by name unless it is to be replaced, and a failure leaves no file") {
  const TemporaryFolder folder;
  makeSqlite(
      folder.file("in.db"), {"CREATE TABLE T(A TEXT, B REAL, C INTEGER PRIMARY KEY, D BLOB, E)",
                             "INSERT INTO T VALUES('x', 2, 5, x'00FF', NULL), ('', NULL, 6, NULL, 'e')",
                             "CREATE INDEX I ON T(A)", "CREATE VIEW V AS SELECT A FROM T"});
  REQUIRE(importTables(folder.name("out.db"), {folder.name("in.db")}).isDone());
  const std::string before = readFile(folder.file("out.db"));

  const ImportReport refused = importTables(folder.name("out.db"), {folder.name("in.db")});
  REQUIRE_FALSE(refused.isDone());
  CHECK(refused.errors.front().find(L'T') != std::wstring::npos);
  CHECK(readFile(folder.file("out.db")) == before);

  const ImportReport replaced =
      importTables(folder.name("out.db"), {folder.name("in.db")}, ExistingTables::replace);
  INFO(shownErrors(replaced));
  REQUIRE(replaced.isDone());
  CHECK(
      notesOf(replaced) ==
      L"T: index I is not carried over\nV: the view became a table with its present rows\n");
  const auto connection = opened(folder.name("out.db"));
  CHECK(rowsOf(*connection, L"SELECT * FROM [T]") == Lines{L"x|2|5|00FF|<null>", L"|<null>|6|<null>|e"});
  CHECK(rowsOf(*connection, L"SELECT [C] FROM [T] WHERE [A]='X'") == Lines{L"5"});

  folder.write("bad.mdb", "no database");
  const ImportReport failed = importTables(
      folder.name("new.db"), {folder.name("in.db"), folder.name("bad.mdb"), folder.name("absent")});
  CHECK(failed.errors.size() == 2);
  const ImportReport twice =
      importTables(folder.name("new.db"), {folder.name("in.db"), folder.name("in.db")});
  CHECK_FALSE(twice.isDone());
  CHECK_FALSE(importTables(folder.name("no/such/folder/new.db"), {folder.name("in.db")}).isDone());
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.file(""))) {
    CHECK(entry.path().filename().string().find("new.db") == std::string::npos);
  }
}

TEST_CASE("an imported file answers as the file itself does, and any reader of such databases can read it") {
  for (const char* name :
       {"mdb/gen_jet4.mdb", "mdb/testV1997.mdb", "mdb/delColTestV2007.accdb", "xls/own_xlwt_types.xls",
        "xls/own_libreoffice_types.xls", "xls/TwoSheetsOneHidden.xls", "xls/DBCSSheetName.xls"}) {
    const auto file = foreignFile(name);
    if (!file) {
      MESSAGE("skipped: no " << name);
      continue;
    }
    CAPTURE(name);
    const TemporaryFolder folder;
    const ImportReport report = importTables(folder.name("out.db"), {fromUtf8(file->string())});
    INFO(shownErrors(report));
    REQUIRE(report.isDone());
    const auto foreign = opened(fromUtf8(file->string()));
    const auto imported = opened(folder.name("out.db"));
    for (const ImportedTable& table : report.tables) {
      CAPTURE(toUtf8(table.name));
      const bool isSheet = std::string_view(name).starts_with("xls");
      const Lines theirs = rowsOf(*foreign, L"SELECT * FROM [" + table.name + (isSheet ? L"$]" : L"]"));
      if (!table.notes.empty() && table.rows == 0) continue;
      CHECK(static_cast<std::size_t>(table.rows) == theirs.size());
      CHECK(shown(rowsOf(*imported, L"SELECT * FROM [" + table.name + L"]")) == shown(theirs));
      if (!outputOf("which sqlite3")) continue;
      const auto asked = [&](const char* what) {
        std::string command = "sqlite3 '" + folder.file("out.db").string();
        command.append("' 'SELECT ").append(what).append(" FROM [").append(toUtf8(table.name)).append("]'");
        return outputOf(command);
      };
      CHECK(asked("*").has_value());
      const auto count = asked("count(*)").value_or("");
      CHECK(count == std::to_string(table.rows) + "\n");
    }
  }
}
