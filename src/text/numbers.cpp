#include "text/numbers.h"

#include "text/shortest_number.h"
#include "text/split.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace brenvolt {
namespace {

/// More than any figure needs, and a bound for formats that come from outside.
constexpr int mostDecimals = 1024;

/// Between these the shortest text is written as a plain decimal, beyond them with an exponent.
constexpr double plainFrom = 1e-15;
constexpr double plainBelow = 1e15;

struct Signed {
  bool negative = false;
  std::string digits; ///< in ASCII, without the sign; empty when no number begins there
};

/// The leading run of characters that a number may hold; `extra` are those besides the digits.
Signed leadingRun(std::wstring_view text, std::wstring_view extra) {
  Signed run;
  const std::size_t start = text.find_first_not_of(blankCharacters);
  if (start == std::wstring_view::npos) return run;
  text.remove_prefix(start);
  if (text.front() == L'-' || text.front() == L'+') {
    run.negative = text.front() == L'-';
    text.remove_prefix(1);
    // The reader below would take a second sign for its own.
    if (text.starts_with(L'-') || text.starts_with(L'+')) return run;
  }
  for (const wchar_t c : text) {
    const bool belongs = (c >= L'0' && c <= L'9') || extra.find(c) != std::wstring_view::npos;
    if (!belongs) break;
    run.digits.push_back(static_cast<char>(c));
  }
  return run;
}

/// Whether a number in ASCII that no double can hold is too large; otherwise it is too small.
bool isTooLarge(std::string_view number) {
  const std::size_t exponentAt = std::min(number.find_first_of("eE"), number.size());
  const std::string_view mantissa = number.substr(0, exponentAt);
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  const std::size_t leading = std::min(mantissa.find_first_not_of("0."), mantissa.size());
  const auto magnitude = static_cast<long long>(point) - static_cast<long long>(leading);
  if (exponentAt == number.size()) return magnitude > 0;

  std::string_view exponentText = number.substr(exponentAt + 1);
  if (exponentText.starts_with('+')) exponentText.remove_prefix(1);
  long long exponent = 0;
  const auto read = std::from_chars(exponentText.data(), exponentText.data() + exponentText.size(), exponent);
  if (read.ec == std::errc::result_out_of_range) return exponentText.front() != '-';
  return exponent > -magnitude;
}

std::wstring widen(std::string_view ascii) {
  return {ascii.begin(), ascii.end()};
}

} // namespace

double toDouble(std::wstring_view text) {
  const Signed run = leadingRun(text, L".eE+-");
  const char* const end = run.digits.data() + run.digits.size();
  double value = 0.0;
  const auto read = std::from_chars(run.digits.data(), end, value);
  if (read.ec == std::errc::result_out_of_range) {
    const std::string_view number(run.digits.data(), read.ptr);
    value = isTooLarge(number) ? std::numeric_limits<double>::max() : 0.0;
  }
  value = std::min(value, std::numeric_limits<double>::max());
  return run.negative && value != 0.0 ? -value : value;
}

std::int32_t toInt(std::wstring_view text) {
  constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
  constexpr std::int64_t least = std::numeric_limits<std::int32_t>::min();
  const Signed run = leadingRun(text, L"");
  std::int64_t value = 0;
  const auto read = std::from_chars(run.digits.data(), run.digits.data() + run.digits.size(), value);
  if (read.ec == std::errc::result_out_of_range) value = std::numeric_limits<std::int64_t>::max();
  return static_cast<std::int32_t>(std::clamp(run.negative ? -value : value, least, most));
}

std::wstring formatFixed(double value, int decimals) {
  if (!std::isfinite(value)) return {};
  const int places = std::clamp(decimals, 0, mostDecimals);
  // Sign, the digits of the largest double, point, decimals.
  std::string text(static_cast<std::size_t>(std::numeric_limits<double>::max_exponent10 + 3 + places), '\0');
  const auto written =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, places);
  text.resize(static_cast<std::size_t>(written.ptr - text.data()));
  const bool isZero = text.find_first_not_of("-0.") == std::string::npos;
  if (isZero && text.front() == '-') text.erase(0, 1);
  return widen(text);
}

std::wstring formatDouble(double value) {
  return formatFixed(value, 6);
}

std::wstring formatInt(std::int64_t value) {
  return widen(std::to_string(value));
}

void appendShortest(std::string& bytes, double value) {
  if (!std::isfinite(value)) return;
  if (value == 0.0) value = 0.0; // without a sign
  const double size = std::abs(value);
  const bool isPlain = size == 0.0 || (size >= plainFrom && size < plainBelow);
  char buffer[64];
  // A whole number has no shorter digits than its own, and they are found faster than those of a fraction.
  constexpr double wholeBelow = 1e9;
  if (size < wholeBelow && value == static_cast<double>(static_cast<std::int32_t>(value))) {
    bytes.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, static_cast<std::int32_t>(value)).ptr);
    return;
  }
  const auto written = std::to_chars(
      buffer, buffer + sizeof buffer, value,
      isPlain ? std::chars_format::fixed : std::chars_format::scientific);
  bytes.append(buffer, written.ptr);
}

std::wstring formatShortest(double value) {
  std::string bytes;
  appendShortest(bytes, value);
  return widen(bytes);
}

std::wstring trimNumber(std::wstring_view text) {
  if (text.find(L'.') == std::wstring_view::npos) return std::wstring(text);
  while (text.ends_with(L'0'))
    text.remove_suffix(1);
  if (text.ends_with(L'.')) text.remove_suffix(1);
  return std::wstring(text);
}

std::wstring formatTrimmed(double value) {
  return trimNumber(formatDouble(value));
}

std::wstring formatTrimmed(double value, int decimals) {
  return trimNumber(formatFixed(value, decimals));
}

} // namespace brenvolt
