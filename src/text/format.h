// Fills printf-like formats from resources, tables and templates. Such a text may contain anything, so it is never
// passed to a formatter that could read past its arguments.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

namespace brenvolt {

/// One argument of `formatText`: a text for "%s", an integer for "%d", a real for "%f".
using FormatArgument = std::variant<std::wstring_view, std::int64_t, double>;

/// Returns `format` with its placeholders filled in order. Known are %s, %d and %f with optional width and precision
/// ("%.2f", "%03d", "%-8s"; both at most 1024) and %%. A placeholder without an argument left, of another kind than
/// its argument, or of an unknown letter stays in the text unchanged; of these only the second uses up an argument, so
/// that the following placeholders still get theirs.
[[nodiscard]] std::wstring formatText(
    std::wstring_view format, std::initializer_list<FormatArgument> arguments);

} // namespace brenvolt
