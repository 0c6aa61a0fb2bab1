#include "data/wire_lists.h"

#include "text/compare.h"
#include "text/numbers.h"
#include "text/plain_number.h"
#include "text/split.h"

#include <algorithm>

namespace brenvolt {

std::wstring normaliseFactor(std::wstring_view text) {
  if (text.find(L'.') == std::wstring_view::npos) return std::wstring(text);
  while (text.ends_with(L'0'))
    text.remove_suffix(1);
  std::wstring factor(text);
  if (factor.ends_with(L'.')) factor += L'0';
  return factor;
}

void makeFillRanges(std::vector<std::wstring>& limits) {
  if (limits.empty()) return;
  if (limits.size() > 1) limits.back() = L'>' + limits[limits.size() - 2];
  for (std::size_t i = limits.size() - 1; i-- > 1;)
    limits[i] = formatInt(std::int64_t{toInt(limits[i - 1])} + 1) + L'~' + limits[i];
  limits.front() = L"1~" + limits.front();
}

std::size_t makeAmbientRanges(std::vector<std::wstring>& brackets, int ambient) {
  if (brackets.empty()) return 0;
  std::size_t selected = 0;
  for (std::size_t i = brackets.size() - 1; i > 0; --i) {
    const std::wstring& below = brackets[i - 1];
    const int limitBelow = toInt(std::wstring_view(below).substr(0, below.empty() ? 0 : below.size() - 1));
    if (selected == 0 && ambient > limitBelow) selected = i;
    brackets[i] = formatInt(std::int64_t{limitBelow} + 1) + L'~' + brackets[i];
  }
  brackets.front() = L"0~" + brackets.front();
  return selected;
}

int ambientDegrees(std::wstring_view option) {
  if (option.ends_with(L'C') || option.ends_with(L'c')) option.remove_suffix(1);
  return toInt(option);
}

std::optional<Impedance> parseImpedance(std::wstring_view cell) {
  const std::size_t semicolon = cell.find(L';');
  if (semicolon == std::wstring_view::npos) return std::nullopt;
  // A text that only begins with a number is none: "0,2" would be no resistance at all, and so no drop.
  const std::optional<double> reactance = plainNumber(cell.substr(0, semicolon));
  const std::optional<double> resistance = plainNumber(cell.substr(semicolon + 1));
  if (!reactance || !resistance) return std::nullopt;
  return Impedance{*reactance, *resistance};
}

SizeNumber splitSize(std::wstring_view size) {
  const std::size_t end = std::min(size.find_first_not_of(L"0123456789."), size.size());
  std::wstring unit = toUpper(trimView(size.substr(end)));
  if (unit.empty()) unit = L"number";
  return {toDouble(size.substr(0, end)), std::move(unit)};
}

ImpedanceNeighbours impedanceNeighbours(const std::vector<ImpedanceRow>& rows, std::wstring_view size) {
  const SizeNumber wanted = splitSize(size);
  ImpedanceNeighbours neighbours;
  double lower = 0.0;
  double upper = 0.0;
  for (const ImpedanceRow& row : rows) {
    const SizeNumber each = splitSize(row.size);
    if (each.unit != wanted.unit) continue;
    if (each.number == wanted.number) neighbours.hasOwnRow = true;
    if (row.cell.empty()) continue;
    if (each.number < wanted.number && (!neighbours.lower || each.number >= lower)) {
      neighbours.lower = row;
      lower = each.number;
    }
    if (each.number > wanted.number && (!neighbours.upper || each.number < upper)) {
      neighbours.upper = row;
      upper = each.number;
    }
  }
  return neighbours;
}

std::optional<Impedance> interpolateImpedance(const ImpedanceNeighbours& neighbours, std::wstring_view size) {
  const auto& [lower, upper, hasOwnRow] = neighbours;
  if (!lower && !upper) return std::nullopt;
  // Only a size that has a row of its own is interpolated; one that the table lacks altogether gives no drop.
  if (!hasOwnRow) return Impedance{};
  const std::optional<Impedance> below = lower ? parseImpedance(lower->cell) : std::nullopt;
  const std::optional<Impedance> above = upper ? parseImpedance(upper->cell) : std::nullopt;
  if ((lower && !below) || (upper && !above)) return std::nullopt;
  if (!above) return below;
  if (!below) return above;
  const double n = splitSize(size).number;
  const double n1 = splitSize(lower->size).number;
  const double n2 = splitSize(upper->size).number;
  const auto between = [&](double v1, double v2) { return v1 + (v2 - v1) * (n - n1) / (n2 - n1); };
  return Impedance{between(below->x, above->x), between(below->r, above->r)};
}

} // namespace brenvolt
