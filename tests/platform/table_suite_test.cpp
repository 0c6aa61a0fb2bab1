// One suite over every engine that can hold the data: the same statement must give the same texts on all of them.
#include "postgres_server.h"
#include "table_test_support.h"

#include "platform/table_import.h"
#include "platform/workbook_writer.h"

#include "text/encoding.h"
#include "text/split.h"

#include <doctest/doctest.h>

#include <array>

using namespace brenvolt;
using namespace brenvolt::testing;

namespace {

using Lines = std::vector<std::wstring>;

/// What an engine can hold.
enum Ability : unsigned {
  texts = 0U,
  /// Numbers, NULL apart from empty, blobs.
  types = 1U,
  writing = 2U,
  /// Comparing without case beyond ASCII.
  allScripts = 4U,
};

struct Engine {
  std::string name;
  unsigned abilities = texts;
  std::unique_ptr<ZanOleDbConnection> connection;
  /// Behind a table's name.
  std::wstring suffix;
};

const Lines motorColumns = {L"ID", L"Type", L"Voltage (V)", L"XL&R", L"Note"};
const std::vector<Lines> motorRows = {
    {L"1", L"induction", L"460", L"0.19;0.31", L"b_2"},
    {L"2", L"Synchronous", L"230", L"1.00", L"B1"},
    {L"3", L"INDUCTION", L"1000", L"a \"b\" c", L"a,3"},
    {L"4", L"Größe", L"28.50", L"µΩ", L"A\nsecond line"},
};

/// Typed rows, as SQL literals.
const std::array<const wchar_t*, 5> typedRows = {
    L"1, 'x', 28.0, 15", L"2, '', 0.1, 100", L"3, NULL, -0.0, NULL", L"4, 'X', 0.30000000000000004, 2",
    L"5, 'y', 1e-07, 15"};

void fillByStatements(
    ZanOleDbConnection& connection, const std::wstring& collation, const std::wstring& real) {
  std::wstring create = L"CREATE TABLE [MOTOR_NEC] (";
  for (const std::wstring& column : motorColumns) {
    create.append(column == L"ID" ? L"[" : L", [").append(column).append(L"] TEXT").append(collation);
  }
  mustRun(connection, create + L")");
  for (const Lines& row : motorRows)
    mustRun(connection, L"INSERT INTO [MOTOR_NEC] VALUES ('" + join(row, L"','") + L"')");
  mustRun(
      connection, L"CREATE TABLE [Typed] ([ID] INTEGER, [Name] TEXT" + collation + L", [60C] " + real +
                      L", [Max] " + real + L")");
  for (const wchar_t* row : typedRows)
    mustRun(connection, L"INSERT INTO [Typed] VALUES (" + std::wstring(row) + L")");
}

std::wstring makeWorkbook(const TemporaryFolder& folder) {
  CDBClass workbook;
  REQUIRE(workbook.CreateDB(folder.name("a.xls"), 1, L""));
  REQUIRE(workbook.AddTable(L"MOTOR_NEC", motorColumns, {}, {}, 1));
  int index = 0;
  for (const Lines& row : motorRows)
    REQUIRE(workbook.AddRecords(L"MOTOR_NEC", motorColumns, row, index++));
  REQUIRE(workbook.CloseDB());
  return folder.name("a.xls");
}

void makeDelimited(const TemporaryFolder& folder) {
  std::string text = toUtf8(join(motorColumns, L",")) + "\n";
  for (const Lines& row : motorRows) {
    Lines cells;
    for (const std::wstring& cell : row)
      cells.push_back(L"\"" + replaceAll(cell, L"\"", L"\"\"") + L"\"");
    text += toUtf8(join(cells, L",")) + "\r\n";
  }
  std::filesystem::create_directory(folder / "csv");
  folder.write("csv/MOTOR_NEC.csv", text);
}

class Engines final {
public:
  Engines() {
    makeSqlite(folder_ / "b.db", {"PRAGMA user_version=1"});
    makeSqlite(folder_ / "a.db", {"PRAGMA user_version=1"});
    auto embedded = opened(folder_.name("a.db"));
    fillByStatements(*embedded, L" COLLATE KVNOCASE", L"REAL");
    engines_.push_back({"embedded", types | writing | allScripts, std::move(embedded), L""});

    engines_.push_back({"workbook", allScripts, opened(makeWorkbook(folder_)), L"$"});

    makeDelimited(folder_);
    auto delimited = std::make_unique<ZanOleDbConnection>();
    const std::wstring init = ZanOleDbHelper::FormatConnectString(
        folder_.name("csv"), L"", L"Extended Properties='text;HDR=Yes;FMT=Delimited'");
    REQUIRE(delimited->OpenFromInitializationString(init, false, true) >= 0);
    engines_.push_back({"delimited text", allScripts, std::move(delimited), L""});

    // The file is one of ours: its columns declare a collation that the driver does not know.
    fillByStatements(*opened(folder_.name("b.db")), L" COLLATE KVNOCASE", L"REAL");
    addServer("ODBC, embedded", L"odbc:Driver=SQLite3;Database=" + folder_.name("b.db"));
    // One server for all tests: starting it takes longer than they do.
    static const PostgresServer server;
    if (!server.isRunning()) {
      MESSAGE("skipped: no PostgreSQL server can be started");
    } else if (ZanOleDbConnection* connection = addServer("ODBC, PostgreSQL", server.dataSource())) {
      for (const wchar_t* table : {L"MOTOR_NEC", L"Typed", L"a second"})
        mustRun(*connection, L"DROP TABLE IF EXISTS [" + std::wstring(table) + L"]");
      fillByStatements(*connection, L"", L"DOUBLE PRECISION");
    }
  }

