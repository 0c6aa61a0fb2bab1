#include "circuits/check/similar_name.h"

#include "text/compare.h"

#include <algorithm>
#include <array>
#include <vector>

namespace circuits {

namespace {
constexpr int farApart = 3;
}

int nameDistance(std::wstring_view leftName, std::wstring_view rightName) {
  const std::wstring left = brenvolt::toUpper(leftName);
  const std::wstring right = brenvolt::toUpper(rightName);
  const auto difference = static_cast<int>(left.size()) - static_cast<int>(right.size());
  if (difference >= farApart || -difference >= farApart) return farApart;
  // Three rows of the usual table: a swap of neighbours looks two rows back.
  std::array<std::vector<int>, 3> rows;
  for (std::vector<int>& row : rows)
    row.resize(right.size() + 1);
  for (std::size_t j = 0; j <= right.size(); ++j)
    rows[0][j] = static_cast<int>(j);
  for (std::size_t i = 1; i <= left.size(); ++i) {
    std::vector<int>& row = rows[i % 3];
    const std::vector<int>& above = rows[(i + 2) % 3];
    row[0] = static_cast<int>(i);
    for (std::size_t j = 1; j <= right.size(); ++j) {
      const int change = above[j - 1] + (left[i - 1] == right[j - 1] ? 0 : 1);
      row[j] = std::min({change, above[j] + 1, row[j - 1] + 1});
      const bool isSwapped = i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1];
      if (isSwapped) row[j] = std::min(row[j], rows[(i + 1) % 3][j - 2] + 1);
    }
  }
  return std::min(rows[left.size() % 3][right.size()], farApart);
}

std::wstring similarName(std::wstring_view name, std::span<const std::wstring> names) {
  const int most = std::min(2, static_cast<int>(name.size()) / 3);
  std::wstring nearest;
  int distance = most + 1;
  for (const std::wstring& each : names)
    if (const int here = nameDistance(name, each); here < distance) {
      distance = here;
      nearest = each;
    }
  return nearest;
}

std::wstring didYouMean(const std::wstring& name) {
  return name.empty() ? std::wstring(L".") : L"; did you mean " + name + L"?";
}

} // namespace circuits
