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

/// What the columns of the tests' tables are used for, by the first letter of their names.
ColumnUse useByName(std::wstring_view, std::size_t, std::wstring_view column) {
  switch (column.front()) {
  case L'N':
    return ColumnUse::number;
  case L'I':
    return ColumnUse::key;
  case L'R':
    return ColumnUse::numberAsText;
  case L'L':
    return ColumnUse::limit;
  case L'P':
    return ColumnUse::numberPair;
  default:
    return ColumnUse::text;
  }
}

ImportOptions byName(BadCells badCells = BadCells::refuse) {
  ImportOptions options;
  options.columnUses = useByName;
  options.badCells = badCells;
  return options;
}

ImportOptions replacing() {
  ImportOptions options;
  options.existing = ExistingTables::replace;
  return options;
}

} // namespace

TEST_CASE("delimited text becomes tables whose columns compare as the statements need them") {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "csv");
  folder.write("csv/AMP.csv", "\xEF\xBB\xBFSIZE,N60,N75\r\n14, 15 ,20\r\n1/0,+125,\r\n");
  folder.write("csv/LIMITS.csv", "SIZE,NMAX\n14 AWG,15\n8 AWG,100\nnone,\n");
  folder.write("csv/FILL.csv", "LMAX,RATIO\n3,1.00\n6,0.80\nmore,0.5\n");
  folder.write(
      "csv/MOTOR.csv", "ID,Type,\"Voltage (V)\",Description\n7,Induction,460,\"5 HP, \"\"TEFC\"\"\nline "
                       "2\"\n9,INDUCTION,230,\n");
  const ImportReport report = importTables(folder.name("out.db"), {folder.name("csv")}, byName());
  INFO(shownErrors(report));
  REQUIRE(report.isDone());
  REQUIRE(report.tables.size() == 4);
  CHECK(report.tables[0].name == L"AMP");
  CHECK(report.tables[0].rows == 2);
  CHECK(notesOf(report).empty());

  const auto connection = opened(folder.name("out.db"));
  // As texts 100 would come before 15.
  CHECK(
      rowsOf(*connection, L"SELECT [SIZE],[NMAX] FROM [LIMITS] WHERE [NMAX]>=15 ORDER BY [NMAX] ASC") ==
      Lines{L"14 AWG|15", L"8 AWG|100"});
  CHECK(rowsOf(*connection, L"SELECT [N60],[N75] FROM [AMP]") == Lines{L"15|20", L"125|<null>"});
  CHECK(rowsOf(*connection, L"SELECT * FROM [FILL]") == Lines{L"3|1.00", L"6|0.80", L"more|0.5"});
  CHECK(rowsOf(*connection, L"SELECT DISTINCT [Type] FROM [motor]") == Lines{L"Induction"});
  CHECK(
      rowsOf(*connection, L"SELECT [Description] FROM [MOTOR] WHERE [ID]=7") ==
      Lines{L"5 HP, \"TEFC\"\nline 2"});
  // The key continues.
  mustRun(*connection, L"INSERT INTO [MOTOR] ([Type]) VALUES ('Synchronous')");
  CHECK(rowsOf(*connection, L"SELECT [ID] FROM [MOTOR] WHERE [Type]='synchronous'") == Lines{L"10"});
}

