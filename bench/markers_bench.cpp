// Circuits of 100, 1,000 and 10,000 markers: the time per marker must not grow with their number, neither for putting
// them in order and finding them again nor for telling scripts which one is at work.
#include "drawing/marker_data.h"
#include "drawing/marker_tree.h"
#include "simhost/drawing/drawing_database.h"
#include "simhost/host/session.h"
#include "simhost/ui/scripted_windows.h"
#include "text/numbers.h"

#include <benchmark/benchmark.h>

#include <memory>

namespace {

using namespace brenvolt;

/// Every tenth marker has the same code, so that ordinals have much to count.
void fill(ZanDwgMarkerList& list, std::int64_t count) {
  for (std::int64_t number = 0; number < count; ++number) {
    ZanDwgMarker marker;
    marker.code = L"CODE-" + formatInt(number % 10);
    marker.order = formatInt(count - number);
    marker.handle = KvDbHandle(static_cast<std::uint64_t>(number + 1));
    marker.level = 1;
    list.Insert(std::move(marker));
  }
  list.Finish();
}

void countPerMarker(benchmark::State& state) {
  state.counters["per_marker"] = benchmark::Counter(
      static_cast<double>(state.range(0)),
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void orderAndFind(benchmark::State& state) {
  for (auto _ : state) {
    ZanDwgMarkerList list;
    fill(list, state.range(0));
    for (const ZanDwgMarker& marker : list.markers())
      benchmark::DoNotOptimize(list.findById(marker.id));
  }
  countPerMarker(state);
}

void tellScripts(benchmark::State& state) {
  simhost::ScriptedWindows windows;
  simhost::Session session({}, windows);
  session.openDocument(L"", std::make_unique<simhost::DrawingDatabase>());
  ZanDwgMarkerList list;
  fill(list, state.range(0));
  for (auto _ : state) {
    if (!PublishMarkerData(list)) state.SkipWithError("the symbol is not set");
    for (std::int32_t index = 0; index < state.range(0); ++index)
      if (!SetMarkerData(index, {1, 20})) state.SkipWithError("the symbol is not changed");
  }
  countPerMarker(state);
}

BENCHMARK(orderAndFind)->Arg(100)->Arg(1000)->Arg(10000);
BENCHMARK(tellScripts)->Arg(100)->Arg(1000)->Arg(10000);

} // namespace

BENCHMARK_MAIN();
