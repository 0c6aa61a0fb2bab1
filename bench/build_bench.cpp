// Direct builds of 100, 1,000 and 10,000 markers. The time per marker must grow by at most 1.2 from the first to the
// last; the yardstick is LISP alone evaluating the same forms in the same run: the build may take twice as long. And
// the catalogue of a workbook with 200 circuit sheets, against a workbook that holds nothing else.
#include "build/driver.h"
#include "build/script_rows.h"
#include "host/lisp_calls.h"
#include "platform/workbook_book.h"
#include "simhost/host/session.h"
#include "simhost/ui/scripted_windows.h"
#include "tests/support/temporary_folder.h"
#include "text/encoding.h"
#include "text/numbers.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

namespace {

using namespace brenvolt;

constexpr int distinctCodes = 10;

/// What a form of a real sheet does: a symbol of a few lines with its text at the marker, and a wire to it.
constexpr std::wstring_view product = LR"lisp(
(define-block "ZAN_BV_MARKER_BLOCK" '(0 0) (lambda ()
  (draw-attribute-definition "CODE" '(0 0) "" 1.0)
  (draw-attribute-definition "ORDER" '(0 0) "" 1.0)
  (draw-attribute-definition "MISC1" '(0 0) "" 1.0)))
(define-block "CONTACTOR" '(0 0) (lambda ()
  (draw-line '(0 0) '(0 5)) (draw-circle '(0 7) 2.0) (draw-line '(0 9) '(0 14))
  (draw-attribute-definition "TAG1" '(3 7) "" 2.0) (draw-attribute-definition "RATING" '(3 4) "" 2.0)))
(defun place-symbol (name position scale tag)
  (let ((symbol (insert-block name position scale 0.0 "SYMBOLS" (list (cons "TAG1" tag) (cons "RATING" "40A")))))
    (entity-data-set! symbol "ORL_QN_BV_CIRCPARAMS" (string-append "AC;10;HP;" tag))
    (draw-line position (list (car position) (+ (cadr position) (* scale 20.0))) "WIRES")
    T))
(defun place-markers (count)
  (dotimes (i count)
    (insert-block "ZAN_BV_MARKER_BLOCK" (list (* 10.0 i) 0.0) 1.0 0.0 "0"
      (list (cons "CODE" (string-append "M" (number->string (rem i 10)))) (cons "ORDER" (number->string i))))))
(vz-korvo-defun 'place-symbol)
)lisp";

constexpr std::wstring_view form = L"(place-symbol \"CONTACTOR\" #xyz #scl \"K1\")";

/// The file in the benchmark's folder, which goes at the end.
std::wstring write(const char* name, const std::vector<BookSheet>& sheets) {
  static const test::TemporaryFolder folder;
  std::wstring file = fromUtf8((folder / name).string());
  if (saveWorkbook(file, sheets)) std::abort();
  return file;
}

BookSheet circuitSheet(const std::wstring& name) {
  BookSheet sheet;
  sheet.name = name;
  sheet.rows.push_back(
      {L"CODE", L"Title", L"X", L"Group", L"Option", L"Value", L"Option code", L"First", L"Second"});
  for (int code = 0; code < distinctCodes; ++code) {
    sheet.rows.push_back(
        {L"M" + formatInt(code), L"Contactor", L"x", L"Start", L"Direct", 1.0, 1.0, std::wstring(form)});
    sheet.rows.push_back({L"", L"", L"", L"", L"Wye", 2.0});
  }
  return sheet;
}

const std::wstring& workbook() {
  static const std::wstring file = write("circuit.xls", {circuitSheet(L"S")});
  return file;
}

/// A drawing with the markers of a template in it.
class MarkedDrawing final {
public:
  explicit MarkedDrawing(std::int64_t markers)
      : session_({}, windows_),
        document_(session_.openDocument(L"", std::make_unique<simhost::DrawingDatabase>())) {
    run(product);
    run(L"(place-markers " + formatInt(markers) + L")");
  }
  void run(std::wstring_view forms) { document_.interpreter().run(forms, L"bench"); }

private:
  simhost::ScriptedWindows windows_;
  simhost::Session session_;
  simhost::Document& document_;
};

void countPerMarker(benchmark::State& state) {
  state.counters["per_marker"] = benchmark::Counter(
      static_cast<double>(state.range(0)),
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void directBuild(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    auto drawing = std::make_unique<MarkedDrawing>(state.range(0));
    ZanBuildArgs args;
    args.workbook = workbook();
    args.worksheet = L"S";
    args.directBuild = true;
    state.ResumeTiming();
    CircuitContext circuit;
    AcceptedTables acceptedTables;
    std::int32_t lastMarkerId = 0;
    ZanBrenvolt build(std::move(args), {circuit, {acceptedTables, nullptr}, lastMarkerId});
    build.readBuildData();
    bool result = build.loadCatalog() && build.readMarkers();
    build.readPresets();
    result = result && build.prepare(BuildKind::direct);
    build.finish();
    if (!result) state.SkipWithError("the build failed");
    state.PauseTiming();
    drawing.reset();
    state.ResumeTiming();
  }
  countPerMarker(state);
}

/// The forms of the same markers as a LISP file would hold them.
void formsAlone(benchmark::State& state) {
  std::wstring forms = L"(setq #scl 1.0)\n";
  for (std::int64_t i = 0; i < state.range(0); ++i)
    forms += L"(place-symbol \"CONTACTOR\" (list " + formatInt(10 * i) + L".0 0.0) #scl \"K1\")\n";
  for (auto _ : state) {
    state.PauseTiming();
    auto drawing = std::make_unique<MarkedDrawing>(state.range(0));
    state.ResumeTiming();
    drawing->run(forms);
    state.PauseTiming();
    drawing.reset();
    state.ResumeTiming();
  }
  countPerMarker(state);
}

void readCatalogue(benchmark::State& state) {
  std::vector<BookSheet> sheets;
  BookSheet catalogue;
  catalogue.name = L"ZAN_CIRCS";
  catalogue.rows.push_back({L"Circuit", L"Type", L"Drawing", L"Worksheet", L"Presets"});
  for (int i = 0; i < 200; ++i)
    catalogue.rows.push_back(
        {L"Motor " + formatInt(i / 10), L"Type " + formatInt(i), L"t.json", L"S" + formatInt(i)});
  sheets.push_back(std::move(catalogue));
  for (std::int64_t i = 0; i < state.range(0); ++i)
    sheets.push_back(circuitSheet(L"S" + formatInt(i)));
  const std::wstring file = write("catalogue.xls", sheets);
  for (auto _ : state) {
    ZanCircuitCatalog catalog(file);
    if (!catalog.readCircuits()) state.SkipWithError("the catalogue cannot be read");
  }
}

BENCHMARK(directBuild)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(formsAlone)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(readCatalogue)->ArgName("circuit_sheets")->Arg(0)->Arg(200)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
