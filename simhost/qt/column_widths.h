// The widths of a table's columns: enough for their texts first, then a share of the remaining width.
#pragma once

#include <vector>

namespace simhost {

/// Widths in pixels.
struct ColumnNeed {
  int least = 0;  ///< what it has in any case
  int wanted = 0; ///< to show everything; not below `least`
  int share = 0;  ///< of the table, relative to the shares of the others; 0: gets no remaining width
};

/// Where the columns need more than there is.
enum class Overflow {
  scrolls,
  squeezes, ///< the last one ends at the table's edge and keeps a third of it, the first one shrinks
};

/// The widths in the order of the columns. They fill the table when one of them has a share.
[[nodiscard]] std::vector<int> columnWidths(
    const std::vector<ColumnNeed>& columns, int room, Overflow overflow);

} // namespace simhost
