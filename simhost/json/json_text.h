// JSON texts into values and back. The parser and the printer of the library are large templates: they are compiled
// here and nowhere else.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <string_view>

namespace simhost {

/// Throws the library's parse_error with the byte at which the text stops being JSON.
[[nodiscard]] nlohmann::ordered_json parseJson(std::string_view text);

/// A discarded value for a text that is not JSON.
[[nodiscard]] nlohmann::ordered_json tryParseJson(std::string_view text);

inline constexpr int onOneLine = -1;

/// The value as a text, `indent` blanks deeper with each level, without a line feed at the end. Bytes that are not UTF-8
/// are replaced by U+FFFD.
[[nodiscard]] std::string jsonText(const nlohmann::ordered_json& value, int indent = onOneLine);

} // namespace simhost
