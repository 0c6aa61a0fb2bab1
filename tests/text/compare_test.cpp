// Comparison of texts: which keys are equal, and the order in which users read names.
#include "text/compare.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

using namespace brenvolt;

namespace {
// The order under test is the built-in one; it is chosen at the first comparison, which comes after this.
[[maybe_unused]] const int withoutUserLocale = setenv("LC_ALL", "C", 1);
} // namespace

TEST_CASE("letters beyond ASCII have both cases") {
  struct Row {
    const wchar_t* lower;
    const wchar_t* upper;
  };
  const Row rows[] = {
      {L"wt01_e", L"WT01_E"},
      {L"\u00E9\u00FC\u00F8", L"\u00C9\u00DC\u00D8"}, // Latin-1
      {L"\u0142\u017E\u0151", L"\u0141\u017D\u0150"}, // Latin Extended-A
      {L"\u03C9\u03B1", L"\u03A9\u0391"},             // Greek
      {L"\u0434\u0436", L"\u0414\u0416"},             // Cyrillic
      {L"\u00F7\u00DF 12", L"\u00F7\u00DF 12"},       // no partner in one code unit
  };
  for (const Row& row : rows) {
    CAPTURE(toUtf8(row.lower));
    CHECK(toUpper(row.lower) == row.upper);
    CHECK(toLower(row.upper) == row.lower);
    CHECK(equalsOrdinalNoCase(row.lower, row.upper));
    CHECK(equalsCollating(row.lower, row.upper));
    CHECK(compareCollating(row.lower, row.upper) == 0);
  }
}

TEST_CASE("an ASCII key is met by ASCII letters only") {
  CHECK_FALSE(equalsOrdinalNoCase(L"MISC", L"m\u0131sc"));
  CHECK_FALSE(equalsOrdinalNoCase(L"S", L"\u017F"));
  CHECK(toLower(L"\u212A") == L"\u212A"); // the kelvin sign
}

TEST_CASE("ordinal order is by code unit and then by length") {
  CHECK(compareOrdinalNoCase(L"abc", L"ABD") < 0);
  CHECK(compareOrdinalNoCase(L"ab", L"ABC") < 0);
  CHECK(compareOrdinalNoCase(L"a_b", L"AB") > 0);
  CHECK(compareOrdinalNoCase(L"", L"") == 0);
}

TEST_CASE("names sort with accents beside their plain letters") {
  std::vector<std::wstring> names = {L"Zug",        L"\u00E9cluse", L"pump",       L"Eclipse",
                                     L"Motor 2",    L"motor 1",     L"F\u00F8rer", L"Fabrik",
                                     L"\u0141ampa", L"Lager",       L"Mast"};
  const std::vector<std::wstring> sorted = {L"Eclipse", L"\u00E9cluse", L"Fabrik", L"F\u00F8rer",
                                            L"Lager",   L"\u0141ampa",  L"Mast",   L"motor 1",
                                            L"Motor 2", L"pump",        L"Zug"};
  std::ranges::sort(names, CollatingLess());
  CHECK(names == sorted);
}

TEST_CASE("names that differ in an accent or a punctuation mark are never equal") {
  for (const auto& [left, right] :
       {std::pair{L"co-op", L"coop"}, {L"resume", L"r\u00E9sum\u00E9"}, {L"a b", L"ab"}}) {
    CHECK_FALSE(equalsCollating(left, right));
    CHECK(compareCollating(left, right) != 0);
    CHECK((compareCollating(left, right) < 0) == (compareCollating(right, left) > 0));
  }
}

TEST_CASE("a search without case finds the first place from a position on") {
  CHECK(findNoCase(L"a THEN b then", L"then") == 2);
  CHECK(findNoCase(L"a THEN b then", L"Then", 3) == 9);
  CHECK(findNoCase(L"abc", L"d") == std::wstring::npos);
  CHECK(findNoCase(L"abc", L"abcd") == std::wstring::npos);
  CHECK(findNoCase(L"abc", L"", 3) == 3);
  CHECK(findNoCase(L"abc", L"", 4) == std::wstring::npos);
}
