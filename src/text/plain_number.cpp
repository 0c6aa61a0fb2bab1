// Strict reading of numbers.
#include "text/plain_number.h"

#include "text/numbers.h"
#include "text/split.h"

namespace brenvolt {

namespace {

constexpr std::wstring_view digits = L"0123456789";
constexpr std::size_t mostDigitsOfInteger = 9;

std::wstring_view withoutSign(std::wstring_view text) {
  if (text.starts_with(L'-') || text.starts_with(L'+')) text.remove_prefix(1);
  return text;
}

} // namespace

std::optional<double> plainNumber(std::wstring_view text) {
  text = trimView(text);
  std::size_t digitCount = 0;
  std::size_t pointCount = 0;
  for (const wchar_t letter : withoutSign(text))
    if (letter >= L'0' && letter <= L'9')
      ++digitCount;
    else if (letter == L'.')
      ++pointCount;
    else
      return std::nullopt;
  if (digitCount == 0 || pointCount > 1) return std::nullopt;
  return toDouble(text);
}

std::optional<int> plainInteger(std::wstring_view text) {
  text = trimView(text);
  const std::wstring_view number = withoutSign(text);
  if (number.empty() || number.size() > mostDigitsOfInteger) return std::nullopt;
  if (number.find_first_not_of(digits) != std::wstring_view::npos) return std::nullopt;
  return toInt(text);
}

} // namespace brenvolt
