// Reads workbooks (.xls) that users edit: the shown text of each cell, sheet by sheet, without the formulas and
// formats. Sheets are listed at once; the cells of a sheet are read only when the sheet is used.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// One cell as its user sees it.
struct WorkbookCell {
  enum class Kind : std::uint8_t { empty, text, number, boolean, date, error };

  Kind kind = Kind::empty;
  /// The stored number of a number or a date (days), 1 or 0 of a boolean, 0 otherwise.
  double number = 0.0;
  /// 28 (never 28.0), 2026-11-21, 2026-11-21 13:05:00, 13:05:00, TRUE, #N/A, or the text itself.
  std::wstring text;
};

/// Cells that are shown as one: only the first of them has a value. Rows and columns count from 0, the last ones are of
/// them.
struct MergedCells {
  std::size_t firstRow = 0;
  std::size_t lastRow = 0;
  std::size_t firstColumn = 0;
  std::size_t lastColumn = 0;
};

/// How a sheet keeps its cells.
struct SheetCells;

/// The cells of one sheet. Rows and columns count from 0; a place outside the used range is an empty cell.
class WorkbookSheet final {
public:
  WorkbookSheet();
  ~WorkbookSheet();
  WorkbookSheet(WorkbookSheet&&) noexcept;
  WorkbookSheet& operator=(WorkbookSheet&&) noexcept;

  [[nodiscard]] const std::wstring& name() const;
  /// Rows up to the last one, and columns up to the last one, with a cell that is not blank. A cell with nothing but a
  /// format is blank; a formula with an empty text as its result is not.
  [[nodiscard]] std::size_t rowCount() const;
  [[nodiscard]] std::size_t columnCount() const;

  [[nodiscard]] WorkbookCell::Kind kind(std::size_t row, std::size_t column) const;
  [[nodiscard]] double number(std::size_t row, std::size_t column) const;
  [[nodiscard]] std::wstring text(std::size_t row, std::size_t column) const;
  [[nodiscard]] WorkbookCell cell(std::size_t row, std::size_t column) const;
  [[nodiscard]] const std::vector<MergedCells>& mergedCells() const;

private:
  friend class WorkbookReader;
  std::unique_ptr<SheetCells> cells_;
};

/// A sheet of the workbook's list: worksheets only, in the order of their tabs.
struct WorkbookSheetInfo {
  std::wstring name;
  /// Hidden by the user or by a program; its cells can still be read.
  bool isHidden = false;
};

/// Reads one workbook file. `error()` reports every failure with the file and the reason, in bounded time for any
/// content.
class WorkbookReader final {
public:
  static constexpr std::size_t allRows = std::numeric_limits<std::size_t>::max();

  WorkbookReader();
  ~WorkbookReader();
  WorkbookReader(WorkbookReader&&) noexcept;
  WorkbookReader& operator=(WorkbookReader&&) noexcept;

  /// Opens the file and lists its sheets. False when it cannot be read, is not a workbook, is damaged or is encrypted.
  [[nodiscard]] bool open(std::wstring_view path);
  [[nodiscard]] const std::vector<WorkbookSheetInfo>& sheets() const;
  /// The sheet of this name, ordinal without case, as an index into `sheets()`.
  [[nodiscard]] std::optional<std::size_t> findSheet(std::wstring_view name) const;
  /// The cells of one sheet in its first `rowLimit` rows; nothing when the sheet is damaged or does not exist.
  [[nodiscard]] std::optional<WorkbookSheet> readSheet(std::size_t index, std::size_t rowLimit = allRows);
  [[nodiscard]] const std::wstring& error() const;

private:
  struct State;
  std::unique_ptr<State> state_;
};

} // namespace brenvolt
