// Writing workbooks: what is written is read back by us and by others, what a file held stays in it, and a failure
// leaves the old file as it was.
#include "workbook_test_support.h"

#include "platform/ole2_container.h"
#include "platform/workbook_book.h"
#include "platform/workbook_writer.h"
#include "text/encoding.h"

#include <doctest/doctest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <sstream>

#include <sys/resource.h>
#include <sys/wait.h>

namespace fs = std::filesystem;
using namespace brenvolt;
using namespace brenvolt::testing;
using namespace workbook_test;

namespace {

using Texts = std::vector<std::wstring>;

Texts numbered(std::size_t count) {
  Texts names;
  for (std::size_t i = 1; i <= count; ++i) {
    names.push_back(std::to_wstring(i));
  }
  return names;
}

/// Texts around the places where a record ends, narrow and wide, and what people write into cells.
BookSheet mixedSheet() {
  BookSheet sheet{L"Größe Ω", {{L"TAG", L"DESC", L"AMPS"}}, BookSheet::Header::boldAndFrozen, {12.0, 40.0}};
  for (const std::size_t length : {1U, 254U, 255U, 256U, 4095U, 8190U, 8221U, 8222U, 8225U, 16444U, 32767U}) {
    sheet.rows.push_back(
        {std::wstring(length, L'x'), std::wstring(length, L'Ω'), static_cast<double>(length) / 8});
  }
  sheet.rows.push_back({});
  sheet.rows.push_back({L"line 1\nline 2", L"quote \" comma , tab \t", -1e300});
  sheet.rows.push_back({L"", L"😀 日本 é", 0.1});
  sheet.rows.push_back({L"0012", L"=A1+1", 1e-7});
  return sheet;
}

Cells expectedCells(const BookSheet& sheet) {
  Cells cells;
  for (std::size_t row = 0; row < sheet.rows.size(); ++row) {
    for (std::size_t column = 0; column < sheet.rows[row].size(); ++column) {
      const auto* text = std::get_if<std::wstring>(&sheet.rows[row][column]);
      if (text == nullptr || text->empty()) continue;
      cells.push_back(
          sheet.name + L"!" + std::to_wstring(row) + L"," + std::to_wstring(column) + L" text " + *text);
    }
  }
  return cells;
}

Cells withoutNumbers(Cells cells) {
  std::erase_if(cells, [](const std::wstring& cell) { return cell.find(L" number ") != std::wstring::npos; });
  return cells;
}

enum class Verdict { same, different, notInstalled };

/// What an independent program says about the cells that we read.
Verdict verdictOf(const char* judge, const TemporaryFolder& folder, const std::wstring& path) {
  std::ostringstream lines;
  WorkbookReader reader;
  REQUIRE(reader.open(path));
  for (std::size_t index = 0; index < reader.sheets().size(); ++index) {
    const auto sheet = reader.readSheet(index);
    REQUIRE(sheet);
    for (std::size_t row = 0; row < sheet->rowCount(); ++row) {
      for (std::size_t column = 0; column < sheet->columnCount(); ++column) {
        const WorkbookCell cell = sheet->cell(row, column);
        if (cell.kind == WorkbookCell::Kind::empty) continue;
        constexpr const char* kinds[] = {"empty", "text", "number", "boolean", "date", "error"};
        lines << index << '\t' << row << '\t' << column << '\t' << kinds[static_cast<std::size_t>(cell.kind)]
              << '\t' << nlohmann::json(toUtf8(cell.text)).dump() << '\n';
      }
    }
  }
  folder.write("cells.txt", lines.str());
  const std::string command = std::string("/usr/bin/python3 tests/platform/workbook_judges.py ") + judge +
                              " '" + toUtf8(path) + "' '" + (folder / "cells.txt").string() + "'";
  const int status = std::system(command.c_str());
  if (WIFEXITED(status) && (WEXITSTATUS(status) == 77 || WEXITSTATUS(status) == 127)) {
    MESSAGE("skipped: " << judge << " is not installed");
    return Verdict::notInstalled;
  }
  return status == 0 ? Verdict::same : Verdict::different;
}

/// The streams of a container but the workbook's own, by the names they have.
std::vector<std::pair<std::wstring, std::string>> otherStreams(const std::wstring& path) {
  Ole2Container container;
  REQUIRE(container.open(path));
  std::vector<std::pair<std::wstring, std::string>> streams;
  for (std::size_t i = 0; i < container.entries().size(); ++i) {
    const Ole2Entry& entry = container.entries()[i];
    if (entry.type != Ole2Entry::Type::stream || entry.name == L"Workbook") continue;
    const auto stream = container.openStream(i);
    REQUIRE(stream);
    std::string bytes(static_cast<std::size_t>(stream->size()), '\0');
    REQUIRE(stream->read(0, {reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size()}));
    streams.emplace_back(entry.name, std::move(bytes));
  }
  return streams;
}

/// The workbook's records that no appending may touch, sorted.
std::vector<std::string> lastingRecords(const std::wstring& path) {
  Ole2Container container;
  REQUIRE(container.open(path));
  const auto stream = container.openStream(*container.findRootStream(L"Workbook"));
  biff::ByteWindow window(*stream);
  biff::RecordWalk walk(window);
  std::vector<std::string> records;
  bool isInStrings = false;
  while (walk.next()) {
    using namespace biff;
    isInStrings = walk.id() == idSharedStrings || (isInStrings && walk.id() == idContinue);
    const auto moving = {idIndex,  idDbCell, idSharedStringIndex, idBoundSheet, idDimensions,
                         idTabIds, idSupBook};
    const bool isMoving = std::find(moving.begin(), moving.end(), walk.id()) != moving.end();
    if (isInStrings || isMoving || walk.id() == 0) continue;
    const auto body = walk.body();
    records.push_back(std::to_string(walk.id()) + ":" + std::string(body.begin(), body.end()));
  }
  std::sort(records.begin(), records.end());
  return records;
}

} // namespace

