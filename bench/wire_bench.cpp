// The wire lookup of 60 sizes with voltage drop against the bare statements of the same lookup through the embedded
// database's own functions, and the circuits a second of a long list whose tables are read once.
#include "data/wire_lookup.h"
#include "platform/table_import.h"
#include "text/encoding.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

using namespace brenvolt;

namespace {

namespace fs = std::filesystem;

constexpr int sizeCount = 60;
const WireTableChoice choice = {{L"CU", L"AWG", L"NEC"}, L"75C", L"PVC", {}};

/// A database with 60 sizes, every third of them without an impedance of its own, as in sparse tables.
class Tables final {
public:
  Tables() {
    std::string name = (fs::temp_directory_path() / "brenvolt-wire-XXXXXX").string();
    folder_ = ::mkdtemp(name.data());
    fs::create_directory(folder_ / "tables");
    std::ofstream ampacity(folder_ / "tables" / "AMP_CU_AWG_NEC.csv");
    std::ofstream impedance(folder_ / "tables" / "XL&R_CU_AWG_NEC.csv");
    ampacity << "SIZE,SIZE_DESC,60C,75C,90C\n";
    impedance << "SIZE,SIZE_DESC,PVC,AL,STEEL\n";
    for (int i = 1; i <= sizeCount; ++i) {
      const int size = i * 25;
      ampacity << size << "KCMIL," << size << " KCMIL," << i * 10 << ',' << i * 12 << ',' << i * 14 << '\n';
      impedance << size << "KCMIL," << size << " KCMIL,";
      if (i % 3 != 0) impedance << "0.15;" << 10.0 / i;
      impedance << ",0.15;1,0.18;1\n";
    }
    ampacity.close();
    impedance.close();
    const ImportReport report = importTables(fromUtf8(path()), {fromUtf8((folder_ / "tables").string())});
    if (!report.isDone()) std::abort();
    const std::wstring init = ZanOleDbHelper::FormatConnectString(fromUtf8(path()), L"", L"Mode=Read");
    if (connection.OpenFromInitializationString(init, false, true) < 0) std::abort();
  }
  ~Tables() {
    connection.Close();
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }
  [[nodiscard]] std::string path() const { return (folder_ / "tables.db").string(); }

  ZanOleDbConnection connection;

private:
  fs::path folder_;
};

Tables& sampleTables() {
  static Tables tables;
  return tables;
}

WireLookupInput inputOf(double fla) {
  WireLookupInput input;
  input.fla = fla;
  input.total = shownCurrent(fla * 1.25);
  input.overallFactor = 0.8;
  input.voltage = 460;
  input.phase = L"3";
  input.drop = DropFields{250, L"FT", 0.85, L"3"};
  input.cost = CostFields{0.08, L"$"};
  return input;
}

void lookUp(benchmark::State& state) {
  const ZanWireTableReader reader(&sampleTables().connection);
  const WireLookupInput input = inputOf(52);
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(computeWires(readWireFigures(reader, choice), input));
}

/// Compares as the imported tables' own rule does, which a foreign connection does not know.
int compareNoCase(void*, int leftSize, const void* left, int rightSize, const void* right) {
  return sqlite3_strnicmp(
             static_cast<const char*>(left), static_cast<const char*>(right), std::min(leftSize, rightSize))
             ? 1
             : leftSize - rightSize;
}

/// Runs a statement, prepared for it, to its end; the texts of its first column.
std::vector<std::string> bareRows(sqlite3* database, const std::string& text) {
  std::vector<std::string> rows;
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(database, text.c_str(), -1, &statement, nullptr) != SQLITE_OK) std::abort();
  while (sqlite3_step(statement) == SQLITE_ROW) {
    const auto* cell = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
    rows.emplace_back(cell == nullptr ? "" : cell);
  }
  sqlite3_finalize(statement);
  return rows;
}

void bareStatements(benchmark::State& state) {
  sqlite3* database = nullptr;
  if (sqlite3_open_v2(sampleTables().path().c_str(), &database, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK)
    std::abort();
  sqlite3_create_collation(database, "KVNOCASE", SQLITE_UTF8, nullptr, compareNoCase);
  for ([[maybe_unused]] auto _ : state) {
    const std::vector<std::string> sizes = bareRows(
        database,
        "SELECT [SIZE_DESC], [75C] FROM [AMP_CU_AWG_NEC] WHERE [75C] IS NOT NULL ORDER BY [75C] ASC");
    for (const std::string& size : sizes) {
      const std::string key =
          bareRows(database, "SELECT [SIZE] FROM [AMP_CU_AWG_NEC] WHERE [SIZE_DESC]='" + size + "'").front();
      const std::string cell =
          bareRows(database, "SELECT [PVC] FROM [XL&R_CU_AWG_NEC] WHERE [SIZE]='" + key + "'").front();
      if (cell.empty())
        benchmark::DoNotOptimize(bareRows(database, "SELECT [SIZE],[PVC] FROM [XL&R_CU_AWG_NEC]"));
      benchmark::DoNotOptimize(cell);
    }
  }
  sqlite3_close(database);
}

/// One circuit of a list, its tables at hand.
void oneOfAList(benchmark::State& state) {
  const ZanWireTableReader reader(&sampleTables().connection);
  const WireTableFigures figures = readWireFigures(reader, choice);
  double fla = 1.0;
  for ([[maybe_unused]] auto _ : state) {
    fla = fla > 500.0 ? 1.0 : fla + 0.7;
    benchmark::DoNotOptimize(computeWires(figures, inputOf(fla)));
  }
  state.SetItemsProcessed(state.iterations());
}

} // namespace

BENCHMARK(lookUp)->Unit(benchmark::kMicrosecond);
BENCHMARK(bareStatements)->Unit(benchmark::kMicrosecond);
BENCHMARK(oneOfAList);

BENCHMARK_MAIN();
