// A small query through the table library against the bare library of the embedded database with a statement prepared
// each time, on the same database in the same run; and the import of a large Access file against the plain dump of the
// same file, when BRENVOLT_BENCH_MDB names one.
#include "platform/table_import.h"
#include "platform/tables.h"

#include "text/encoding.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace {

using namespace brenvolt;
namespace fs = std::filesystem;

constexpr const char* query =
    "SELECT [SIZE_DESC],[MAX] FROM [AMPG_CU_AWG_NEC] WHERE [MAX]>=100 ORDER BY [MAX] ASC";

/// A database as a site has it: a table of twenty rows, journal as the import leaves it.
class Sample final {
public:
  Sample() : path_(fs::temp_directory_path() / "brenvolt-tables-bench.db") {
    fs::remove(path_);
    sqlite3* database = nullptr;
    sqlite3_open(path_.c_str(), &database);
    std::string statements = "CREATE TABLE [AMPG_CU_AWG_NEC]([SIZE_DESC] TEXT, [MAX] NUMERIC); BEGIN;";
    for (int row = 1; row <= 20; ++row) {
      statements += "INSERT INTO [AMPG_CU_AWG_NEC] VALUES('" + std::to_string(row) + " AWG', " +
                    std::to_string(row * 15) + ");";
    }
    if (sqlite3_exec(database, (statements + "COMMIT").c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
      throw std::runtime_error("the sample database cannot be made");
    }
    sqlite3_close(database);
  }
  Sample(const Sample&) = delete;
  Sample& operator=(const Sample&) = delete;
  ~Sample() { fs::remove(path_); }

  [[nodiscard]] const fs::path& path() const { return path_; }

private:
  fs::path path_;
};

void bareLibrary(benchmark::State& state) {
  const Sample sample;
  sqlite3* database = nullptr;
  sqlite3_open(sample.path().c_str(), &database);
  std::size_t characters = 0;
  for (auto _ : state) {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(database, query, -1, &statement, nullptr);
    while (sqlite3_step(statement) == SQLITE_ROW) {
      characters +=
          static_cast<std::size_t>(sqlite3_column_bytes(statement, 0) + sqlite3_column_bytes(statement, 1));
    }
    sqlite3_finalize(statement);
  }
  benchmark::DoNotOptimize(characters);
  sqlite3_close(database);
}
BENCHMARK(bareLibrary);

void tableLibrary(benchmark::State& state) {
  const Sample sample;
  ZanOleDbConnection connection;
  const std::wstring init = ZanOleDbHelper::FormatConnectString(fromUtf8(sample.path().string()), L"", L"");
  if (connection.OpenFromInitializationString(init, false, true) < 0)
    return state.SkipWithError("no database");
  const std::wstring text = fromUtf8(query);
  std::size_t characters = 0;
  for (auto _ : state) {
    ZanOleDbCommand command;
    command.SetConnection(&connection);
    command.SetCommandText(text);
    if (command.Execute() != dbStatus::success) return state.SkipWithError("the query failed");
    while (command.FetchNext() == dbStatus::success) {
      characters += command.FieldAsString(1).size() + command.FieldAsString(2).size();
    }
  }
  benchmark::DoNotOptimize(characters);
}
BENCHMARK(tableLibrary);

void importAccessFile(benchmark::State& state) {
  const char* file = std::getenv("BRENVOLT_BENCH_MDB");
  if (file == nullptr) return state.SkipWithError("BRENVOLT_BENCH_MDB names no file");
  const fs::path out = fs::temp_directory_path() / "brenvolt-import-bench.db";
  for (auto _ : state) {
    fs::remove(out);
    if (!importTables(fromUtf8(out.string()), {fromUtf8(file)}).isDone())
      return state.SkipWithError("the import failed");
  }
  fs::remove(out);
}
BENCHMARK(importAccessFile)->Unit(benchmark::kMillisecond)->UseRealTime();

void dumpAccessFile(benchmark::State& state) {
  const char* file = std::getenv("BRENVOLT_BENCH_MDB");
  if (file == nullptr) return state.SkipWithError("BRENVOLT_BENCH_MDB names no file");
  // The name goes through the environment, so that no quote in it can matter.
  const char* dump =
      "mdb-tables -1 \"$BRENVOLT_BENCH_MDB\" | while read -r t; do mdb-export \"$BRENVOLT_BENCH_MDB\" "
      "\"$t\"; done >/dev/null";
  for (auto _ : state) {
    if (std::system(dump) != 0) return state.SkipWithError("the dump failed");
  }
}
BENCHMARK(dumpAccessFile)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