TEST_CASE("a cell that is not what its column needs is named, and nothing is written") {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "csv");
  folder.write(
      "csv/A.csv", "ID,NUM,RATIO,LIMIT,PAIR,TEXT\n1,4O,1.00,3,0.1;2,nan\n\nx,\"40,5\",0.8O,4O,0.1 2,inf\n"
                   "2.5,nan,nan,6,1;x,\n4,inf,,more,,\n5,1e400,1e3,over,\" 1 ; 2 \",\n");
  makeSqlite(
      folder / "typed.db", {"CREATE TABLE B(NUM TEXT, RATIO REAL, ID TEXT)",
                            "INSERT INTO B VALUES('7', 'x', 'a'), ('7a', 9e999, 'a')"});
  const std::vector<std::wstring> inputs = {folder.name("csv"), folder.name("typed.db")};
  const Lines faults = {
      L"A: row 2, column NUM: \"4O\" is not a number",
      L"A: row 4, column ID: \"x\" is not a whole number",
      L"A: row 4, column NUM: \"40,5\" is not a number",
      L"A: row 4, column RATIO: \"0.8O\" is not a number",
      L"A: row 4, column LIMIT: \"4O\" is not a number",
      L"A: row 4, column PAIR: \"0.1 2\" is not two numbers with \";\" between",
      L"A: row 5, column ID: \"2.5\" is not a whole number",
      L"A: row 5, column NUM: \"nan\" is not a number",
      L"A: row 5, column RATIO: \"nan\" is not a number",
      L"A: row 5, column PAIR: \"1;x\" is not two numbers with \";\" between",
      L"A: row 6, column NUM: \"inf\" is not a number",
      L"A: row 6, column LIMIT: \"more\" is not a number",
      L"A: row 7, column NUM: \"1e400\" is not a number",
      L"B: row 1, column RATIO: \"x\" is not a number",
      L"B: row 2, column NUM: \"7a\" is not a number",
      L"B: row 2, column RATIO: \"infinity\" is not a number",
  };
  const ImportReport refused = importTables(folder.name("out.db"), inputs, byName());
  CHECK(refused.fault == ImportFault::badInput);
  CHECK(refused.badCells == faults.size());
  REQUIRE(refused.errors.size() == faults.size());
  for (std::size_t at = 0; at < faults.size(); ++at) {
    const std::wstring& input = inputs[faults[at].front() == L'A' ? 0 : 1];
    CHECK(toUtf8(refused.errors[at]) == toUtf8(input + L", table " + faults[at]));
  }
  CHECK_FALSE(std::filesystem::exists(folder / "out.db"));

  const ImportReport kept = importTables(folder.name("out.db"), inputs, byName(BadCells::makeNull));
  INFO(shownErrors(kept));
  REQUIRE(kept.isDone());
  std::wstring expected;
  for (const std::wstring& fault : faults)
    expected += fault + L" and is NULL now\n";
  CHECK(toUtf8(notesOf(kept)) == toUtf8(expected));
  const auto connection = opened(folder.name("out.db"));
  CHECK(
      rowsOf(*connection, L"SELECT [NUM], [RATIO], [LIMIT], [PAIR], [TEXT] FROM [A] ORDER BY [ID]") ==
      Lines{
          L"<null>|1.00|3|0.1;2|nan", L"<null>|<null>|<null>|<null>|inf", L"<null>|<null>|6|<null>|<null>",
          L"<null>|<null>|<null>|<null>|<null>", L"<null>|1e3|over| 1 ; 2 |<null>"});
  // The text column that is used as a number is one now.
  CHECK(rowsOf(*connection, L"SELECT [NUM] FROM [B] WHERE [NUM]<10") == Lines{L"7"});
}

TEST_CASE("every bad row of every file is named in one message and the output is untouched") {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "csv");
  folder.write("csv/A.csv", "X,Y\n1,2\n1\n\n1,2,3\n");
  folder.write("csv/B.csv", "X\n\"a\nb\"\n1,2\n\xFF\n");
  folder.write("csv/C.csv", "");
  folder.write("csv/D.csv", "X\n\"never closed\n");
  makeSqlite(folder / "out.db", {"CREATE TABLE OLD(A)"});
  const std::string before = bytesOf(folder / "out.db");
  const ImportReport report = importTables(folder.name("out.db"), {folder.name("csv")});
  REQUIRE(report.errors.size() == 1);
  const std::string expected =
      "A.csv, line 3: 1 cell, the header has 2 cells\nA.csv, line 5: 3 cells, the header has 2 cells\n"
      "B.csv, line 4: 2 cells, the header has 1 cell\nB.csv, line 5: the text is not UTF-8\n"
      "C.csv, line 1: the file is empty\nD.csv, line 2: a quoted cell has no closing quote";
  std::string message = toUtf8(report.errors.front());
  const std::string place = (folder / "csv").string() + "/";
  for (std::size_t at = message.find(place); at != std::string::npos; at = message.find(place))
    message.erase(at, place.size());
  CHECK(message == expected);
  CHECK(bytesOf(folder / "out.db") == before);
}

TEST_CASE("an existing table is refused by name unless it is to be replaced, and a failure leaves no file") {
  const TemporaryFolder folder;
  makeSqlite(
      folder / "in.db", {"CREATE TABLE T(A TEXT, B REAL, C INTEGER PRIMARY KEY, D BLOB, E)",
                         "INSERT INTO T VALUES('x', 2, 5, x'00FF', NULL), ('', NULL, 6, NULL, 'e')",
                         "CREATE INDEX I ON T(A)", "CREATE VIEW V AS SELECT A FROM T"});
  REQUIRE(importTables(folder.name("out.db"), {folder.name("in.db")}).isDone());
  const std::string before = bytesOf(folder / "out.db");

  const ImportReport refused = importTables(folder.name("out.db"), {folder.name("in.db")});
  REQUIRE_FALSE(refused.isDone());
  CHECK(refused.errors.front().find(L'T') != std::wstring::npos);
  CHECK(bytesOf(folder / "out.db") == before);

  const ImportReport replaced = importTables(folder.name("out.db"), {folder.name("in.db")}, replacing());
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
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder / "")) {
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
        std::string command = "sqlite3 '" + (folder / "out.db").string();
        command.append("' 'SELECT ").append(what).append(" FROM [").append(toUtf8(table.name)).append("]'");
        return outputOf(command);
      };
      CHECK(asked("*").has_value());
      const auto count = asked("count(*)").value_or("");
      CHECK(count == std::to_string(table.rows) + "\n");
    }
  }
}
