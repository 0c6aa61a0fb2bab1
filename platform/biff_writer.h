// Writing the records of a workbook: texts, cells and rows, the shared string table, and the limits of the format.
#pragma once

#include "platform/biff_records.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>
#include <vector>

namespace brenvolt {

/// A cell to write: a text (an empty text means no cell) or a number.
using BookCell = std::variant<std::wstring, double>;
using BookRow = std::vector<BookCell>;

} // namespace brenvolt

namespace brenvolt::biff {

inline constexpr std::size_t maximumRows = 65536;
inline constexpr std::size_t maximumColumns = 256;
inline constexpr std::size_t maximumTextUnits = 32767;
inline constexpr std::size_t maximumSheetNameUnits = 31;

/// The problem of a sheet with this name, for a message; nothing when it is valid.
[[nodiscard]] std::optional<std::wstring> sheetNameProblem(std::wstring_view name);
/// The problem of this row as row number `row` (from 0); nothing when it is valid.
[[nodiscard]] std::optional<std::wstring> rowProblem(const BookRow& cells, std::size_t row);

/// One record; the body is at most `longestBody` bytes long.
void appendRecord(std::string& out, std::uint16_t id, std::string_view body);

/// A text with a length of one byte, as names of sheets and fonts have it (at most 255 units).
void appendShortText(std::string& body, std::wstring_view text);

/// The table of all texts: each once, cells name them by number.
class SharedStringsWriter final {
public:
  SharedStringsWriter();
  /// Continues a file's table of `textCount` texts: the bodies of its SST and CONTINUE records.
  SharedStringsWriter(std::vector<std::string> bodies, std::uint32_t textCount);

  /// The number of a text for one more cell. A text that an older part of the table holds is stored again.
  std::uint32_t add(std::wstring_view text);
  [[nodiscard]] std::string records() const;

private:
  void append(std::string_view units);

  std::vector<std::string> bodies_;
  std::uint32_t cellCount_ = 0;
  std::uint32_t textCount_ = 0;
  std::unordered_map<std::wstring, std::uint32_t> numbers_;
};

/// Rows and their cells, from row number `firstRow` on, in the blocks of 32 rows that the format knows.
struct RowBlocks {
  std::size_t firstRow = 0;
  std::span<const BookRow> rows;
  /// The cell format of a row, by row number.
  std::function<unsigned(std::size_t row)> cellFormat;
  /// Whether a row needs a ROW record: a file may hold one already.
  std::function<bool(std::size_t row)> needsRowRecord;
};
void appendRowBlocks(std::string& out, const RowBlocks& blocks, SharedStringsWriter& strings);

/// Rows and columns with cells: the first ones, and the ends after the last ones.
struct UsedRange {
  std::uint32_t firstRow = 0;
  std::uint32_t endRow = 0;
  std::uint16_t firstColumn = 0;
  std::uint16_t endColumn = 0;

  [[nodiscard]] bool isEmpty() const { return endRow == 0 || endColumn == 0; }
  void include(std::size_t row, std::size_t column);
};
[[nodiscard]] std::string dimensionsBody(const UsedRange& range);

} // namespace brenvolt::biff
