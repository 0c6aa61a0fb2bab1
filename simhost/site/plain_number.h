// Numbers typed at the tool: valid as a whole or refused, while the tables' texts are read leniently.
#pragma once

#include <optional>
#include <string_view>

namespace simhost {

/// A sign, digits and a point, blanks around it allowed; nothing for any other text.
[[nodiscard]] std::optional<double> plainNumber(std::wstring_view text);

/// Digits with an optional sign.
[[nodiscard]] std::optional<int> plainInteger(std::wstring_view text);

} // namespace simhost
