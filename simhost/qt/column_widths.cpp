// Texts that were cut come before shares.
#include "simhost/qt/column_widths.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace simhost {

namespace {

int sumOf(const std::vector<int>& widths) {
  return std::accumulate(widths.begin(), widths.end(), 0);
}

/// Each column gets as close to its share of the width as the texts of the others allow.
void shareOut(const std::vector<ColumnNeed>& columns, int room, std::vector<int>& widths) {
  std::vector<std::size_t> open;
  int shares = 0;
  for (std::size_t column = 0; column < columns.size(); ++column) {
    if (columns[column].share == 0) {
      room -= widths[column];
    } else {
      open.push_back(column);
      shares += columns[column].share;
    }
  }
  // Those that are wider than their share keep what they have, which makes the shares of the others smaller.
  for (auto at = open.begin(); at != open.end();) {
    if (widths[*at] * shares <= room * columns[*at].share) {
      ++at;
      continue;
    }
    room -= widths[*at];
    shares -= columns[*at].share;
    open.erase(at);
    at = open.begin();
  }
  for (const std::size_t column : open) {
    widths[column] = room * columns[column].share / shares;
    room -= widths[column];
    shares -= columns[column].share;
  }
}

} // namespace

std::vector<int> columnWidths(const std::vector<ColumnNeed>& columns, int room, Overflow overflow) {
  std::vector<int> widths;
  widths.reserve(columns.size());
  for (const ColumnNeed& column : columns)
    widths.push_back(column.least);
  int left = room - sumOf(widths);
  for (std::size_t column = 0; column < columns.size(); ++column) {
    const int more = std::clamp(left, 0, columns[column].wanted - widths[column]);
    widths[column] += more;
    left -= more;
  }
  if (left > 0) shareOut(columns, room, widths);
  if (left < 0 && overflow == Overflow::squeezes && widths.size() > 1) {
    widths.back() = std::max(widths.back() + left, room / 3);
    widths.front() = std::max(0, widths.front() + room - sumOf(widths));
  }
  return widths;
}

} // namespace simhost
