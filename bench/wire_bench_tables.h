// What the benchmarks of the wire lookup share: tables of 60 sizes, and the bare statements of one lookup on them
// through the embedded database's own functions, which are the yardstick.
#pragma once

#include "text/encoding.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace wirebench {

inline constexpr int sizeCount = 60;

/// Ampacities and impedances of 60 sizes, every third of them without an impedance of its own, as in sparse tables.
inline void writeSixtySizes(const std::filesystem::path& folder) {
  std::ofstream ampacity(folder / "AMP_CU_AWG_NEC.csv");
  std::ofstream impedance(folder / "XL&R_CU_AWG_NEC.csv");
  ampacity << "SIZE,SIZE_DESC,60C,75C,90C\n";
  impedance << "SIZE,SIZE_DESC,PVC,AL,STEEL\n";
  for (int i = 1; i <= sizeCount; ++i) {
    const int size = i * 25;
    ampacity << size << "KCMIL," << size << " KCMIL," << i * 10 << ',' << i * 12 << ',' << i * 14 << '\n';
    impedance << size << "KCMIL," << size << " KCMIL,";
    if (i % 3 != 0) impedance << "0.15;" << 10.0 / i;
    impedance << ",0.15;1,0.18;1\n";
  }
}

/// Compares as the imported tables' own rule does, which a foreign connection does not know.
inline int compareNoCase(void*, int leftSize, const void* left, int rightSize, const void* right) {
  return sqlite3_strnicmp(
             static_cast<const char*>(left), static_cast<const char*>(right), std::min(leftSize, rightSize))
             ? 1
             : leftSize - rightSize;
}

/// Runs a statement, prepared for it, to its end; the texts of its first column.
inline std::vector<std::string> bareRows(sqlite3* database, const std::string& text) {
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

/// One lookup of all sizes in the database file.
inline void bareStatements(benchmark::State& state, const std::string& file) {
  sqlite3* database = nullptr;
  if (sqlite3_open_v2(file.c_str(), &database, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) std::abort();
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

} // namespace wirebench
