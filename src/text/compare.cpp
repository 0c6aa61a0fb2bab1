#include "text/compare.h"

#include <locale.h>
#include <wchar.h>
#include <wctype.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>

namespace brenvolt {
namespace {

constexpr wchar_t asciiEnd = 0x80;

/// Case tables that know more than ASCII and are the same on each machine; null where the C library lacks them.
/// Opened once and kept to the end of the process, as the C library keeps its own.
locale_t characterLocale() {
  static const locale_t opened = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return opened;
}

/// The locale that the user's environment names for sorting, by the usual order of precedence.
std::string_view userCollationName() {
  for (const char* variable : {"LC_ALL", "LC_COLLATE", "LANG"}) {
    const char* value = std::getenv(variable);
    if (value != nullptr && *value != '\0') return value;
  }
  return "C";
}

/// The user's sorting rule, null when the user has none: then the built-in order holds.
locale_t openCollation() {
  const std::string_view name = userCollationName();
  if (name == "C" || name == "POSIX" || name.starts_with("C.")) return nullptr;
  return newlocale(LC_COLLATE_MASK, "", nullptr);
}

locale_t collationLocale() {
  static const locale_t opened = openCollation();
  return opened;
}

/// The small letters of Latin-1 without the two that have no partner there (sharp s, y with diaeresis).
constexpr bool isLatin1Lower(wchar_t c) {
  return c >= 0xE0 && c < 0xFF && c != 0xF7;
}

constexpr bool isLatin1Upper(wchar_t c) {
  return c >= 0xC0 && c < 0xDF && c != 0xD7;
}

constexpr wchar_t latin1CaseDistance = 0x20;

wchar_t upperBeyondAscii(wchar_t c) {
  if (characterLocale() == nullptr) {
    return isLatin1Lower(c) ? static_cast<wchar_t>(c - latin1CaseDistance) : c;
  }
  const auto upper = static_cast<wchar_t>(towupper_l(static_cast<wint_t>(c), characterLocale()));
  // A letter beyond ASCII never becomes an ASCII one (dotless i, long s): a key means the letters it is typed in.
  return upper < asciiEnd ? c : upper;
}

/// A function object, so that loops over the usual letters hold the test and no call.
constexpr auto upperOf = [](wchar_t c) {
  if (c >= asciiEnd) return upperBeyondAscii(c);
  return c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - L'a' + L'A') : c;
};

wchar_t lowerOf(wchar_t c) {
  if (c < asciiEnd) return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
  if (characterLocale() == nullptr) {
    return isLatin1Upper(c) ? static_cast<wchar_t>(c + latin1CaseDistance) : c;
  }
  const auto lower = static_cast<wchar_t>(towlower_l(static_cast<wint_t>(c), characterLocale()));
  return lower < asciiEnd ? c : lower;
}

struct LetterFamily {
  wchar_t first;
  wchar_t last;
  wchar_t base;
};

/// Latin letters with accents and the plain letters with which they sort, for upper-cased texts.
constexpr std::array letterFamilies{
    LetterFamily{0xC0, 0xC6, L'A'},   LetterFamily{0xC7, 0xC7, L'C'},   LetterFamily{0xC8, 0xCB, L'E'},
    LetterFamily{0xCC, 0xCF, L'I'},   LetterFamily{0xD0, 0xD0, L'D'},   LetterFamily{0xD1, 0xD1, L'N'},
    LetterFamily{0xD2, 0xD6, L'O'},   LetterFamily{0xD8, 0xD8, L'O'},   LetterFamily{0xD9, 0xDC, L'U'},
    LetterFamily{0xDD, 0xDD, L'Y'},   LetterFamily{0xDE, 0xDE, L'T'},   LetterFamily{0xDF, 0xDF, L'S'},
    LetterFamily{0x100, 0x105, L'A'}, LetterFamily{0x106, 0x10D, L'C'}, LetterFamily{0x10E, 0x111, L'D'},
    LetterFamily{0x112, 0x11B, L'E'}, LetterFamily{0x11C, 0x123, L'G'}, LetterFamily{0x124, 0x127, L'H'},
    LetterFamily{0x128, 0x133, L'I'}, LetterFamily{0x134, 0x135, L'J'}, LetterFamily{0x136, 0x138, L'K'},
    LetterFamily{0x139, 0x142, L'L'}, LetterFamily{0x143, 0x14B, L'N'}, LetterFamily{0x14C, 0x153, L'O'},
    LetterFamily{0x154, 0x159, L'R'}, LetterFamily{0x15A, 0x161, L'S'}, LetterFamily{0x162, 0x167, L'T'},
    LetterFamily{0x168, 0x173, L'U'}, LetterFamily{0x174, 0x175, L'W'}, LetterFamily{0x176, 0x178, L'Y'},
    LetterFamily{0x179, 0x17E, L'Z'}, LetterFamily{0x17F, 0x17F, L'S'},
};

wchar_t baseLetterOf(wchar_t upper) {
  if (upper < letterFamilies.front().first || upper > letterFamilies.back().last) return upper;
  const auto family =
      std::ranges::lower_bound(letterFamilies, upper, std::ranges::less{}, &LetterFamily::last);
  return upper >= family->first ? family->base : upper;
}

/// Compares code unit by code unit what `map` makes of them; the shorter text comes first.
template <typename Map>
int compareMapped(std::wstring_view left, std::wstring_view right, Map map) {
  const std::size_t common = std::min(left.size(), right.size());
  for (std::size_t i = 0; i < common; ++i) {
    if (left[i] == right[i]) continue;
    const wchar_t a = map(left[i]);
    const wchar_t b = map(right[i]);
    if (a != b) return a < b ? -1 : 1;
  }
  if (left.size() == right.size()) return 0;
  return left.size() < right.size() ? -1 : 1;
}

template <typename Map>
std::wstring mapped(std::wstring_view text, Map map) {
  std::wstring result(text);
  std::ranges::transform(result, result.begin(), map);
  return result;
}

} // namespace

