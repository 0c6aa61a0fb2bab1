// Sheets of a workbook from short texts, one line a row with "|" between the cells.
#pragma once

#include "platform/workbook_book.h"
#include "text/encoding.h"
#include "text/split.h"

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt::test {

[[nodiscard]] inline std::vector<std::wstring> cellsOf(std::string_view line) {
  return splitKeepingEmpty(fromUtf8(line), L'|');
}

/// The first line is the header.
[[nodiscard]] inline BookSheet sheetOf(std::wstring name, const std::vector<std::string>& lines) {
  BookSheet sheet;
  sheet.name = std::move(name);
  for (const std::string& line : lines) {
    BookRow row;
    for (std::wstring& cell : cellsOf(line))
      row.emplace_back(std::move(cell));
    sheet.rows.push_back(std::move(row));
  }
  return sheet;
}

/// The path that it was written to.
inline std::wstring writeBook(const std::filesystem::path& file, const std::vector<BookSheet>& sheets) {
  std::wstring path = fromUtf8(file.string());
  if (const auto problem = saveWorkbook(path, sheets)) throw std::runtime_error(toUtf8(*problem));
  return path;
}

} // namespace brenvolt::test
