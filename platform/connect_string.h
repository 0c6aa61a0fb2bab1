// The initialisation string of a connection: "Provider=...;Data Source=...;...", values in quotes where they hold a
// semicolon or a quote themselves.
#pragma once

#include <string>
#include <string_view>

namespace brenvolt::tables {

/// The value of `key`, found without case; empty when the string has none.
[[nodiscard]] std::wstring connectValue(std::wstring_view init, std::wstring_view key);

/// A value for such a string, in quotes where needed.
[[nodiscard]] std::wstring connectQuoted(std::wstring_view value);

/// The string without its passwords, for messages and for displaying the data source.
[[nodiscard]] std::wstring withoutPassword(std::wstring_view connectionString);

} // namespace brenvolt::tables
