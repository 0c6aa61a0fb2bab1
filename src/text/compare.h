// The three ways in which the system compares texts. Which one holds is part of each rule, so every call names it.
#pragma once

#include <string>
#include <string_view>

namespace brenvolt {

/// Ordinal without case: code units after simple upper-casing, no locale. For keys: marker keys, tags, table names.
[[nodiscard]] int compareOrdinalNoCase(std::wstring_view left, std::wstring_view right);
[[nodiscard]] bool equalsOrdinalNoCase(std::wstring_view left, std::wstring_view right);

/// Compares two texts by the user's locale. For texts that users read: names of circuits, types, configurations,
/// titles. One rule for the whole program, sorting included: negative, zero or positive.
/// The order of upper-cased texts is the one of the locale that the environment names (LC_ALL, LC_COLLATE, LANG;
/// read once), and without such a locale a built-in one: ordinal, Latin letters with accents beside their plain
/// letter. Zero only for texts that are equal without case: where the order makes no difference (many locales pass
/// over punctuation), code units decide.
[[nodiscard]] int compareCollating(std::wstring_view left, std::wstring_view right);
[[nodiscard]] bool equalsCollating(std::wstring_view left, std::wstring_view right);

/// Exact comparison is `==` of the texts.

/// "less" by `compareCollating`, for sorting lists that users read.
struct CollatingLess {
  using is_transparent = void;
  bool operator()(std::wstring_view left, std::wstring_view right) const {
    return compareCollating(left, right) < 0;
  }
};

/// For hashed containers whose keys compare by `equalsOrdinalNoCase`.
struct OrdinalNoCaseHash {
  [[nodiscard]] std::size_t operator()(std::wstring_view text) const;
};
struct OrdinalNoCaseEqual {
  [[nodiscard]] bool operator()(std::wstring_view left, std::wstring_view right) const {
    return equalsOrdinalNoCase(left, right);
  }
};

/// Simple case mapping, code unit by code unit, the same in every locale. A letter beyond ASCII never maps to an
/// ASCII one.
[[nodiscard]] std::wstring toUpper(std::wstring_view text);
[[nodiscard]] std::wstring toLower(std::wstring_view text);

/// Position of `needle` in `text` from `from` on, ordinal without case; npos when absent.
[[nodiscard]] std::size_t findNoCase(std::wstring_view text, std::wstring_view needle, std::size_t from = 0);

} // namespace brenvolt
