// Adds rows and sheets to an existing workbook, at the level of its records: everything else in the file (other
// sheets, formats, formulas, charts, macros, summary) is unchanged.
#pragma once

#include "platform/biff_writer.h"
#include "platform/ole2_writer.h"
#include "platform/workbook_book.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// One workbook read whole, to be written with more cells. Errors are reasons without the file's name.
class WorkbookAppend final {
public:
  /// Reads the file; a reason when it cannot be appended to (encrypted, damaged, of an older version).
  [[nodiscard]] std::optional<std::wstring> load(std::wstring_view path);

  /// The worksheet of this name, ordinal without case.
  [[nodiscard]] std::optional<std::size_t> findSheet(std::wstring_view name) const;
  /// Whether any sheet, one of charts or macros included, has this name: a new one must differ.
  [[nodiscard]] bool hasName(std::wstring_view name) const;
  [[nodiscard]] const std::wstring& name(std::size_t sheet) const { return sheets_[sheet].name; }
  /// The first row after every cell of the sheet, formatted blank ones included, counted with the rows added so far.
  [[nodiscard]] std::size_t nextRow(std::size_t sheet) const;

  /// Adds a row after the last one; it must pass `rowProblem`.
  void addRow(std::size_t sheet, BookRow row);
  /// Adds a sheet after the last one; it must pass `sheetProblem`.
  void addSheet(BookSheet sheet);

  /// The whole file.
  [[nodiscard]] std::string build() const;

private:
  struct Sheet {
    std::wstring name;
    bool isWorksheet = false;
    std::size_t begin = 0;
    std::size_t end = 0;
    /// The position of new rows: after the last record of the cell table.
    std::size_t insertAt = 0;
    biff::UsedRange used;
    std::size_t endRow = 0;
    std::set<std::size_t> rowsWithRecord;
    std::vector<BookRow> added;
  };
  struct Record {
    std::uint16_t id = 0;
    std::size_t offset = 0;
    std::string_view body;
    std::size_t end = 0;
  };

  [[nodiscard]] std::optional<Record> recordAt(std::size_t offset) const;
  [[nodiscard]] std::optional<std::wstring> loadStreams(Ole2Container& container, std::wstring_view path);
  [[nodiscard]] std::optional<std::wstring> loadGlobals();
  [[nodiscard]] bool countSharedStrings(Ole2Container& container);
  [[nodiscard]] bool takeSheetName(const Record& record);
  [[nodiscard]] bool loadSheets();
  [[nodiscard]] bool loadSheet(Sheet& sheet) const;
  static bool takeCellRecord(Sheet& sheet, const Record& record);
  [[nodiscard]] std::string copySheet(const Sheet& sheet, biff::SharedStringsWriter& strings) const;
  [[nodiscard]] std::string copyGlobals(
      const biff::SharedStringsWriter& strings, std::vector<std::size_t>& placeFields) const;

  std::vector<Ole2Item> items_;
  std::size_t streamItem_ = 0;
  std::string stream_;
  std::vector<Sheet> sheets_;
  std::vector<BookSheet> newSheets_;
  std::size_t globalsEnd_ = 0;
  std::size_t sharedStringsAt_ = 0;
  std::vector<std::string> sharedStrings_;
  std::uint32_t sharedStringCount_ = 0;
  unsigned plainFormat_ = 0;
};

} // namespace brenvolt
