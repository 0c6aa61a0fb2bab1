// Formats from outside: filled where they fit, left alone where they do not.
#include "text/encoding.h"
#include "text/format.h"

#include <doctest/doctest.h>

using namespace brenvolt;

TEST_CASE("placeholders that fit their arguments are filled") {
  const std::wstring owned = L"M1";
  CHECK(formatText(L"%s of %d at %f V, 100%%", {owned, 3, 0.5}) == L"M1 of 3 at 0.500000 V, 100%");
  struct Row {
    const wchar_t* format;
    FormatArgument argument;
    const wchar_t* text;
  };
  const Row rows[] = {
      {L"%03d", 7, L"007"},      {L"%03d", -7, L"-07"},        {L"%3d|", 7, L"  7|"},
      {L"%-3d|", 7, L"7  |"},    {L"%.3d", -7, L"-007"},       {L"WT%02d", 123, L"WT123"},
      {L"%.2f", 1.005, L"1.00"}, {L"%7.2f", -1.5, L"  -1.50"}, {L"%07.2f", -1.5, L"-001.50"},
      {L"%.0f", 2.6, L"3"},      {L"%4s|", L"ab", L"  ab|"},   {L"%-4s|", L"ab", L"ab  |"},
      {L"%.1s", L"ab", L"a"},
  };
  for (const Row& row : rows) {
    CAPTURE(toUtf8(row.format));
    CHECK(formatText(row.format, {row.argument}) == row.text);
  }
}

TEST_CASE("placeholders that do not fit stay as they stand") {
  CHECK(formatText(L"%s %s", {L"a"}) == L"a %s");
  CHECK(formatText(L"%d %s", {L"a", L"b"}) == L"%d b");
  CHECK(formatText(L"%f", {1}) == L"%f");
  CHECK(formatText(L"%n%x %s", {L"a"}) == L"%n%x a");
  CHECK(formatText(L"50% %d", {1}) == L"50% 1");
  CHECK(formatText(L"%5", {1}) == L"%5");
  CHECK(formatText(L"%", {}) == L"%");
  CHECK(formatText(L"%*d", {1}) == L"%*d");
}

TEST_CASE("a damaged width costs no memory") {
  CHECK(formatText(L"%99999999999d", {1}).size() == 1024);
  CHECK(formatText(L"%.99999999999f", {1.0}).size() == 1024 + 2);
}