TEST_CASE("a new workbook reads back with the same cells, here and elsewhere") {
  TemporaryFolder folder;
  const std::wstring path = folder.name("new.xls");
  const BookSheet mixed = mixedSheet();
  BookSheet many{L"many", {}, BookSheet::Header::none, {}};
  // Enough for a sector table that no longer fits into the container's header.
  for (std::size_t row = 0; row < 250; ++row) {
    many.rows.push_back({std::to_wstring(row) + std::wstring(30000, L'z'), L"row " + std::to_wstring(row)});
  }
  REQUIRE_FALSE(saveWorkbook(path, {mixed, {L"empty", {}, BookSheet::Header::none, {}}, many}));
  CHECK(fs::file_size(folder / "new.xls") > 109 * 128 * 512);
  Cells expected = expectedCells(mixed);
  for (const std::wstring& cell : expectedCells(many)) {
    expected.push_back(cell);
  }
  CHECK((withoutNumbers(cellsOfFile(path)) == expected));
  WorkbookReader reader;
  REQUIRE(reader.open(path));
  const auto sheet = reader.readSheet(0);
  CHECK(sheet->number(11, 2) == 32767.0 / 8);
  CHECK(sheet->number(13, 2) == -1e300);

  many.rows.resize(5);
  REQUIRE_FALSE(saveWorkbook(path, {mixed, many}));
  CHECK(verdictOf("xlrd", folder, path) != Verdict::different);
  CHECK(verdictOf("ssconvert", folder, path) != Verdict::different);
}

TEST_CASE("what the format cannot hold is refused with its place") {
  struct Row {
    std::vector<BookSheet> sheets;
    const wchar_t* reason;
  };
  const auto named = [](const std::wstring& name) {
    return BookSheet{name, {}, BookSheet::Header::none, {}};
  };
  const auto withRow = [](BookRow row) { return BookSheet{L"S", {{L"a"}, std::move(row)}, {}, {}}; };
  BookSheet tall = named(L"tall");
  tall.rows.resize(65537);
  const Row rows[] = {
      {{}, L"a workbook needs a sheet"},
      {{named(L"")}, L"a sheet needs a name"},
      {{named(std::wstring(31, L's')), named(std::wstring(32, L's'))}, L"longer than 31 characters"},
      {{named(L"a/b")}, L"\"a/b\": [ ] : * ? / \\"},
      {{named(L"'a")}, L"apostrophe"},
      {{named(L"One"), named(L"ONE")}, L"\"ONE\" is there twice"},
      {{tall}, L"sheet \"tall\": a sheet has at most 65536 rows"},
      {{withRow(BookRow(257, L"x"))}, L"at most 256 columns"},
      {{withRow({L"", std::wstring(32768, L'x')})}, L"row 2, column 2: a cell has at most 32767"},
      {{withRow({HUGE_VAL})}, L"row 2, column 1: the number is not finite"},
  };
  for (const Row& row : rows) {
    std::wstring error;
    CHECK_FALSE(buildWorkbook(row.sheets, error));
    CAPTURE(toUtf8(error));
    CHECK(error.find(row.reason) != std::wstring::npos);
  }
}

