// Sizes of conductors as a designer writes them, beside those of a table of ampacities.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace circuits {

/// The size of a table that is meant: "12 AWG" by "12 awg", "12AWG" or "12"; "2.5 mm2" by "2.5 mm²", "2,5" or "2.50". Empty
/// where the table has no such size. A number without a unit is one of the table's own units.
[[nodiscard]] std::wstring tableSizeOf(std::wstring_view text, const std::vector<std::wstring>& sizes);

/// "its neighbours are 12 AWG and 10 AWG" for a size that the table does not have, and all sizes for a text that is none.
[[nodiscard]] std::wstring neighbourText(std::wstring_view text, const std::vector<std::wstring>& sizes);

} // namespace circuits
