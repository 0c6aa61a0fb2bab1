// A new workbook (.xls) from plain sheets of cells.
#pragma once

#include "platform/biff_writer.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// One sheet to write. A row may be shorter than others.
struct BookSheet {
  enum class Header { none, bold, boldAndFrozen };

  std::wstring name;
  std::vector<BookRow> rows;
  /// The format of the first row; frozen, it stays visible while the rest scrolls.
  Header header = Header::none;
  /// In characters of the default font, by column; columns beyond are made as wide as their texts need.
  std::vector<double> columnWidths;
};

/// The bytes of a workbook with these sheets; nothing when the format does not allow them, see `error` (an invalid or
/// repeated sheet name, too many rows or columns, a text too long, no sheet at all).
[[nodiscard]] std::optional<std::string> buildWorkbook(
    const std::vector<BookSheet>& sheets, std::wstring& error);

/// `buildWorkbook`, written to `path`. Returns a message with the file's name on a failure; an old file is then kept.
[[nodiscard]] std::optional<std::wstring> saveWorkbook(
    std::wstring_view path, const std::vector<BookSheet>& sheets);

namespace biff {

/// The problem of these sheets.
[[nodiscard]] std::optional<std::wstring> sheetProblem(const BookSheet& sheet);

/// The cell formats of the workbook that contains a sheet.
struct CellFormats {
  unsigned plain = 15;
  unsigned header = 16;
};
enum class Selection { selected, unselected };
/// The records of one sheet, from its first to its last.
[[nodiscard]] std::string sheetRecords(
    const BookSheet& sheet, const CellFormats& formats, Selection selection, SharedStringsWriter& strings);

/// The body of the record that lists a sheet; its first four bytes are the sheet's place, to be filled in.
[[nodiscard]] std::string boundSheetBody(std::wstring_view name);

/// A workbook's stream as the container's file. Padded so that every reader finds it among the large streams.
[[nodiscard]] std::string padWorkbookStream(std::string stream);

} // namespace biff

} // namespace brenvolt
