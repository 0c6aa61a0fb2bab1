// The three ways in which the system compares texts. Which one holds is part of each rule, so every call names it.
#pragma once

#include <string>
#include <string_view>

namespace brenvolt {

/// Ordinal without case: code units after simple upper-casing, no locale. For keys: marker keys, tags, table names.
[[nodiscard]] int compareOrdinalNoCase(std::wstring_view left, std::wstring_view right);
[[nodiscard]] bool equalsOrdinalNoCase(std::wstring_view left, std::wstring_view right);

/// Collating without case by the user's locale. For what a person reads: names of circuits, types, histories,
/// titles. One rule for the whole program, sorting included: negative, zero or positive.
[[nodiscard]] int compareCollating(std::wstring_view left, std::wstring_view right);
[[nodiscard]] bool equalsCollating(std::wstring_view left, std::wstring_view right);

/// Exact comparison is `==` of the texts.

/// "less" by `compareCollating`, for sorting lists that a person reads.
struct CollatingLess {
  using is_transparent = void;
  bool operator()(std::wstring_view left, std::wstring_view right) const {
    return compareCollating(left, right) < 0;
  }
};

/// Simple case mapping, code unit by code unit, the same in every locale.
[[nodiscard]] std::wstring toUpper(std::wstring_view text);
[[nodiscard]] std::wstring toLower(std::wstring_view text);

/// Position of `needle` in `text` from `from` on, ordinal without case; npos when absent.
[[nodiscard]] std::size_t findNoCase(std::wstring_view text, std::wstring_view needle, std::size_t from = 0);

} // namespace brenvolt
