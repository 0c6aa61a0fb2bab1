// Reading a workbook of 20,000 rows by 12 columns, as a whole process with its peak memory, beside the independent
// readers that are installed; and one sheet of a workbook of 200, which must not pay for the other 199.
#include "platform/workbook_book.h"
#include "platform/xls_reader.h"
#include "tests/support/temporary_folder.h"
#include "text/encoding.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;
using namespace brenvolt;

namespace {

constexpr std::size_t largeRows = 20000;
constexpr std::size_t largeColumns = 12;
constexpr std::size_t sheetCount = 200;
constexpr std::size_t rowsOfOneSheet = 200;
constexpr int notInstalled = 127;

/// Texts that differ, texts that repeat, and numbers.
BookSheet makeSheet(const std::wstring& name, std::size_t rowCount) {
  BookSheet sheet{name, {}, BookSheet::Header::none, {}};
  for (std::size_t row = 0; row < rowCount; ++row) {
    BookRow cells;
    for (std::size_t column = 0; column < largeColumns; ++column) {
      const std::wstring number = std::to_wstring(column % 3 == 0 ? row : row * column % 97);
      if (column % 3 == 2) {
        cells.emplace_back(static_cast<double>(row) * 1.25 + static_cast<double>(column));
      } else {
        cells.emplace_back(name + (column % 3 == 0 ? L" part no. " : L" type ") + number);
      }
    }
    sheet.rows.push_back(std::move(cells));
  }
  return sheet;
}

/// Every text of a sheet, as a caller that copies the table would ask for them.
std::size_t readTexts(const WorkbookSheet& sheet) {
  std::size_t characters = 0;
  for (std::size_t row = 0; row < sheet.rowCount(); ++row) {
    for (std::size_t column = 0; column < sheet.columnCount(); ++column) {
      characters += sheet.text(row, column).size();
    }
  }
  return characters;
}

std::size_t readWorkbook(const std::wstring& path, std::size_t sheets) {
  WorkbookReader reader;
  if (!reader.open(path)) return 0;
  std::size_t characters = 0;
  for (std::size_t i = 0; i < sheets && i < reader.sheets().size(); ++i) {
    if (const auto sheet = reader.readSheet(i)) characters += readTexts(*sheet);
  }
  return characters;
}

void readSheets(benchmark::State& state, const std::wstring& path, std::size_t sheets) {
  for ([[maybe_unused]] auto _ : state) {
    const std::size_t characters = readWorkbook(path, sheets);
    if (characters == 0) state.SkipWithError("the workbook cannot be read");
    benchmark::DoNotOptimize(characters);
  }
}

/// One run of another program, with its peak memory in megabytes.
void runProcess(benchmark::State& state, const std::string& command) {
  double peakMegabytes = 0.0;
  for ([[maybe_unused]] auto _ : state) {
    const pid_t child = ::fork();
    if (child == 0) {
      ::execl("/bin/sh", "sh", "-c", ("exec " + command + " >/dev/null 2>&1").c_str(), nullptr);
      ::_exit(notInstalled);
    }
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    if (status != 0) {
      state.SkipWithError("not installed");
      return;
    }
    peakMegabytes = static_cast<double>(usage.ru_maxrss) / 1024.0;
  }
  state.counters["peak_MB"] = peakMegabytes;
}

bool makeWorkbooks(const fs::path& large, const fs::path& many) {
  std::vector<BookSheet> sheets;
  for (std::size_t i = 0; i < sheetCount; ++i) {
    sheets.push_back(makeSheet(L"sheet " + std::to_wstring(i), rowsOfOneSheet));
  }
  return !saveWorkbook(fromUtf8(large.string()), {makeSheet(L"parts", largeRows)}) &&
         !saveWorkbook(fromUtf8(many.string()), sheets);
}

/// A process inherits its parent's peak, so the measuring one stays small: a child makes the files.
bool makeWorkbooksInChild(const fs::path& large, const fs::path& many) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(makeWorkbooks(large, many) ? EXIT_SUCCESS : EXIT_FAILURE);
  int status = 0;
  ::waitpid(child, &status, 0);
  return status == 0;
}

std::string quoted(const fs::path& path) {
  return "'" + path.string() + "'";
}

} // namespace

int main(int argc, char** argv) {
  // The child of our own whole-process measurement.
  if (argc == 3 && std::string_view(argv[1]) == "--read") {
    return readWorkbook(fromUtf8(argv[2]), 1) > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
  }
  const brenvolt::test::TemporaryFolder folder;
  const fs::path large = folder / "large.xls";
  const fs::path many = folder / "many.xls";
  if (!makeWorkbooksInChild(large, many)) {
    std::fputs("the workbooks to read cannot be written\n", stderr);
    return EXIT_FAILURE;
  }

  const auto process = [](const char* name, const std::string& command) {
    benchmark::RegisterBenchmark(name, [command](benchmark::State& state) { runProcess(state, command); })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
  };
  const auto inside = [](const char* name, const fs::path& path, std::size_t count) {
    benchmark::RegisterBenchmark(name, [path = fromUtf8(path.string()), count](benchmark::State& state) {
      readSheets(state, path, count);
    })->Unit(benchmark::kMillisecond);
  };
  process("process/ours", quoted(fs::read_symlink("/proc/self/exe")) + " --read " + quoted(large));
  process(
      "process/xlrd",
      "/usr/bin/python3 -c 'import sys, xlrd; xlrd.open_workbook(sys.argv[1])' " + quoted(large));
  process("process/ssconvert", "ssconvert " + quoted(large) + " " + quoted(folder / "large.csv"));
  process("process/xls2csv", "xls2csv " + quoted(large));
  inside("inside/20000x12", large, 1);
  inside("inside/one_sheet_of_200", many, 1);
  inside("inside/all_of_200_sheets", many, sheetCount);

  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return EXIT_SUCCESS;
}
