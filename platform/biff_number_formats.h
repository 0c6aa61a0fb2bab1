// How a workbook's numbers read: which number formats show a date or a time, and the text of a number, a date or a
// time as the tables carry it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brenvolt::biff {

enum class NumberStyle : std::uint8_t { number, date, time, dateAndTime, elapsedTime };

/// Day 0 of a workbook's dates: the last day of 1899 by name, or the first day of 1904.
enum class DateEpoch : std::uint8_t { year1900, year1904 };

/// The style of a built-in format.
[[nodiscard]] NumberStyle builtInNumberStyle(unsigned formatIndex);

/// The style of a format text such as "yyyy\-mm\-dd;@" or "[h]:mm". Its first section decides.
[[nodiscard]] NumberStyle numberStyleOf(std::wstring_view format);

/// At most fifteen digits, as workbooks show numbers: the sum of 0.1 and 0.2 is 0.3.
[[nodiscard]] std::wstring workbookNumberText(double value);

/// Whether the value is a day of the years 1900 to 9999 that `style` shows as a date or a time.
[[nodiscard]] bool isWorkbookDate(double value, NumberStyle style, DateEpoch epoch);

/// 2026-11-21, 2026-11-21 13:05:00 or 13:05:00, to the second. Elapsed time counts hours beyond 24. Nothing when
/// `isWorkbookDate` is false.
[[nodiscard]] std::optional<std::wstring> workbookDateText(double value, NumberStyle style, DateEpoch epoch);

} // namespace brenvolt::biff
