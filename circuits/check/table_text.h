// A sheet or a table as the texts of its cells, with the row numbers that its author sees. Rules look at nothing else,
// so that they hold alike for workbooks, delimited text, databases and servers.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {
class ZanOleDbConnection;
}

namespace circuits {

struct TableText {
  struct Row {
    int number = 0; ///< as a spreadsheet counts: the header is 1
    std::vector<std::wstring> cells;
    /// Column from 1; empty beyond the last.
    [[nodiscard]] const std::wstring& cell(int column) const {
      static const std::wstring empty;
      const auto index = static_cast<std::size_t>(column) - 1;
      return index < cells.size() ? cells[index] : empty;
    }
  };

  std::wstring name;                 ///< of a sheet without its "$"
  std::vector<std::wstring> columns; ///< the header
  std::vector<Row> rows;

  [[nodiscard]] int columnCount() const { return static_cast<int>(columns.size()); }
  /// From 1, found without case; 0 for none.
  [[nodiscard]] int columnOf(std::wstring_view column) const;
};

/// Reads a table whole. False, with the reason in `error`, when it cannot be read.
[[nodiscard]] bool readTableText(
    brenvolt::ZanOleDbConnection& connection, const std::wstring& table, TableText& text,
    std::wstring& error);

/// Names of all tables of a connection.
[[nodiscard]] std::vector<std::wstring> tableNames(brenvolt::ZanOleDbConnection& connection);

} // namespace circuits
