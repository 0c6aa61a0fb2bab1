// The name that somebody probably meant.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace circuits {

/// How many letters have to be put in, taken out, changed or swapped with their neighbour, without regard to case;
/// counted up to 3.
[[nodiscard]] int nameDistance(std::wstring_view left, std::wstring_view right);

/// The nearest of the names: at most 2 away, and at most a third of its length. Empty for none.
[[nodiscard]] std::wstring similarName(std::wstring_view name, std::span<const std::wstring> names);

/// The end of a sentence: "; did you mean NAME?", a full stop without a name.
[[nodiscard]] std::wstring didYouMean(const std::wstring& name);

} // namespace circuits
