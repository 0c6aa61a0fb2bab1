// Cutting and trimming wide text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// Blank, tab, carriage return and line feed.
inline constexpr std::wstring_view blankCharacters = L" \t\r\n";

[[nodiscard]] constexpr bool isBlank(wchar_t character) {
  return character == L' ' || character == L'\t' || character == L'\r' || character == L'\n';
}

/// The text without the given characters at both ends.
[[nodiscard]] std::wstring trim(std::wstring_view text, std::wstring_view characters = blankCharacters);
[[nodiscard]] std::wstring_view trimView(
    std::wstring_view text, std::wstring_view characters = blankCharacters);

/// All fields between separators, empty ones included. An empty text is one empty field.
[[nodiscard]] std::vector<std::wstring> splitKeepingEmpty(std::wstring_view text, wchar_t separator);

/// The non-empty fields between separators: later fields shift down over empty ones.
[[nodiscard]] std::vector<std::wstring> splitSkippingEmpty(std::wstring_view text, wchar_t separator);

/// The fields before the first empty one.
[[nodiscard]] std::vector<std::wstring> splitUntilEmpty(std::wstring_view text, wchar_t separator);

/// The parts with the separator text between them.
[[nodiscard]] std::wstring join(const std::vector<std::wstring>& parts, std::wstring_view separator);

/// Every occurrence of `from` replaced by `to`.
[[nodiscard]] std::wstring replaceAll(std::wstring_view text, std::wstring_view from, std::wstring_view to);

/// The text without any blank character " " (tabs stay): sizes are stored so.
[[nodiscard]] std::wstring removeBlanks(std::wstring_view text);

/// The balanced "(...)" forms at the start of a trimmed text; text after the last complete form is dropped.
/// Parentheses inside quotes count like all others. Without any form the whole trimmed text is the only entry.
[[nodiscard]] std::vector<std::wstring> splitForms(std::wstring_view text);

/// The texts inside "(...)" at depth one. An outer "(" and ")" of the whole text go first, so a single group that is
/// not wrapped gives nothing.
[[nodiscard]] std::vector<std::wstring_view> wrappedGroups(std::wstring_view text);

} // namespace brenvolt
