// The wire lookup of 60 sizes with voltage drop against the bare statements of the same lookup through the embedded
// database's own functions, and the circuits a second of a long list whose tables are read once.
#include "bench/imported_tables.h"
#include "bench/wire_bench_tables.h"
#include "data/wire_figures.h"
#include "platform/table_import.h"
#include "text/encoding.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string>

using namespace brenvolt;

namespace {

namespace fs = std::filesystem;

const WireTableChoice choice = {{L"CU", L"AWG", L"NEC"}, L"75C", L"PVC", {}};

/// A database with 60 sizes.
bench::ImportedTables& sampleTables() {
  static bench::ImportedTables tables(wirebench::writeSixtySizes);
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
  const ZanWireTableReader reader(&sampleTables().connection());
  const WireLookupInput input = inputOf(52);
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(computeWires(readWireFigures(reader, choice), input));
}

void bareStatements(benchmark::State& state) {
  wirebench::bareStatements(state, sampleTables().path());
}

/// One circuit of a list, its tables at hand.
void oneOfAList(benchmark::State& state) {
  const ZanWireTableReader reader(&sampleTables().connection());
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