TEST_CASE("a report is made, appended to, and read by independent programs") {
  TemporaryFolder folder;
  const std::wstring path = folder.name("report.xls");
  CDBClass made;
  REQUIRE(made.CreateDB(path, 1, L""));
  REQUIRE(made.AddTable(L"sheet1$", numbered(20), {}, {}, 1));
  // The name's case differs from the table's, and the row index addresses nothing.
  REQUIRE(made.AddRecords(L"Sheet1$", numbered(2), {L"Report", L"Pumpe Ω"}, 7));
  REQUIRE(made.AddRecords(L"Sheet1$", numbered(3), {L"x", L"", L"1.0"}, 7));
  CHECK_FALSE(made.AddRecords(L"Sheet1$", {L"21"}, {L"y"}, 0));
  CHECK(made.error() == path + L": sheet \"Sheet1\" has no column \"21\"");
  CHECK_FALSE(made.AddRecords(L"Sheet2$", {L"1"}, {L"y"}, 0));
  CHECK_FALSE(made.AddTable(L"SHEET1", {L"1"}, {}, {}, 1));
  CHECK_FALSE(fs::exists(folder / "report.xls"));
  REQUIRE(made.CloseDB());
  CHECK_FALSE(made.CloseDB());

  // The report names a file in the current folder by its bare name.
  const fs::path before = fs::current_path();
  fs::current_path(folder / ".");
  for (const wchar_t* text : {L"**END**", L"again"}) {
    CDBClass more;
    REQUIRE(more.OpenDB(L"report.xls", L""));
    REQUIRE(more.AddRecords(L"Sheet1$", {L"2", L"1"}, {L"second", text}, 0));
    REQUIRE(more.CloseDB());
  }
  fs::current_path(before);
  Cells cells = cellsOfFile(path);
  CHECK(cells.size() == 20 + 8);
  cells.erase(cells.begin(), cells.begin() + 20);
  const Cells expected = {
      L"sheet1!1,0 text Report", L"sheet1!1,1 text Pumpe Ω", L"sheet1!2,0 text x",
      L"sheet1!2,2 text 1.0",    L"sheet1!3,0 text **END**", L"sheet1!3,1 text second",
      L"sheet1!4,0 text again",  L"sheet1!4,1 text second",
  };
  CHECK(cells == expected);
  CHECK(verdictOf("xlrd", folder, path) != Verdict::different);
}

TEST_CASE("appending keeps all that a file of another program holds") {
  TemporaryFolder folder;
  for (const fs::path& file : foreignFiles()) {
    CAPTURE(file.filename().string());
    const std::wstring path = folder.name(file.filename().string());
    folder.write(file.filename().string(), bytesOf(file));
    const Cells before = cellsOfFile(path);
    CDBClass book;
    if (!book.OpenDB(path, L"")) {
      CHECK(book.error().find(L"is encrypted") != std::wstring::npos);
      CHECK(bytesOf(folder / file.filename().string()) == bytesOf(file));
      continue;
    }
    WorkbookReader reader;
    REQUIRE(reader.open(path));
    const std::wstring first = reader.sheets()[0].name;
    const auto sheet = reader.readSheet(0);
    const std::wstring heading = sheet->text(0, 0);
    const bool hasHeading = sheet->columnCount() > 0;
    CHECK(book.AddRecords(first + L"$", {heading}, {L"new Ω"}, 0) == hasHeading);
    REQUIRE(book.AddTable(L"added", {L"A", L"B"}, {}, {20}, 1));
    REQUIRE(book.AddRecords(L"ADDED", {L"B"}, {std::wstring(9000, L'y')}, 0));
    REQUIRE(book.CloseDB());

    Cells after = cellsOfFile(path);
    for (const std::wstring& cell : before) {
      CAPTURE(toUtf8(cell));
      CHECK(std::count(after.begin(), after.end(), cell) == 1);
    }
    CHECK(after.size() == before.size() + (hasHeading ? 4 : 3));
    CHECK(after.back() == L"added!1,1 text " + std::wstring(9000, L'y'));
    const std::wstring original = fromUtf8(file.string());
    CHECK((otherStreams(path) == otherStreams(original)));
    const auto kept = lastingRecords(path);
    const auto old = lastingRecords(original);
    CHECK(std::includes(kept.begin(), kept.end(), old.begin(), old.end()));
    CHECK(verdictOf("xlrd", folder, path) != Verdict::different);
  }
}

