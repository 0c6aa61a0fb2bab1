#include "platform/biff_number_formats.h"

#include "text/compare.h"
#include "text/numbers.h"

#include <charconv>
#include <chrono>
#include <cmath>

namespace brenvolt::biff {

namespace {

struct BuiltInRange {
  unsigned first;
  unsigned last;
  NumberStyle style;
};

// The fixed format numbers; 27 to 36 and 50 to 58 belong to the calendars of East Asia.
constexpr BuiltInRange builtInRanges[] = {
    {14, 17, NumberStyle::date}, {18, 21, NumberStyle::time},        {22, 22, NumberStyle::dateAndTime},
    {27, 31, NumberStyle::date}, {32, 33, NumberStyle::time},        {34, 36, NumberStyle::date},
    {45, 45, NumberStyle::time}, {46, 46, NumberStyle::elapsedTime}, {47, 47, NumberStyle::time},
    {50, 58, NumberStyle::date},
};

constexpr double secondsPerDay = 86400.0;
constexpr std::int64_t lastDay = 2958465; // 9999-12-31
constexpr std::int64_t daysFrom1900To1904 = 1462;
constexpr int significantDigits = 15;

std::wstring padded(std::int64_t value, std::size_t width) {
  std::wstring digits = std::to_wstring(value);
  return digits.size() < width ? std::wstring(width - digits.size(), L'0') + digits : digits;
}

/// The letters of a format's first section that mean parts of a date or time, in order and in lower case;
/// an elapsed part is "e".
std::wstring partLetters(std::wstring_view format) {
  std::wstring letters;
  for (std::size_t i = 0; i < format.size(); ++i) {
    const wchar_t c = format[i];
    if (c == L';') break;
    if (c == L'"') {
      const std::size_t end = format.find(L'"', i + 1);
      if (end == std::wstring_view::npos) break;
      i = end;
    } else if (c == L'\\' || c == L'_' || c == L'*') {
      ++i;
    } else if (c == L'[') {
      const std::size_t end = format.find(L']', i + 1);
      if (end == std::wstring_view::npos) break;
      const std::wstring inside = toLower(format.substr(i + 1, end - i - 1));
      const bool isElapsed = !inside.empty() &&
                             std::wstring_view(L"hms").find(inside[0]) != std::wstring_view::npos &&
                             inside.find_first_not_of(inside[0]) == std::wstring::npos;
      if (isElapsed) letters += L'e';
      i = end;
    } else if (
        (c == L'E' || c == L'e') && i + 1 < format.size() &&
        (format[i + 1] == L'+' || format[i + 1] == L'-')) {
      ++i;
    } else if (equalsOrdinalNoCase(format.substr(i, 7), L"General")) {
      i += 6;
    } else if (equalsOrdinalNoCase(format.substr(i, 5), L"AM/PM")) {
      i += 4;
    } else {
      const std::wstring lower = toLower(std::wstring_view(&c, 1));
      if (std::wstring_view(L"ymdhs").find(lower[0]) != std::wstring_view::npos) letters += lower;
    }
  }
  return letters;
}

/// "m" is minutes next to hours or seconds, months elsewhere.
bool isMinute(std::wstring_view letters, std::size_t place) {
  const std::size_t before = letters.find_last_not_of(L'm', place);
  const std::size_t after = letters.find_first_not_of(L'm', place);
  return (before != std::wstring_view::npos && (letters[before] == L'h' || letters[before] == L'e')) ||
         (after != std::wstring_view::npos && letters[after] == L's');
}

std::wstring dayText(std::int64_t day, DateEpoch epoch) {
  // The calendar of 1900 has a 29th of February that never existed, and a day 0 before the first of January.
  if (epoch == DateEpoch::year1900 && day == 60) return L"1900-02-29";
  if (epoch == DateEpoch::year1900 && day == 0) return L"1900-01-00";
  using namespace std::chrono;
  const std::int64_t shift = epoch == DateEpoch::year1900 && day < 60 ? 1 : 0;
  const year_month_day date{sys_days{year{1899} / December / 30} + days{day + shift}};
  return padded(int{date.year()}, 4) + L"-" + padded(unsigned{date.month()}, 2) + L"-" +
         padded(unsigned{date.day()}, 2);
}

std::wstring clockText(std::int64_t seconds) {
  return padded(seconds / 3600, 2) + L":" + padded(seconds / 60 % 60, 2) + L":" + padded(seconds % 60, 2);
}

} // namespace

NumberStyle builtInNumberStyle(unsigned formatIndex) {
  for (const BuiltInRange& range : builtInRanges) {
    if (formatIndex >= range.first && formatIndex <= range.last) return range.style;
  }
  return NumberStyle::number;
}

NumberStyle numberStyleOf(std::wstring_view format) {
  const std::wstring letters = partLetters(format);
  bool hasDate = false;
  bool hasTime = false;
  for (std::size_t i = 0; i < letters.size(); ++i) {
    const bool isTime = letters[i] == L'h' || letters[i] == L's' || letters[i] == L'e' ||
                        (letters[i] == L'm' && isMinute(letters, i));
    (isTime ? hasTime : hasDate) = true;
  }
  if (hasDate) return hasTime ? NumberStyle::dateAndTime : NumberStyle::date;
  if (!hasTime) return NumberStyle::number;
  return letters.find(L'e') == std::wstring::npos ? NumberStyle::time : NumberStyle::elapsedTime;
}

std::wstring workbookNumberText(double value) {
  if (value == 0.0) return L"0";
  char digits[32];
  const auto written =
      std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, significantDigits);
  double rounded = value;
  std::from_chars(digits, written.ptr, rounded);
  return formatShortest(rounded);
}

bool isWorkbookDate(double value, NumberStyle style, DateEpoch epoch) {
  const std::int64_t days = lastDay + 1 - (epoch == DateEpoch::year1904 ? daysFrom1900To1904 : 0);
  return style != NumberStyle::number && value >= 0.0 && value < static_cast<double>(days);
}

std::optional<std::wstring> workbookDateText(double value, NumberStyle style, DateEpoch epoch) {
  if (!isWorkbookDate(value, style, epoch)) return std::nullopt;
  const auto seconds = static_cast<std::int64_t>(std::llround(value * secondsPerDay));
  if (style == NumberStyle::elapsedTime) return clockText(seconds);
  const std::int64_t day = seconds / 86400;
  const std::int64_t clock = seconds % 86400;
  if (style == NumberStyle::time) return clockText(clock);
  const std::int64_t dayOf1900 = epoch == DateEpoch::year1904 ? day + daysFrom1900To1904 : day;
  // The last half second of the last day.
  if (dayOf1900 > lastDay) return std::nullopt;
  const std::wstring date = dayText(dayOf1900, epoch);
  return style == NumberStyle::date ? date : date + L" " + clockText(clock);
}

} // namespace brenvolt::biff
