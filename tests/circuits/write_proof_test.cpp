// Programs that are killed while they write: whatever file it is, the old or the whole new one is there afterwards, a write
// that was reported as done is not lost, and the leftovers stop nobody. BRENVOLT_PROVE=1 kills 1,000 times for each kind of
// file and prints what was found.
#include "circuits/reports/report_files.h"
#include "platform/table_import.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/drawing/svg.h"
#include "simhost/host/command_line.h"
#include "simhost/host/files.h"
#include "simhost/host/user_settings.h"
#include "simhost/site/session_log.h"
#include "table_test_support.h"
#include "tests/circuits/plant.h"
#include "tests/support/golden.h"
#include "tests/support/processes.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <thread>

#include <sys/mman.h>

using namespace brenvolt;
namespace fs = std::filesystem;

namespace {

struct Progress {
  volatile int begun;
  volatile int done;
};

std::wstring wide(const fs::path& file) {
  return fromUtf8(file.string());
}

std::unique_ptr<circuits::testing::Plant> plantOf(int number) {
  auto plant = std::make_unique<circuits::testing::Plant>();
  for (int wire = 0; wire < 50; ++wire)
    plant->wire(0, wire, number, wire);
  return plant;
}

circuits::Report reportOf(int number) {
  circuits::Report report{L"Parts", {{"tags", L"Tags"}}};
  report.rows.assign(200, {std::to_wstring(number)});
  return report;
}

/// Tables with the number in each row; into a new database, or in place of those of a database.
bool import(const fs::path& database, int number) {
  const fs::path folder = database.string() + "-tables";
  fs::create_directories(folder);
  std::string rows = "SIZE\n";
  for (int row = 0; row < 200; ++row)
    rows += std::to_string(number) + "\n";
  test::writeBytes(folder / "AMP.csv", rows);
  ImportOptions options;
  options.existing = ExistingTables::replace;
  const bool isDone = importTables(wide(database), {wide(folder)}, options).isDone();
  fs::remove_all(folder);
  return isDone;
}

std::string numbersIn(const fs::path& database) {
  if (!fs::exists(database)) return "";
  return testing::shown(
      testing::rowsOf(*testing::opened(wide(database)), L"SELECT SIZE, COUNT(*) FROM [AMP] GROUP BY SIZE"));
}

struct FileKind {
  const char* file;
  bool (*write)(const fs::path& file, int number);
  std::string (*read)(const fs::path& file) = [](const fs::path& path) { return test::bytesOf(path); };
};

const FileKind kinds[] = {
    {"drawing.json", [](const fs::path& file,
                        int number) { return !simhost::saveDrawing(plantOf(number)->drawing, wide(file)); }},
    {"picture.svg", [](const fs::path& file,
                       int number) { return !simhost::saveSvg(plantOf(number)->drawing, wide(file)); }},
    {"workbook.xls",
     [](const fs::path& file, int number) { return !circuits::writeWorkbook(reportOf(number), wide(file)); }},
    {"report.csv",
     [](const fs::path& file, int number) {
       return simhost::replaceFile(file, circuits::reportText(reportOf(number), circuits::ReportFormat::csv))
           .empty();
     }},
    {"settings.json",
     [](const fs::path& file, int number) {
       simhost::CommandLine commandLine;
       return simhost::UserSettings(file, commandLine).setValue(L"Dialog", L"Last", std::to_wstring(number));
     }},
    {"session.json",
     [](const fs::path& file, int number) {
       simhost::SessionLog(file, {}, [number](const simhost::SessionRun&) {
         return std::string(20'000, 'r') + std::to_string(number);
       }).write();
       return true;
     }},
    {"new.db",
     [](const fs::path& file, int number) {
       fs::remove(file);
       return import(file, number);
     },
     numbersIn},
    {"changed.db", import, numbersIn},
};

void killWriters(const FileKind& kind, int kills) {
  CAPTURE(std::string(kind.file));
  using Clock = std::chrono::steady_clock;
  const test::TemporaryFolder folder;
  const test::TemporaryFolder judge;
  const fs::path file = folder / kind.file;
  const auto contentOf = [&](int number) {
    REQUIRE(kind.write(judge / kind.file, number));
    return kind.read(judge / kind.file);
  };
  const auto begin = Clock::now();
  std::string before = contentOf(0);
  const long micros = (Clock::now() - begin) / std::chrono::microseconds(1);
  REQUIRE(kind.write(file, 0));
  void* const shared =
      ::mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  REQUIRE(shared != MAP_FAILED);
  auto* const progress = static_cast<Progress*>(shared);
  std::minstd_rand numbers(11);
  int next = 1;
  int inWrite = 0;
  int broken = 0;
  for (int kill = 0; kill < kills; ++kill) {
    progress->begun = -1;
    progress->done = -1;
    const pid_t writer = test::startProcess([&]() -> int {
      for (int number = next;; ++number) {
        progress->begun = number;
        if (!kind.write(file, number)) return 1;
        progress->done = number;
      }
    });
    std::this_thread::sleep_for(
        std::chrono::microseconds(numbers() % static_cast<unsigned>(3 * micros + 1000)));
    ::kill(writer, SIGKILL);
    CHECK(test::waitFor(writer) == -1);
    inWrite += progress->begun > progress->done ? 1 : 0;
    const std::string found = kind.read(file);
    const std::string old = progress->done < 0 ? before : contentOf(progress->done);
    const std::string whole = progress->begun < 0 ? before : contentOf(progress->begun);
    // A new database is made where none is.
    const bool isNone = found.empty() && kind.file == std::string("new.db") && !fs::exists(file);
    if (found != old && found != whole && !isNone) ++broken;
    next = std::max(progress->begun + 1, next);
    before = found;
  }
  CHECK(broken == 0);
  CHECK(kind.write(file, next));
  CHECK(kind.read(file) == contentOf(next));
  fs::remove_all(file.string() + "-tables");
  const auto names = std::distance(fs::directory_iterator(folder.path()), {});
  CHECK(names == 1);
  ::munmap(shared, sizeof(Progress));
  if (std::getenv("BRENVOLT_PROVE") != nullptr)
    std::printf(
        "%s: %d kills, %d of them within a write: %d broken files\n", kind.file, kills, inWrite, broken);
}

} // namespace

TEST_CASE("a program that is killed while it writes leaves the old or the new file, of every kind") {
  for (const FileKind& kind : kinds)
    killWriters(kind, std::getenv("BRENVOLT_PROVE") != nullptr ? 1000 : 12);
}