  [[nodiscard]] std::vector<Engine>& all() { return engines_; }

private:
  /// The connection; null where the driver is not installed.
  ZanOleDbConnection* addServer(const std::string& name, const std::wstring& dataSource) {
    auto connection = std::make_unique<ZanOleDbConnection>();
    if (connection->OpenFromInitializationString(connectString(dataSource), false, true) < 0) {
      MESSAGE("skipped: " << name << ": " << toUtf8(connection->ErrorInfo().GetErrorInfo(false)));
      return nullptr;
    }
    engines_.push_back({name, types | writing, std::move(connection), L""});
    return engines_.back().connection.get();
  }

  TemporaryFolder folder_;
  std::vector<Engine> engines_;
};

struct Case {
  unsigned needs;
  /// "$" after a table's name is replaced by the engine's suffix.
  const wchar_t* statement;
  Lines expected;
};

const std::vector<Case> cases = {
    {texts,
     L"SELECT * FROM [MOTOR_NEC$]",
     {L"1|induction|460|0.19;0.31|b_2", L"2|Synchronous|230|1.00|B1", L"3|INDUCTION|1000|a \"b\" c|a,3",
      L"4|Größe|28.50|µΩ|A\nsecond line"}},
    {texts, L"SELECT [ID] FROM [motor_nec$] WHERE [type]='Induction' ORDER BY [id]", {L"1", L"3"}},
    {texts,
     L"SELECT [ID] FROM [MOTOR_NEC$] WHERE 'x'='x' AND ([Type] <> 'INDUCTION') ORDER BY [ID] DESC",
     {L"4", L"2"}},
    {allScripts, L"SELECT [ID] FROM [MOTOR_NEC$] WHERE [Type]='GRÖßE'", {L"4"}},
    {texts, L"SELECT DISTINCT [Type] FROM [MOTOR_NEC$] WHERE [ID]<'4'", {L"induction", L"Synchronous"}},
    {texts, L"SELECT DISTINCT [Voltage (V)] FROM [MOTOR_NEC$]", {L"1000", L"230", L"28.50", L"460"}},
    {texts,
     L"SELECT DISTINCT [Note], [ID] FROM [MOTOR_NEC$] ORDER BY [Note] DESC",
     {L"b_2|1", L"B1|2", L"a,3|3", L"A\nsecond line|4"}},
    {texts,
     L"SELECT [MOTOR_NEC$].[XL&R] FROM [MOTOR_NEC$] ORDER BY [Note] ASC",
     {L"µΩ", L"a \"b\" c", L"1.00", L"0.19;0.31"}},
    {texts, L"SELECT count(*) FROM [MOTOR_NEC$] WHERE [Note] LIKE 'B%'", {L"2"}},
    {texts,
     L"SELECT id FROM [MOTOR_NEC$] WHERE Type='induction' AND NOT note='x' ORDER BY [MOTOR_NEC$].Note DESC",
     {L"1", L"3"}},
    {texts,
     L"SELECT m.ID, upper(type) AS type FROM [MOTOR_NEC$] m WHERE m.TYPE='synchronous'",
     {L"2|SYNCHRONOUS"}},
    {texts, L"SELECT [ID] FROM [MOTOR_NEC$] WHERE [Type]='a [Note] in ''quotes'''", {}},
    {types,
     L"SELECT [ID], [Name], [60C] FROM [Typed] ORDER BY [ID]",
     {L"1|x|28", L"2||0.1", L"3|<null>|0", L"4|X|0.3", L"5|y|1e-07"}},
    {types, L"SELECT [Max] FROM [TYPED] ORDER BY [MAX] ASC, [ID]", {L"<null>", L"2", L"15", L"15", L"100"}},
    {types,
     L"SELECT [ID] FROM [Typed] WHERE [Max] >= '15' AND [Max] IS NOT NULL ORDER BY [Max] DESC, [ID]",
     {L"2", L"1", L"5"}},
    {types, L"SELECT DISTINCT [Max] FROM [Typed]", {L"<null>", L"2", L"15", L"100"}},
    {types, L"SELECT DISTINCT [Name] FROM [Typed]", {L"<null>", L"", L"x", L"y"}},
    {types, L"SELECT [ID] FROM [Typed] WHERE [Name] IS NULL", {L"3"}},
    {types, L"SELECT [ID] FROM [Typed] WHERE [Name]='' OR [Name]='Y' ORDER BY [ID]", {L"2", L"5"}},
};

} // namespace

