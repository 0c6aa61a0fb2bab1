// UTF-8 and UTF-16LE, only for the edges where bytes leave or enter the program.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brenvolt {

/// Converts wide text to UTF-8. An invalid code point (a lone surrogate) becomes U+FFFD.
[[nodiscard]] std::string toUtf8(std::wstring_view text);

/// UTF-8 to wide text; malformed bytes become U+FFFD.
[[nodiscard]] std::wstring fromUtf8(std::string_view bytes);

/// Converts UTF-8 to wide text; returns nothing when the bytes are not valid UTF-8.
[[nodiscard]] std::optional<std::wstring> fromUtf8Strict(std::string_view bytes);

/// Wide text to UTF-16 little endian bytes, without a byte-order mark.
[[nodiscard]] std::string toUtf16Le(std::wstring_view text);

/// UTF-16 little endian bytes to wide text; a trailing odd byte is dropped, lone surrogates become U+FFFD.
[[nodiscard]] std::wstring fromUtf16Le(std::string_view bytes);

} // namespace brenvolt
