// What the embedded database promises beyond the suite that all engines pass: writing, several writers, odd files.
#include "table_test_support.h"

#include "platform/shared_library.h"
#include "tests/support/processes.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

using namespace brenvolt;
using namespace brenvolt::testing;

namespace {

using Lines = std::vector<std::wstring>;

struct AbsentLibrary final : SharedLibrary {
  AbsentLibrary() : SharedLibrary("libnobody-has-this.so.1") {}
  decltype(&::getpid) getpid = find("getpid");
};

} // namespace

TEST_CASE("a file that is not a database is refused with its name and the reason, and nothing is made") {
  const TemporaryFolder folder;
  folder.write("empty.mdb", "");
  folder.write("notes.db", "these are notes, not tables\n");
  folder.write("book.xls", "PK\x03\x04 zip");
  folder.write("cut.db", std::string_view("SQLite format 3\0 and nothing behind it", 38));
  std::filesystem::create_directory(folder / "folder.db");
  makeSqlite(folder / "whole.db", {"CREATE TABLE T(A TEXT)", "INSERT INTO T VALUES(hex(zeroblob(20000)))"});
  folder.write("half.db", bytesOf(folder / "whole.db").substr(0, 9000));

  for (const char* name :
       {"empty.mdb", "notes.db", "book.xls", "cut.db", "folder.db", "half.db", "absent.mdb"}) {
    CAPTURE(name);
    const std::wstring message = openingError(folder.name(name));
    CHECK(message.starts_with(folder.name(name) + L": "));
    CHECK(message.size() > folder.name(name).size() + 4);
  }
  CHECK_FALSE(std::filesystem::exists(folder / "absent.mdb"));
}

TEST_CASE("the data source survives every character a path can hold") {
  const TemporaryFolder folder;
  for (const char* name : {"plain.db", "semi;colon.db", "it's \"quoted\".db", "100%#?.db", "größe=1.db"}) {
    CAPTURE(name);
    makeSqlite(folder / name, {"CREATE TABLE T(A TEXT)"});
    const auto connection = opened(folder.name(name));
    std::wstring path;
    CHECK(connection->GetDatasource(path));
    CHECK(toUtf8(path) == (folder / name).string());
    connection->Close();
    CHECK_FALSE(connection->GetDatasource(path));
  }
}

TEST_CASE("a command survives what happens around it") {
  const TemporaryFolder folder;
  makeSqlite(folder / "a.db", {"CREATE TABLE T(A INTEGER)", "INSERT INTO T VALUES(1),(2),(3)"});
  auto connection = opened(folder.name("a.db"));
  ZanOleDbCommand reader;
  reader.SetConnection(connection.get());
  reader.SetCommandText(L"SELECT [A] FROM [T] ORDER BY [A]");
  REQUIRE(reader.Execute() == dbStatus::success);
  REQUIRE(reader.FetchNext() == dbStatus::success);
  // The same text once more while the first is under way.
  CHECK(rowsOf(*connection, L"SELECT [A] FROM [T] ORDER BY [A]") == Lines{L"1", L"2", L"3"});
  // A write during an open reader: the reader keeps its rows.
  mustRun(*connection, L"DELETE FROM [T]");
  CHECK(reader.FieldAsString(1) == L"1");
  CHECK(reader.FetchNext() == dbStatus::success);
  CHECK(reader.FieldAsString(1) == L"2");
  connection->Close();
  CHECK(reader.FetchNext() == dbStatus::success);
  CHECK(reader.FieldAsString(1) == L"3");
  CHECK(reader.FetchNext() == dbStatus::noMoreRows);
  CHECK(reader.FieldAsString(1).empty());
  CHECK(reader.FieldAsString(0).empty());
  CHECK(reader.FieldAsString(9).empty());
  CHECK(reader.Execute() == dbStatus::failure);
  CHECK(reader.ErrorInfo().HasErrorInfo());

  connection = opened(folder.name("a.db"));
  reader.SetConnection(connection.get());
  reader.SetCommandText(L"SELECT [A] FROM [T]");
  CHECK(reader.Execute() == dbStatus::success);
}

