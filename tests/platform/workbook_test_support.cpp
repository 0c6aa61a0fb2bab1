#include "workbook_test_support.h"

#include "platform/biff_writer.h"
#include "platform/little_endian.h"
#include "platform/ole2_writer.h"
#include "platform/workbook_book.h"

#include <doctest/doctest.h>

#include <algorithm>

namespace workbook_test {

namespace fs = std::filesystem;
using namespace brenvolt;

std::optional<fs::path> foreignFolder() {
  if (auto folder = testing::foreignFile("xls")) return folder;
  MESSAGE("skipped: no folder of foreign workbooks beside the project");
  return std::nullopt;
}

std::vector<fs::path> foreignFiles() {
  std::vector<fs::path> files;
  if (const auto folder = foreignFolder()) {
    for (const auto& entry : fs::directory_iterator(*folder)) {
      if (entry.path().extension() == ".xls") files.push_back(entry.path());
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

Cells cellsOf(const WorkbookSheet& sheet) {
  Cells cells;
  for (std::size_t row = 0; row < sheet.rowCount(); ++row) {
    for (std::size_t column = 0; column < sheet.columnCount(); ++column) {
      const WorkbookCell cell = sheet.cell(row, column);
      if (cell.kind == WorkbookCell::Kind::empty) continue;
      constexpr const wchar_t* kinds[] = {L"empty", L"text", L"number", L"boolean", L"date", L"error"};
      cells.push_back(
          sheet.name() + L"!" + std::to_wstring(row) + L"," + std::to_wstring(column) + L" " +
          kinds[static_cast<std::size_t>(cell.kind)] + L" " + cell.text);
    }
  }
  return cells;
}

Cells cellsOfFile(const std::wstring& path) {
  WorkbookReader reader;
  if (!reader.open(path)) return {reader.error()};
  Cells cells;
  for (std::size_t i = 0; i < reader.sheets().size(); ++i) {
    const auto sheet = reader.readSheet(i);
    if (!sheet) return {reader.error()};
    const Cells more = cellsOf(*sheet);
    cells.insert(cells.end(), more.begin(), more.end());
  }
  return cells;
}

RecordStream& RecordStream::begin(std::uint16_t substream, std::uint16_t version) {
  return record(biff::idBegin, words({version, substream, 0, 0, 0, 0, 0, 0}));
}

RecordStream& RecordStream::record(std::uint16_t id, const std::string& body) {
  biff::appendRecord(bytes_, id, body);
  return *this;
}

RecordStream& RecordStream::listSheet(const std::string& shortName) {
  placeFields_.push_back(bytes_.size() + biff::headerBytes);
  return record(biff::idBoundSheet, words({0, 0, 0}) + shortName);
}

RecordStream& RecordStream::startSheet(std::uint16_t version) {
  patchLe32(bytes_, placeFields_.at(startedSheets_++), static_cast<std::uint32_t>(bytes_.size()));
  return begin(0x0010, version);
}

std::string RecordStream::container(const std::wstring& streamName) const {
  return buildOle2(singleStreamItems(streamName, biff::padWorkbookStream(bytes_)));
}

std::string words(std::initializer_list<unsigned> values) {
  std::string bytes;
  for (const unsigned value : values) {
    appendLe16(bytes, value);
  }
  return bytes;
}

std::string doubleBytes(double value) {
  std::string bytes;
  appendLeDouble(bytes, value);
  return bytes;
}

} // namespace workbook_test
