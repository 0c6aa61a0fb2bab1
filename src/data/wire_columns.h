// The columns of the table of sizes: which cell each shows, and when it is there. Window, report and tool show the same
// ones and give each its own title.
#pragma once

#include "data/wire_figures.h"

#include <vector>

namespace brenvolt {

enum class WireColumn { size, count, fillRange, ampacity, loadPercent, drop, dropPercent, loss, yearlyCost };

/// What must be in use for a column to be there.
enum class WireColumnUse { always, parallel, drop, cost };

struct WireColumnRow {
  WireColumn column;
  std::wstring WireCandidate::*cell;
  WireColumnUse use;
};
/// In display order, which is that of `WireColumn`.
inline constexpr WireColumnRow wireColumns[] = {
    {WireColumn::size, &WireCandidate::size, WireColumnUse::always},
    {WireColumn::count, &WireCandidate::count, WireColumnUse::parallel},
    {WireColumn::fillRange, &WireCandidate::fillRange, WireColumnUse::parallel},
    {WireColumn::ampacity, &WireCandidate::ampacity, WireColumnUse::always},
    {WireColumn::loadPercent, &WireCandidate::loadPercent, WireColumnUse::always},
    {WireColumn::drop, &WireCandidate::drop, WireColumnUse::drop},
    {WireColumn::dropPercent, &WireCandidate::dropPercent, WireColumnUse::drop},
    {WireColumn::loss, &WireCandidate::loss, WireColumnUse::drop},
    {WireColumn::yearlyCost, &WireCandidate::yearlyCost, WireColumnUse::cost},
};

[[nodiscard]] inline const std::wstring& cellOf(const WireCandidate& row, WireColumn column) {
  return row.*wireColumns[static_cast<std::size_t>(column)].cell;
}

[[nodiscard]] inline std::vector<WireColumn> presentColumns(const WireLookupInput& input) {
  std::vector<WireColumn> columns;
  for (const WireColumnRow& row : wireColumns) {
    const bool isPresent =
        row.use == WireColumnUse::always || (row.use == WireColumnUse::parallel && input.parallel) ||
        (row.use == WireColumnUse::drop && input.drop) || (row.use == WireColumnUse::cost && input.cost);
    if (isPresent) columns.push_back(row.column);
  }
  return columns;
}

} // namespace brenvolt
