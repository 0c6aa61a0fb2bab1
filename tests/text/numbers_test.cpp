// Numbers in text: the reading that forgives and the formats that users and files see.
#include "text/encoding.h"
#include "text/numbers.h"

#include <doctest/doctest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

using namespace brenvolt;

namespace {
constexpr double largest = std::numeric_limits<double>::max();
constexpr double infinite = std::numeric_limits<double>::infinity();
} // namespace

TEST_CASE("the leading number of a text is read and the rest is passed over") {
  struct Row {
    double value;
    std::vector<std::wstring> texts;
  };
  const std::wstring nines(400, L'9');
  const std::wstring zeros(400, L'0');
  const Row rows[] = {
      // The last one has digits of another script.
      {0.0,
       {L"", L"abc", L".", L"-", L"--5", L"+-5", L"- 5", L".e5", L"0x1F", L"nan", L"inf", L"-infinity",
        L"1e-999", L"-1e-99999999999999999999", L"0e99999999999999999999", L"0." + zeros + L"1",
        L"\u0661\u0662"}},
      {28.0, {L"28"}},
      {-12.5, {L" \t\r\n-12.50 A"}},
      {3.0, {L"+3"}},
      {5.0, {L"5."}},
      {0.5, {L".5"}},
      {-0.5, {L"-.5x"}},
      {1.2, {L"1.2.3"}},
      {1.0, {L"1,5", L"1-2", L"0." + zeros + L"1e401", L"1" + zeros + L"e-400"}},
      {2000.0, {L"2e3"}},
      {0.002, {L"2E-3V"}},
      {2.0, {L"2e", L"2e+", L"2exp"}},
      {largest, {L"1e999", L"1e99999999999999999999", nines}},
      {-largest, {L"-1e999"}},
  };
  for (const Row& row : rows)
    for (const std::wstring& text : row.texts) {
      CAPTURE(toUtf8(text));
      CHECK(toDouble(text) == row.value);
    }
  CHECK_FALSE(std::signbit(toDouble(L"-0")));
}

TEST_CASE("an integer is read up to its last digit and kept within 32 bits") {
  constexpr std::int32_t most = 2147483647;
  constexpr std::pair<const wchar_t*, std::int32_t> rows[] = {
      {L"", 0},
      {L" 42mm", 42},
      {L"-7.9", -7},
      {L"+3", 3},
      {L"--3", 0},
      {L"x1", 0},
      {L"2147483648", most},
      {L"-2147483649", -most - 1},
      {L"99999999999999999999999", most},
      {L"-99999999999999999999999", -most - 1}};
  for (const auto& [text, value] : rows)
    CHECK_MESSAGE(toInt(text) == value, toUtf8(text));
}

TEST_CASE("a number is written with a point, without a minus on zero, and never as infinity") {
  CHECK(formatFixed(1234.5678, 2) == L"1234.57");
  CHECK(formatFixed(-0.004, 2) == L"0.00");
  CHECK(formatFixed(-0.4, 0) == L"0");
  CHECK(formatFixed(-0.006, 2) == L"-0.01");
  CHECK(formatFixed(2.0, -3) == L"2");
  CHECK(formatFixed(largest, 6).size() == 309 + 7);
  CHECK(formatFixed(1.0, 1000000).size() == 1024 + 2);
  CHECK(formatFixed(infinite, 2).empty());
  CHECK(formatFixed(infinite - infinite, 2).empty());
  CHECK(formatDouble(0.1) == L"0.100000");
  CHECK(formatInt(-12) == L"-12");
}

TEST_CASE("trailing zeros go only behind a point") {
  struct Row {
    const wchar_t* text;
    const wchar_t* trimmed;
  };
  const Row rows[] = {{L"12.500000", L"12.5"}, {L"3.000000", L"3"}, {L"120", L"120"},
                      {L"0.000", L"0"},        {L"", L""},          {L"4/0", L"4/0"}};
  for (const Row& row : rows)
    CHECK(trimNumber(row.text) == row.trimmed);
  CHECK(formatTrimmed(120.0) == L"120");
  CHECK(formatTrimmed(0.25) == L"0.25");
  CHECK(formatTrimmed(99.996, 2) == L"100");
  CHECK(formatTrimmed(-0.0000001) == L"0");
}

TEST_CASE("the shortest text of a number is the one a person writes") {
  constexpr std::pair<double, const wchar_t*> rows[] = {
      {28.0, L"28"},
      {0.75, L"0.75"},
      {0.1, L"0.1"},
      {-0.0, L"0"},
      {0.00001, L"0.00001"},
      {1e-15, L"0.000000000000001"},
      {123456789012345.0, L"123456789012345"},
      {1e15, L"1e+15"},
      {1e300, L"1e+300"},
      {6.2831853, L"6.2831853"},
      {infinite, L""}};
  for (const auto& [value, text] : rows)
    CHECK(formatShortest(value) == text);
}

TEST_CASE("the shortest text of a number reads back as the same number") {
  std::mt19937_64 random(4711);
  std::uniform_real_distribution<double> mantissa(-10.0, 10.0);
  std::uniform_int_distribution<int> exponent(-300, 300);
  for (int i = 0; i < 2000; ++i) {
    const double value = std::ldexp(mantissa(random), exponent(random));
    CHECK(toDouble(formatShortest(value)) == value);
  }
}