int compareOrdinalNoCase(std::wstring_view left, std::wstring_view right) {
  return compareMapped(left, right, upperOf);
}

bool equalsOrdinalNoCase(std::wstring_view left, std::wstring_view right) {
  return left.size() == right.size() && compareOrdinalNoCase(left, right) == 0;
}

std::size_t OrdinalNoCaseHash::operator()(std::wstring_view text) const {
  // FNV-1a over whole characters.
  std::uint64_t hash = 14695981039346656037u;
  for (const wchar_t c : text)
    hash = (hash ^ static_cast<std::uint64_t>(upperOf(c))) * 1099511628211u;
  return static_cast<std::size_t>(hash);
}

int compareCollating(std::wstring_view left, std::wstring_view right) {
  int order = 0;
  if (collationLocale() != nullptr) {
    order = wcscoll_l(toUpper(left).c_str(), toUpper(right).c_str(), collationLocale());
  } else {
    order = compareMapped(left, right, [](wchar_t c) { return baseLetterOf(upperOf(c)); });
  }
  return order != 0 ? order : compareOrdinalNoCase(left, right);
}

bool equalsCollating(std::wstring_view left, std::wstring_view right) {
  return equalsOrdinalNoCase(left, right);
}

std::wstring toUpper(std::wstring_view text) {
  return mapped(text, upperOf);
}

std::wstring toLower(std::wstring_view text) {
  return mapped(text, lowerOf);
}

std::size_t findNoCase(std::wstring_view text, std::wstring_view needle, std::size_t from) {
  if (from > text.size()) return std::wstring_view::npos;
  const auto sameLetter = [](wchar_t a, wchar_t b) { return upperOf(a) == upperOf(b); };
  const std::wstring_view rest = text.substr(from);
  const auto hit = std::search(rest.begin(), rest.end(), needle.begin(), needle.end(), sameLetter);
  if (hit == rest.end() && !needle.empty()) return std::wstring_view::npos;
  return from + static_cast<std::size_t>(hit - rest.begin());
}

} // namespace brenvolt
