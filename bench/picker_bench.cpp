// A filter change of the motor picker over 20,000 rows, from the query to the last cell of a grid without a screen,
// against the same statement through the embedded database's own functions. It has to stay below 100 ms.
#include "bench/imported_tables.h"
#include "bench/no_screen.h"
#include "flows/rating_grid.h"
#include "simhost/host/session.h"
#include "simhost/ui/grid_model.h"
#include "simhost/ui/scripted_windows.h"
#include "text/encoding.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

namespace {

using namespace brenvolt;
namespace fs = std::filesystem;

constexpr int rowCount = 20000;
constexpr const char* columns =
    "[Load], [Units], [Phase], [Frequency (HZ)], [Speed (RPM)], [FLA (A)], [Description]";

void writeMotors(const fs::path& folder) {
  std::ofstream table(folder / "MOTOR_NEC.csv");
  table << "ID,Type,Load,Units,Voltage (V),Phase,Frequency (HZ),Speed (RPM),FLA (A),Description\n";
  for (int id = 1; id <= rowCount; ++id)
    table << id << ',' << (id % 10 == 0 ? "Synchronous" : "Induction") << ',' << id % 500 << ",HP,"
          << (id % 2 == 0 ? "460" : "230") << ",3,60,1800," << id % 600 << ".5,motor number " << id << '\n';
}

/// The table, and a host whose LISP names the code standard.
class Motors final {
public:
  Motors() : session_({}, windows_), imported_(writeMotors, bench::TableAccess::write) {
    session_.openDocument(L"", std::make_unique<simhost::DrawingDatabase>())
        .interpreter()
        .run(L"(setq GBL_qn_electcodestd \"NEC\")", L"bench");
  }

  [[nodiscard]] std::string path() const { return imported_.path(); }
  [[nodiscard]] ZanOleDbConnection& connection() { return imported_.connection(); }

private:
  simhost::ScriptedWindows windows_;
  simhost::Session session_;
  bench::ImportedTables imported_;
};

/// `state.range(0)`: 1 fixes type and voltage to a half and nine tenths of the rows, 0 shows all rows.
void filterChange(benchmark::State& state) {
  Motors motors;
  const ZanDlgMotorSelectDbService service(&motors.connection());
  CKvUiDialog dialog(L"ZanDlgMotorSelect", nullptr);
  constexpr const char* form =
      R"({"format": "brenvolt-form", "version": 1, "title": "", "controls": [{"role": "grid", "kind": "grid"}]})";
  bench::NoScreen screen(simhost::parseForm(form, "ZanDlgMotorSelect", "bench"), dialog);
  auto* grid = dynamic_cast<KvUiGrid*>(screen.control(L"grid"));
  RatingGrid rows(motorPicker(), service, *grid);
  if (state.range(0) == 1) {
    rows.fix(motorTable().columnOf(Rating::type), L"Induction");
    rows.fix(motorTable().columnOf(Rating::voltage), L"230");
  }
  for (auto _ : state)
    rows.show([](std::wstring_view name) { return std::wstring(name); });
  state.counters["rows"] = grid->RowCount();
}
BENCHMARK(filterChange)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void bareStatement(benchmark::State& state) {
  Motors motors;
  sqlite3* database = nullptr;
  sqlite3_open_v2(motors.path().c_str(), &database, SQLITE_OPEN_READONLY, nullptr);
  const std::string all = "SELECT [ID], [Type], [Voltage (V)], " + std::string(columns) + " FROM [MOTOR_NEC]";
  const std::string fixed =
      "SELECT [ID], " + std::string(columns) +
      " FROM [MOTOR_NEC] WHERE [Type]='Induction' COLLATE NOCASE AND [Voltage (V)]='230' COLLATE NOCASE";
  std::size_t characters = 0;
  for (auto _ : state) {
    sqlite3_stmt* statement = nullptr;
    const std::string& text = state.range(0) == 1 ? fixed : all;
    if (sqlite3_prepare_v2(database, text.c_str(), -1, &statement, nullptr) != SQLITE_OK) std::abort();
    while (sqlite3_step(statement) == SQLITE_ROW)
      for (int column = 0; column < sqlite3_column_count(statement); ++column)
        if (sqlite3_column_text(statement, column) != nullptr)
          characters += static_cast<std::size_t>(sqlite3_column_bytes(statement, column));
    sqlite3_finalize(statement);
  }
  benchmark::DoNotOptimize(characters);
  sqlite3_close(database);
}
BENCHMARK(bareStatement)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