TEST_CASE("a double-quoted name is never taken for a text") {
  const TemporaryFolder folder;
  makeSqlite(folder / "a.db", {"CREATE TABLE T(A TEXT)", "INSERT INTO T VALUES('x')"});
  const auto connection = opened(folder.name("a.db"));
  CHECK(rowsOf(*connection, L"SELECT \"A\" FROM [T]") == Lines{L"x"});
  CHECK(rowsOf(*connection, L"SELECT \"B\" FROM [T]").front().starts_with(L"error: "));
}

TEST_CASE("a database that is opened for reading takes no change") {
  const TemporaryFolder folder;
  makeSqlite(folder / "a.db", {"CREATE TABLE T(A TEXT)"});
  ZanOleDbConnection reading;
  REQUIRE(
      reading.OpenFromInitializationString(connectString(folder.name("a.db")) + L";Mode=Read", false, true) >=
      0);
  CHECK_FALSE(TableTransaction(reading).isOpen());
  CHECK(rowsOf(reading, L"INSERT INTO [T] VALUES('refused')").front().starts_with(L"error: "));
}

TEST_CASE("two processes that write at once both succeed, and a reader beside them never waits") {
  const TemporaryFolder folder;
  makeSqlite(folder / "a.db", {"CREATE TABLE T(WHO TEXT, N INTEGER)"});
  constexpr int rounds = 40;
  std::vector<pid_t> writers;
  for (const wchar_t* who : {L"A", L"B"})
    writers.push_back(test::startProcess([&] {
      ZanOleDbConnection connection;
      bool fine =
          connection.OpenFromInitializationString(connectString(folder.name("a.db")), false, true) >= 0;
      for (int round = 0; fine && round < rounds; ++round) {
        // Reads first and writes after, the order in which careless locking fails.
        TableTransaction transaction(connection);
        fine = transaction.isOpen() && rowsOf(connection, L"SELECT count(*) FROM [T]").size() == 1;
        const std::wstring insert = std::wstring(L"INSERT INTO [T] SELECT '") + who + L"', count(*) FROM [T]";
        fine = fine && rowsOf(connection, insert).empty() && transaction.commit();
      }
      return fine ? 0 : 1;
    }));
  const auto connection = opened(folder.name("a.db"));
  // Both are done in seconds; a reader in the way of a writer would show here as an error.
  for (int read = 0; read < 200; ++read) {
    const Lines count = rowsOf(*connection, L"SELECT count(*) FROM [T]");
    CHECK_FALSE(count.front().starts_with(L"error"));
  }
  for (const pid_t writer : writers)
    CHECK(test::waitFor(writer) == 0);
  CHECK(rowsOf(*connection, L"SELECT count(*), count(DISTINCT [N]) FROM [T]") == Lines{L"80|80"});

  // While a writer is in the middle of its transaction a reader sees the previous rows; to wait for it would be to fail.
  const auto writer = opened(folder.name("a.db"));
  TableTransaction open(*writer);
  mustRun(*writer, L"DELETE FROM [T]");
  CHECK(rowsOf(*connection, L"SELECT count(*) FROM [T]") == Lines{L"80"});
}

TEST_CASE("what is read together comes from one state of the file") {
  const TemporaryFolder folder;
  makeSqlite(
      folder / "a.db", {"PRAGMA journal_mode=WAL", "CREATE TABLE T(A TEXT)", "INSERT INTO T VALUES('old')"});
  const auto reader = opened(folder.name("a.db"));
  const auto writer = opened(folder.name("a.db"));
  {
    const TableReading reading(*reader);
    CHECK(rowsOf(*reader, L"SELECT * FROM T") == Lines{L"old"});
    CHECK(rowsOf(*writer, L"UPDATE T SET A='new'").empty());
    CHECK(rowsOf(*reader, L"SELECT A FROM T") == Lines{L"old"});
  }
  CHECK(rowsOf(*reader, L"SELECT * FROM T") == Lines{L"new"});
}

TEST_CASE("a library that is missing is reported by its name and with what to do") {
  const AbsentLibrary library;
  CHECK(library.fault().starts_with(
      L"libnobody-has-this.so.1 cannot be loaded: install the package that has it ("));
  CHECK((library.getpid == nullptr));
}