TEST_CASE("every engine gives the same texts") {
  Engines engines;
  for (Engine& engine : engines.all()) {
    CAPTURE(engine.name);
    for (const Case& entry : cases) {
      if ((entry.needs & ~engine.abilities) != 0) continue;
      CAPTURE(toUtf8(entry.statement));
      const std::wstring statement = replaceAll(entry.statement, L"$]", engine.suffix + L"]");
      CHECK(shown(rowsOf(*engine.connection, statement)) == shown(entry.expected));
    }
    const Lines missing = rowsOf(*engine.connection, L"SELECT * FROM [NO_SUCH_TABLE]");
    CHECK(missing.front().starts_with(L"error: "));
    CHECK(missing.front().size() > 12);
    CHECK(rowsOf(*engine.connection, L"SELECT [NO_SUCH] FROM [MOTOR_NEC" + engine.suffix + L"]")
              .front()
              .starts_with(L"error: "));
  }
}

TEST_CASE("every engine lists its tables by name and their columns by place") {
  Engines engines;
  for (Engine& engine : engines.all()) {
    CAPTURE(engine.name);
    if ((engine.abilities & writing) != 0)
      mustRun(*engine.connection, L"CREATE TABLE [a second] ([X] INTEGER)");
    ZanOleDbTables catalogue;
    REQUIRE(catalogue.Open(*engine.connection, L"TABLE"));
    std::vector<std::wstring> names;
    catalogue.GetTableList(names);
    const Lines expected = (engine.abilities & writing) != 0 ? Lines{L"a second", L"MOTOR_NEC", L"Typed"}
                                                             : Lines{L"MOTOR_NEC" + engine.suffix};
    CHECK(shown(names) == shown(expected));
    ZanOleDbColumns columns;
    CHECK_FALSE(columns.Open(*engine.connection, L"NO_SUCH_TABLE"));
    REQUIRE(columns.Open(*engine.connection, L"motor_nec" + engine.suffix));
    std::wstring name;
    for (std::size_t place = 0; place < motorColumns.size(); ++place) {
      REQUIRE(columns.FetchNext());
      CHECK(columns.OrdinalPosition() == static_cast<int>(place) + 1);
      CHECK(columns.GetName(name));
      CHECK(name == motorColumns[place]);
    }
    CHECK_FALSE(columns.FetchNext());
  }
}

