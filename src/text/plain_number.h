// Numbers that are valid as a whole or refused: what a user types, and a cell that is used as a figure.
#pragma once

#include <optional>
#include <string_view>

namespace brenvolt {

/// A sign, digits and a point, blanks around it allowed; nothing for any other text.
[[nodiscard]] std::optional<double> plainNumber(std::wstring_view text);

/// Digits with an optional sign.
[[nodiscard]] std::optional<int> plainInteger(std::wstring_view text);

} // namespace brenvolt
