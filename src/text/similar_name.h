// The name that a user may have meant.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace brenvolt {

/// How many letters have to be put in, taken out, changed or swapped with their neighbour, without regard to case.
[[nodiscard]] std::size_t nameDistance(std::wstring_view left, std::wstring_view right);

/// The nearest of the names: at most 2 away, and at most a third of its length. Empty for none.
[[nodiscard]] std::wstring similarName(std::wstring_view name, std::span<const std::wstring> names);

} // namespace brenvolt
