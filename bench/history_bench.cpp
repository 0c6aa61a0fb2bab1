// A history file of 10,000 entries: load it, replace one, save it. The yardstick is the XML library alone, loading and
// saving the same file: at most 1.5 times its time.
#include "drawing/history.h"
#include "simhost/host/session.h"
#include "simhost/ui/scripted_windows.h"
#include "tests/support/temporary_folder.h"
#include "text/encoding.h"
#include "text/numbers.h"

#include <benchmark/benchmark.h>
#include <pugixml.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

using namespace brenvolt;
namespace fs = std::filesystem;

constexpr int entryCount = 10000;

void fillMarkers(ZanDwgMarkerList& list) {
  ZanDwgMarker marker;
  marker.code = L"MOTOR-1";
  marker.level = 1;
  marker.record.groups = {
      {L"Disconnect", {{L"Breaker", 1, true}}},
      {L"Starter", {{L"Contactor and overload", 10, true}}},
  };
  ZanAnnotationData part(rowname::catalog);
  for (const wchar_t* name : {L"MFG", L"CAT", L"ASSYCODE", L"RATING1"})
    part.AddText(L"ZB-3P-40A", name);
  marker.catalog.AddRow(part);
  ZanAnnotationData motor(rowname::motorSetup);
  for (const wchar_t* name :
       {L"Type", L"Load", L"Units", L"Voltage (V)", L"Phase", L"Frequency (Hz)", L"Speed (RPM)", L"FLA (A)",
        L"Multiplier"})
    motor.AddText(L"460", name);
  marker.controls.AddRow(motor);
  list.Insert(std::move(marker));
  list.Finish();
}

/// The folder of one file with all entries in one circuit type, the longest search for a name.
class HistoryFolder final {
public:
  HistoryFolder() {
    fillMarkers(markers);

    if (!save(0)) std::abort();
    std::ifstream in(file(), std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    const std::wstring text = fromUtf16Le(std::string_view(bytes).substr(2));
    const std::size_t start = text.find(L"<History ");
    const std::size_t end = text.find(L"</CircuitType>");
    const std::wstring entry = text.substr(start, end - start);
    const std::wstring name = L"Entry 0";
    std::wstring all = text.substr(0, end);
    for (int number = 1; number < entryCount; ++number) {
      const std::size_t at = entry.find(name);
      all += entry.substr(0, at) + L"Entry " + formatInt(number) + entry.substr(at + name.size());
    }
    all += text.substr(end);
    std::ofstream(file(), std::ios::binary) << "\xFF\xFE" << toUtf16Le(all);
  }

  [[nodiscard]] fs::path file() const { return folder_ / "zan_brenvolt.xml"; }
  bool save(int entry) {
    ZanXmlHistory history;
    history.context = fromUtf8((folder_ / "site.xls").string());
    return history.SaveHistory(
        {{L"Three-phase motor", L"Direct on line", L"Entry " + formatInt(entry)},
         L"",
         L"1.000000",
         L"1.000000"},
        markers);
  }

  ZanDwgMarkerList markers;

private:
  test::TemporaryFolder folder_;
};

HistoryFolder& folder() {
  static HistoryFolder made;
  return made;
}

void libraryAlone(benchmark::State& state) {
  const std::string file = folder().file().string();
  for (auto _ : state) {
    pugi::xml_document document;
    if (!document.load_file(file.c_str())) state.SkipWithError("the file does not load");
    if (!document.save_file(file.c_str(), "", pugi::format_raw, pugi::encoding_utf16_le))
      state.SkipWithError("the file is not saved");
  }
}

void replaceOneEntry(benchmark::State& state) {
  int entry = entryCount / 2;
  for (auto _ : state) {
    if (!folder().save(entry++ % entryCount)) state.SkipWithError("the history is not saved");
  }
}

BENCHMARK(libraryAlone)->Unit(benchmark::kMillisecond)->MinTime(3.0);
BENCHMARK(replaceOneEntry)->Unit(benchmark::kMillisecond)->MinTime(3.0);

} // namespace

int main(int argc, char** argv) {
  simhost::ScriptedWindows windows;
  simhost::Session session({}, windows);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
