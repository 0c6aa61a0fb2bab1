// The yardsticks of set_bench.sh: bare direct builds of a list's rows in one process, each in a drawing of its own, as
// LISP would run them, and nothing else; or drawings that are read, and nothing else. Prints the seconds.
//   set_direct LIST SITE
//   set_direct DRAWING.json...
#include "circuits/building/circuit_parts.h"
#include "circuits/building/row_configurations.h"
#include "circuits/set/set_list.h"
#include "circuits/set/type_rules.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/ui/scripted_windows.h"
#include "text/encoding.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

int readDrawings(int count, char** words) {
  const auto start = Clock::now();
  for (int place = 1; place < count; ++place)
    if (simhost::loadDrawing(brenvolt::fromUtf8(words[place])).drawing == nullptr) return 1;
  std::printf("%d drawings read: %.2f s\n", count - 1, secondsSince(start));
  return 0;
}

} // namespace

int main(int count, char** words) {
  if (count < 2) return 1;
  if (std::string(words[1]).ends_with(".json")) return readDrawings(count, words);
  if (count != 3) return 1;
  try {
    const std::string site = words[2];
    circuits::SetSettings settings;
    settings.site = site;
    settings.workbook = std::filesystem::absolute(site + "/zan_brenvolt.xls").string();
    circuits::SetList list = circuits::readSetList(words[1], {});
    const std::vector<circuits::SetCircuit> rows = circuits::resolveRows(settings, list);
    const circuits::ConfigurationFolder configurations(
        std::filesystem::temp_directory_path() / ("set_direct-" + std::to_string(::getpid())),
        settings.workbook);
    simhost::ScriptedWindows windows({}, "a build without questions");
    simhost::SiteRun run(
        {site, {}, {}, {}, {}, simhost::SiteRunOptions::UnnamedSettings::memory, {}}, windows);
    circuits::refuseForeignTables(run.session());
    const auto start = Clock::now();
    for (const circuits::SetCircuit& row : rows) {
      run.openDrawing({});
      if (run.run(circuits::buildForm(row, configurations.workbookFor(row), {}), L"bench").isNil()) return 1;
    }
    const double seconds = secondsSince(start);
    std::printf(
        "%zu direct builds in one process: %.2f s, %.1f a second\n", rows.size(), seconds,
        static_cast<double>(rows.size()) / seconds);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "set_direct: %s\n", error.what());
    return 1;
  }
}
