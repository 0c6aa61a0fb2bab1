// A sheet of a workbook, read whole as texts before anything is done with it.
#pragma once

#include "platform/tables.h"

#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// The rows below the header. Every row has `columnCount` cells.
struct SheetRows {
  int columnCount = 0;
  std::vector<std::vector<std::wstring>> rows;
};

class SheetReader final {
public:
  SheetReader();

  /// Opens the workbook; false when it cannot be opened, see `error`.
  [[nodiscard]] bool open(std::wstring_view path);
  /// Reads a sheet by its name. False when the workbook has no such sheet or it cannot be read, see `error`.
  [[nodiscard]] bool read(std::wstring_view sheet, SheetRows& rows);
  /// Reads the first sheet whose name does not begin with an apostrophe.
  [[nodiscard]] bool readFirst(SheetRows& rows);
  [[nodiscard]] const std::wstring& error() const { return error_; }

private:
  [[nodiscard]] std::vector<std::wstring> tableNames();
  [[nodiscard]] bool readTable(const std::wstring& table, SheetRows& rows);

  ZanOleDbFileRecordset file_;
  std::wstring error_;
};

} // namespace brenvolt
