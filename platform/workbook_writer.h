// Writing workbooks (.xls): the report's target. Appending keeps all that the file already holds.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// Creates, opens and fills one workbook. `CloseDB` writes a temporary file and renames it, so a failure never leaves
/// half a file in place of a good one. Every operation returns false with `error()` set on a failure.
class CDBClass final {
public:
  CDBClass();
  ~CDBClass();
  CDBClass(const CDBClass&) = delete;
  CDBClass& operator=(const CDBClass&) = delete;

  /// A new workbook at `path`; an existing file is replaced when the workbook is closed. `type` is 1 (workbook).
  bool CreateDB(std::wstring_view path, int type, std::wstring_view password);
  /// An existing workbook; a relative name is taken from the current folder.
  bool OpenDB(std::wstring_view fileName, std::wstring_view password);
  /// A sheet with these column names as its first row. "$" at the end of the name is the address form and dropped.
  /// Types and sizes may be empty: cells are texts.
  bool AddTable(
      std::wstring_view name, const std::vector<std::wstring>& columnNames,
      const std::vector<int>& columnTypes, const std::vector<int>& columnSizes, int flags);
  /// Adds one row after the last one of the sheet, found without regard to case. `rowIndex` counts the caller's rows
  /// from 0 and does not address cells.
  bool AddRecords(
      std::wstring_view name, const std::vector<std::wstring>& columnNames,
      const std::vector<std::wstring>& values, int rowIndex);
  /// Writes the file. False when it cannot be written; the old file is then kept.
  bool CloseDB();
  [[nodiscard]] const std::wstring& error() const;

private:
  struct State;
  std::unique_ptr<State> state_;
};

} // namespace brenvolt
