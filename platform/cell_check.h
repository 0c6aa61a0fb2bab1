// Which cells of a table that is carried over hold what their column needs. A figure that cannot be read would sort, mark
// and propose something else in silence, so each one is found here, with its place.
#pragma once

#include "platform/table_import.h"
#include "platform/table_source.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace brenvolt::tables {

/// A cell that does not hold what its column needs.
struct BadCell {
  std::int64_t place = 0; ///< of the row, as its source counts
  std::wstring column;
  std::wstring text;
  std::wstring needed; ///< what the cell should be, as in "is not a number"

  /// "row 3, column MAX: "4O" is not a number".
  [[nodiscard]] std::wstring told() const;
};

/// Checks the rows of one table in their order.
class CellCheck final {
public:
  CellCheck(std::vector<SourceColumn> columns, std::vector<ColumnUse> uses)
      : columns_(std::move(columns)), uses_(std::move(uses)) {}

  enum class Last { no, yes };

  /// Checks a row; `last` says whether it is the table's last one. Its bad cells are NULL afterwards if requested.
  /// Numbers of number columns are numbers afterwards, blanks around them removed.
  void check(TableRow& row, std::int64_t place, Last last, BadCells badCells);
  /// All bad cells so far.
  [[nodiscard]] const std::vector<BadCell>& found() const { return found_; }

private:
  std::vector<SourceColumn> columns_;
  std::vector<ColumnUse> uses_;
  std::vector<BadCell> found_;
};

} // namespace brenvolt::tables
