// How wide the columns of a table are: what is read in them first, then the room that is left.
#pragma once

#include <vector>

namespace simhost {

/// Widths in pixels.
struct ColumnNeed {
  int least = 0;  ///< what it has in any case
  int wanted = 0; ///< to show everything; not below `least`
  int share = 0;  ///< of the table, beside the shares of the others; 0: gets no room that is left over
};

/// Where the columns need more than there is.
enum class Overflow {
  scrolls,
  squeezes, ///< the last one ends where the table does and keeps a third of it, the first one gives way
};

/// The widths in the order of the columns. They fill the room when one of them has a share.
[[nodiscard]] std::vector<int> columnWidths(
    const std::vector<ColumnNeed>& columns, int room, Overflow overflow);

} // namespace simhost
