// Bytes at the edges: what is well formed survives both ways, what is not costs one replacement and no more.
#include "text/encoding.h"

#include <doctest/doctest.h>

using namespace brenvolt;
using namespace std::string_literals;

TEST_CASE("text survives the way through both encodings") {
  const std::wstring text = L"A\u00E9\u03A9\u20AC\U0001F50C\uFFFF\0z"s;
  const std::string utf8 = "A\xC3\xA9\xCE\xA9\xE2\x82\xAC\xF0\x9F\x94\x8C\xEF\xBF\xBF\0z"s;
  CHECK(toUtf8(text) == utf8);
  CHECK(fromUtf8(utf8) == text);
  CHECK(fromUtf8Strict(utf8) == text);
  CHECK(toUtf16Le(L"A\u20AC\U0001F50C") == "A\0\xAC\x20\x3D\xD8\x0C\xDD"s);
  CHECK(fromUtf16Le(toUtf16Le(text)) == text);
}

TEST_CASE("malformed UTF-8 gives one replacement for each broken character") {
  struct Row {
    std::string bytes;
    std::wstring text;
  };
  const Row rows[] = {
      {"a\x80z", L"a\uFFFDz"},                           // a tail byte alone
      {"a\xE2\x82z", L"a\uFFFDz"},                       // cut short
      {"a\xE2\x82", L"a\uFFFD"},                         // cut short by the end
      {"\xC0\xAF", L"\uFFFD\uFFFD"},                     // overlong
      {"\xE0\x80\x80", L"\uFFFD\uFFFD\uFFFD"},           // overlong
      {"\xED\xA0\x80", L"\uFFFD\uFFFD\uFFFD"},           // a surrogate
      {"\xF4\x90\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD"}, // beyond the last code point
      {"\xFF\xFE", L"\uFFFD\uFFFD"},
  };
  for (const Row& row : rows) {
    CHECK(fromUtf8(row.bytes) == row.text);
    CHECK_FALSE(fromUtf8Strict(row.bytes).has_value());
  }
}

TEST_CASE("a lone surrogate becomes a replacement and a pair one character") {
  const std::wstring lone = {L'a', static_cast<wchar_t>(0xD83D), L'b'};
  const std::wstring pair = {static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDD0C)};
  CHECK(
      toUtf8(lone) == "a\xEF\xBF\xBD"
                      "b");
  CHECK(toUtf8(pair) == "\xF0\x9F\x94\x8C");
  CHECK(fromUtf16Le("\x3D\xD8"s) == L"\uFFFD");
  CHECK(fromUtf16Le("\x0C\xDD\x3D\xD8z\0q"s) == L"\uFFFD\uFFFDz");
}
