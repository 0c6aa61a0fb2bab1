#include "circuits/set/conductor_sizes.h"

#include "text/compare.h"
#include "text/numbers.h"
#include "text/plain_number.h"
#include "text/split.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace circuits {

namespace {

constexpr std::wstring_view awg = L"AWG";
constexpr std::wstring_view kcmil = L"KCMIL";
constexpr std::wstring_view squareMillimetres = L"MM2";

struct ParsedSize {
  std::wstring number; ///< "12", "1/0", "2.5"
  std::wstring unit;   ///< in upper case; empty where none is given
};

/// "2,5" is 2.5 and "2.50" too; "1/0" stays as it is. "1,000" are thousands of kcmil: no size has three decimals.
std::wstring plainText(std::wstring number) {
  constexpr std::size_t group = 4; // a comma and three digits
  if (const std::size_t comma = number.find(L',');
      comma != std::wstring::npos && comma > 0 && number.front() != L'0' && number.size() - comma == group)
    number.erase(comma, 1);
  std::replace(number.begin(), number.end(), L',', L'.');
  const std::optional<double> value = brenvolt::plainNumber(number);
  return value ? brenvolt::formatShortest(*value) : number;
}

ParsedSize parsed(std::wstring_view text) {
  std::wstring whole = brenvolt::toUpper(brenvolt::removeBlanks(text));
  if (whole.ends_with(L"MM\u00b2")) whole.back() = L'2';
  for (const std::wstring_view unit : {awg, kcmil, squareMillimetres})
    if (whole.ends_with(unit))
      return {plainText(whole.substr(0, whole.size() - unit.size())), std::wstring(unit)};
  return {plainText(std::move(whole)), {}};
}

/// The area in square millimetres, for an order of sizes; nothing for a text that is not one. Gauge n has the diameter
/// 0.127 mm x 92^((36 - n) / 39), and "3/0" is gauge -2; a thousand circular mils are 0.5067 mm2.
std::optional<double> areaOf(const ParsedSize& size) {
  constexpr double largestGauge = 40.0;
  constexpr double kcmilArea = 0.5067;
  std::optional<double> number = brenvolt::plainNumber(size.number);
  const bool isAught = size.number.ends_with(L"/0");
  if (isAught)
    if (const auto noughts = brenvolt::plainNumber(size.number.substr(0, size.number.size() - 2)))
      number = 1.0 - *noughts;
  if (!number) return std::nullopt;
  if (size.unit == squareMillimetres) return number;
  if (size.unit == kcmil || (size.unit.empty() && *number > largestGauge)) return *number * kcmilArea;
  constexpr double finestArea = 0.012668; // of gauge 36
  return finestArea * std::pow(92.0, (36.0 - *number) / 19.5);
}

} // namespace

std::wstring tableSizeOf(std::wstring_view text, const std::vector<std::wstring>& sizes) {
  const ParsedSize meant = parsed(text);
  for (const std::wstring& size : sizes)
    if (const ParsedSize own = parsed(size);
        own.number == meant.number && (meant.unit.empty() || own.unit == meant.unit))
      return size;
  return {};
}

std::wstring neighbourText(std::wstring_view text, const std::vector<std::wstring>& sizes) {
  ParsedSize meant = parsed(text);
  // A number alone is meant in the unit of the table.
  if (meant.unit.empty() && !sizes.empty() && parsed(sizes.front()).unit == squareMillimetres)
    meant.unit = squareMillimetres;
  const std::optional<double> area = areaOf(meant);
  if (!area) return L"they have " + brenvolt::join(sizes, L", ");
  const std::wstring* below = nullptr;
  const std::wstring* above = nullptr;
  double areaBelow = 0.0;
  double areaAbove = 0.0;
  for (const std::wstring& size : sizes) {
    const std::optional<double> own = areaOf(parsed(size));
    if (!own) continue;
    if (*own <= *area && (below == nullptr || *own > areaBelow)) {
      below = &size;
      areaBelow = *own;
    }
    if (*own > *area && (above == nullptr || *own < areaAbove)) {
      above = &size;
      areaAbove = *own;
    }
  }
  std::wstring neighbours = L"its neighbours are ";
  if (below != nullptr) neighbours += *below;
  if (below != nullptr && above != nullptr) neighbours += L" and ";
  if (above != nullptr) neighbours += *above;
  return neighbours;
}

} // namespace circuits