TEST_CASE("every engine that can be written keeps what is committed and nothing else") {
  Engines engines;
  for (Engine& engine : engines.all()) {
    CAPTURE(engine.name);
    ZanOleDbConnection& connection = *engine.connection;
    if ((engine.abilities & writing) == 0) {
      const std::wstring insert = L"INSERT INTO [MOTOR_NEC" + engine.suffix + L"] ([ID]) VALUES ('9')";
      CHECK(rowsOf(connection, insert).front().find(L"brenvolt import") != std::wstring::npos);
      continue;
    }
    {
      const TableTransaction transaction(connection);
      REQUIRE(transaction.isOpen());
      mustRun(connection, L"DELETE FROM [Typed]");
    }
    CHECK(rowsOf(connection, L"SELECT count(*) FROM [Typed]") == Lines{L"5"});
    {
      TableTransaction transaction(connection);
      mustRun(connection, L"UPDATE [typed] SET [name]='neu', max=7.5 WHERE name='X' AND [id]=4");
      mustRun(connection, L"INSERT INTO typed (id, Name) VALUES (3, 'three')");
      mustRun(connection, L"DELETE FROM [Typed] WHERE [ID]<4");
      CHECK(transaction.commit());
    }
    CHECK(
        rowsOf(connection, L"SELECT [Name], [Max] FROM [Typed] ORDER BY [ID]") == Lines{L"neu|7.5", L"y|15"});
    ZanOleDbDDLCommand command(connection);
    command.SetTable(L"[typed]");
    command.EmptyAsNull(true);
    command.AddColumn(L"[ID]", L"=%d", L"8");
    command.AddColumn(L"Name", L"='%s'", L"");
    CHECK(command.Insert());
    command.AddColumn(L"Name", L"='%s'", L"it's");
    CHECK_FALSE(command.Insert());
    CHECK(command.ErrorInfo().HasErrorInfo());
    command.AddSearchCol(L"Name", L"='%s'", L"NEU");
    CHECK(command.Delete());
    CHECK_FALSE(command.ErrorInfo().HasErrorInfo());
    command.AddColumn(L"Name", L"='%s'", L"it''s");
    CHECK(command.Insert());
    CHECK(
        rowsOf(connection, L"SELECT [ID], [Name] FROM [Typed] ORDER BY [Name]") ==
        Lines{L"8|<null>", L"<null>|it's", L"5|y"});
    command.AddSearchCol(L"[Name]", L"='%s'", L"");
    CHECK(command.Delete());
    command.AddSearchCol(L"A] OR [ID", L"=%d", L"5");
    CHECK_FALSE(command.Delete());
    CHECK(rowsOf(connection, L"SELECT [ID] FROM [Typed] ORDER BY [Name]") == Lines{L"<null>", L"5"});
    CHECK(rowsOf(connection, L"INSERT INTO [Typed] ([NO_SUCH]) VALUES (1)").front().starts_with(L"error: "));
  }
}

TEST_CASE("a server that cannot be reached is told without the password, and no file is made") {
  const TemporaryFolder folder;
  const std::wstring message = openingError(
      L"odbc:Driver=PostgreSQL Unicode;Server=" + folder.name("") + L";Database=x;Uid=u;Pwd={se;cret}");
  CHECK(message.starts_with(L"odbc:Driver=PostgreSQL Unicode;"));
  CHECK(message.find(L"cret") == std::wstring::npos);
  CHECK_FALSE(openingError(L"odbc:Driver=SQLite3;Database=" + folder.name("new.db")).empty());
  CHECK_FALSE(openingError(L"odbc:Driver=No such driver;Database=x").empty());
  CHECK_FALSE(std::filesystem::exists(folder / "new.db"));
}
