// What the user may have meant by a name that does not exist.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace simhost {

/// The name with the fewest wrong, missing, added or swapped characters; nothing when even that is another word.
[[nodiscard]] std::optional<std::string> nearestName(
    std::string_view typed, const std::vector<std::string>& names);

} // namespace simhost
