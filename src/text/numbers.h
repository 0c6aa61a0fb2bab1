// Numbers in text, the same in every locale: the decimal separator is always ".".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace brenvolt {

/// Two user numbers count as equal, and a double counts as not given, within this tolerance.
inline constexpr double numberTolerance = 1e-5;

/// The leading number of a text: blanks, sign, digits, point, exponent. Reading stops at the first character that
/// does not fit; no number gives 0.0. Overflow saturates at the largest double; "nan", "inf" and hexadecimal are
/// no numbers.
[[nodiscard]] double toDouble(std::wstring_view text);

/// The leading integer of a text: blanks, sign, digits. No number gives 0; overflow saturates at the 32-bit limits.
[[nodiscard]] std::int32_t toInt(std::wstring_view text);

/// "%.<decimals>f" of a value. A value that is not finite has no text: the result is empty.
[[nodiscard]] std::wstring formatFixed(double value, int decimals);

/// "%f": six decimals.
[[nodiscard]] std::wstring formatDouble(double value);

/// "%d".
[[nodiscard]] std::wstring formatInt(std::int64_t value);

/// The shortest text that reads back as exactly this value ("28", "0.75", never "28.0").
[[nodiscard]] std::wstring formatShortest(double value);

/// Takes trailing zeros and then a final point off a text that has a "."; a text without a point stays as it is.
/// 12.500000 gives 12.5, 3.000000 gives 3, 120 stays.
[[nodiscard]] std::wstring trimNumber(std::wstring_view text);

/// "%f" and `trimNumber`: how the system shows a number that a user typed.
[[nodiscard]] std::wstring formatTrimmed(double value);

/// "%.<decimals>f" and `trimNumber`.
[[nodiscard]] std::wstring formatTrimmed(double value, int decimals);

/// Whether a double is given at all: above the tolerance.
[[nodiscard]] constexpr bool isGiven(double value) {
  return value > numberTolerance;
}

} // namespace brenvolt
