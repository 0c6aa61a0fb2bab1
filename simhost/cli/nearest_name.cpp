#include "simhost/cli/nearest_name.h"

#include "text/encoding.h"
#include "text/similar_name.h"

#include <algorithm>
#include <cstddef>

namespace simhost {

std::optional<std::string> nearestName(std::string_view typed, const std::vector<std::string>& names) {
  const std::wstring wide = brenvolt::fromUtf8(typed);
  std::optional<std::string> nearest;
  std::size_t fewest = std::max<std::size_t>(1, typed.size() / 3) + 1;
  for (const std::string& name : names) {
    // The beginning of a name is that name cut short.
    const bool isBeginning = typed.size() > 2 && std::string_view(name).starts_with(typed);
    const std::size_t count = isBeginning ? 1 : brenvolt::nameDistance(wide, brenvolt::fromUtf8(name));
    if (count >= fewest) continue;
    fewest = count;
    nearest = name;
  }
  return nearest;
}

} // namespace simhost
