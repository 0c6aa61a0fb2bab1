// Distances between names: the number of single mistakes of typing that lead from one to the other.
#include "simhost/cli/nearest_name.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace simhost {

namespace {

std::size_t mistakes(std::string_view typed, std::string_view name) {
  // Three rows of the table of distances of all beginnings: a swap looks two rows back.
  std::vector<std::size_t> before(name.size() + 1);
  std::vector<std::size_t> last(name.size() + 1);
  std::vector<std::size_t> row(name.size() + 1);
  for (std::size_t j = 0; j <= name.size(); ++j)
    last[j] = j;
  for (std::size_t i = 1; i <= typed.size(); ++i) {
    row[0] = i;
    for (std::size_t j = 1; j <= name.size(); ++j) {
      const std::size_t change = typed[i - 1] == name[j - 1] ? 0 : 1;
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + change});
      if (i > 1 && j > 1 && typed[i - 1] == name[j - 2] && typed[i - 2] == name[j - 1])
        row[j] = std::min(row[j], before[j - 2] + 1);
    }
    before = std::exchange(last, row);
  }
  return last[name.size()];
}

} // namespace

std::optional<std::string> nearestName(std::string_view typed, const std::vector<std::string>& names) {
  std::optional<std::string> nearest;
  std::size_t fewest = std::max<std::size_t>(1, typed.size() / 3) + 1;
  for (const std::string& name : names) {
    // The beginning of a name is that name cut short.
    const bool isBeginning = typed.size() > 2 && std::string_view(name).starts_with(typed);
    const std::size_t count = isBeginning ? 1 : mistakes(typed, name);
    if (count >= fewest) continue;
    fewest = count;
    nearest = name;
  }
  return nearest;
}

} // namespace simhost