TEST_CASE("a file that cannot be written keeps its old content, and nothing is left beside it") {
  TemporaryFolder folder;
  const std::wstring path = folder.name("kept.xls");
  folder.write("kept.xls", "old");
  fs::create_directory(folder / "folder.xls");
  CDBClass book;
  CHECK_FALSE(book.CreateDB(folder.name("folder.xls"), 1, L""));
  CHECK(book.error() == folder.name("folder.xls") + L": is a folder");
  CHECK_FALSE(book.CreateDB(folder.name("none/x.xls"), 1, L""));
  CHECK(book.error().find(L"none/x.xls: its folder cannot be written") != std::wstring::npos);
  CHECK_FALSE(book.CreateDB(path, 2, L""));
  CHECK_FALSE(book.CreateDB(path, 1, L"secret"));
  CHECK_FALSE(book.OpenDB(path, L""));
  CHECK_FALSE(book.AddTable(L"S", {L"A"}, {}, {}, 1));

  REQUIRE(book.CreateDB(path, 1, L""));
  CHECK_FALSE(book.CloseDB());
  REQUIRE(book.CreateDB(path, 1, L""));
  REQUIRE(book.AddTable(L"S", {L"A"}, {}, {}, 1));
  // A disk that fills up in the middle of the file.
  rlimit old{};
  getrlimit(RLIMIT_FSIZE, &old);
  std::signal(SIGXFSZ, SIG_IGN);
  const rlimit small{1000, old.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  const bool isClosed = book.CloseDB();
  setrlimit(RLIMIT_FSIZE, &old);
  CHECK_FALSE(isClosed);
  CHECK(book.error().find(L"kept.xls: cannot be written") != std::wstring::npos);
  CHECK(bytesOf(folder / "kept.xls") == "old");
  CHECK(folder.names().size() == 2);
}

TEST_CASE("a file that another program changed meanwhile is not overwritten") {
  TemporaryFolder folder;
  const std::wstring path = folder.name("shared.xls");
  REQUIRE_FALSE(saveWorkbook(path, {{L"S", {{L"A"}}, BookSheet::Header::none, {}}}));
  CDBClass book;
  REQUIRE(book.OpenDB(path, L""));
  REQUIRE(book.AddRecords(L"s", {L"a"}, {L"mine"}, 0));
  REQUIRE_FALSE(saveWorkbook(path, {{L"S", {{L"A"}, {L"theirs"}}, BookSheet::Header::none, {}}}));
  CHECK_FALSE(book.CloseDB());
  CHECK(cellsOfFile(path) == Cells{L"S!0,0 text A", L"S!1,0 text theirs"});
}

TEST_CASE("a full sheet takes no further row") {
  TemporaryFolder folder;
  CDBClass book;
  REQUIRE(book.CreateDB(folder.name("full.xls"), 1, L""));
  REQUIRE(book.AddTable(L"S", {L"A"}, {}, {}, 1));
  bool isTaken = true;
  for (int row = 1; row < 65536 && isTaken; ++row) {
    isTaken = book.AddRecords(L"S", {L"A"}, {L"x"}, row);
  }
  CHECK(isTaken);
  CHECK_FALSE(book.AddRecords(L"S", {L"A"}, {L"x"}, 0));
  CHECK(book.error().find(L"sheet \"S\": a sheet has at most 65536 rows") != std::wstring::npos);
  REQUIRE(book.CloseDB());
  REQUIRE(book.OpenDB(folder.name("full.xls"), L""));
  CHECK_FALSE(book.AddRecords(L"S", {L"A"}, {L"x"}, 0));
}
