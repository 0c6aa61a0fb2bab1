#include "text/similar_name.h"

#include "text/compare.h"

#include <algorithm>
#include <array>
#include <vector>

namespace brenvolt {

std::size_t nameDistance(std::wstring_view leftName, std::wstring_view rightName) {
  const std::wstring left = toUpper(leftName);
  const std::wstring right = toUpper(rightName);
  // Three rows of the table of distances of all beginnings: a swap of neighbours looks two rows back.
  std::array<std::vector<std::size_t>, 3> rows;
  for (std::vector<std::size_t>& row : rows)
    row.resize(right.size() + 1);
  for (std::size_t j = 0; j <= right.size(); ++j)
    rows[0][j] = j;
  for (std::size_t i = 1; i <= left.size(); ++i) {
    std::vector<std::size_t>& row = rows[i % 3];
    const std::vector<std::size_t>& above = rows[(i + 2) % 3];
    row[0] = i;
    for (std::size_t j = 1; j <= right.size(); ++j) {
      const std::size_t change = above[j - 1] + (left[i - 1] == right[j - 1] ? 0 : 1);
      row[j] = std::min({change, above[j] + 1, row[j - 1] + 1});
      const bool isSwapped = i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1];
      if (isSwapped) row[j] = std::min(row[j], rows[(i + 1) % 3][j - 2] + 1);
    }
  }
  return rows[left.size() % 3][right.size()];
}

std::wstring similarName(std::wstring_view name, std::span<const std::wstring> names) {
  std::wstring nearest;
  std::size_t fewest = std::min<std::size_t>(2, name.size() / 3) + 1;
  for (const std::wstring& each : names) {
    // As far apart as their lengths differ, at least.
    if (std::max(each.size(), name.size()) - std::min(each.size(), name.size()) >= fewest) continue;
    if (const std::size_t distance = nameDistance(name, each); distance < fewest) {
      fewest = distance;
      nearest = each;
    }
  }
  return nearest;
}

} // namespace brenvolt
