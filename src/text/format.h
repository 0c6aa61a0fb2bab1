// Filling printf-like formats that come from resources, tables and templates: such a text may hold anything, so it
// is never handed to a formatter that could read past its arguments.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

namespace brenvolt {

/// One argument of `formatText`: a text for "%s", an integer for "%d", a real for "%f".
using FormatArgument = std::variant<std::wstring_view, std::int64_t, double>;

/// `format` with its placeholders filled in order. Known are %s, %d and %f with optional width and precision
/// ("%.2f", "%03d", "%-8s"; both at most 1024) and %%. A placeholder without an argument left, of another kind than
/// its argument, or of an unknown letter stays in the text as it stands; of these only the second uses an argument
/// up, so that the placeholders behind it still meet theirs.
[[nodiscard]] std::wstring formatText(
    std::wstring_view format, std::initializer_list<FormatArgument> arguments);

} // namespace brenvolt
