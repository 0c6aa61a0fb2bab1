// Undo of ten records in drawings of different sizes: the times must not grow with the drawing.
#include "simhost/drawing/drawing_database.h"

#include <benchmark/benchmark.h>

namespace {

using namespace simhost;

constexpr int records = 10;

Entity lineAt(double x) {
  return {Line{{x, 0.0, 0.0}, {x, 10.0, 0.0}}};
}

/// Each record draws, changes and erases something in the middle of the drawing.
void undoTenRecords(benchmark::State& state) {
  DrawingDatabase drawing;
  const KvDbHandle space = drawing.modelSpace();
  std::vector<KvDbHandle> handles;
  for (std::int64_t index = 0; index < state.range(0); ++index) {
    handles.push_back(drawing.addEntity(space, lineAt(static_cast<double>(index))));
  }
  UndoLog& log = drawing.undoLog();
  for (std::size_t record = 0; record < records; ++record) {
    const UndoGroup group(log);
    drawing.addEntity(space, lineAt(-1.0));
    const std::size_t middle = handles.size() / 2 + 2 * record;
    drawing.changeEntity(handles[middle], lineAt(-2.0));
    drawing.eraseEntity(handles[middle + 1]);
  }
  for ([[maybe_unused]] auto _ : state) {
    if (log.undo(records) != 0) state.SkipWithError("undo was refused");
    state.PauseTiming();
    if (log.redo(records) != 0) state.SkipWithError("redo was refused");
    state.ResumeTiming();
  }
}

} // namespace

BENCHMARK(undoTenRecords)->Arg(100)->Arg(10'000)->Arg(100'000);

BENCHMARK_MAIN();
