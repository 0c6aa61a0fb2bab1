#include "data/wire_parallel_fields.h"

#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>

namespace brenvolt {

namespace {

constexpr int smallestParallelCount = 2;
/// More conductors in parallel than any raceway takes; a stored or configured number above it is invalid.
constexpr int largestParallelCount = 100;

/// The sizes from the first of the setting that the table knows on; that size is the default.
void loadMinimumSizes(WireInput& input, const WireDefaults& defaults, const ZanCircuitData& choices) {
  const WireValue setting = defaults.setting(option::parallelMinimumSize);
  std::vector<std::wstring> sizes;
  WireValue value;
  for (const std::wstring& token : splitSkippingEmpty(setting.text, L';')) {
    std::vector<ZanWireRow> found;
    const std::wstring size = trim(token);
    if (!defaults.reader().ListParallelSizes(
            input.tables(), input.temperature(), size, found, ZanWireTableReader::SizeText::key))
      continue;
    value = {size, setting.origin};
    for (const ZanWireRow& row : found)
      sizes.push_back(row.size);
    break;
  }
  if (!choices.parallelMinSize.empty()) value = {choices.parallelMinSize, std::wstring(givenOrigin)};
  input.setList(LookupField::parallelMinSize, std::move(sizes), value, AbsentChoice::takeFirst);
}

} // namespace

void loadParallel(WireInput& input, const WireDefaults& defaults, const ZanCircuitData& choices) {
  input.setTick(LookupField::parallelTick, choices.useParallel);
  // The count that was chosen is the highest that the next dialog offers: the list only shrinks, as is intended.
  const WireValue highest = defaults.textOr(trim(choices.parallelCount), option::parallelHighestCount);
  std::vector<std::wstring> counts;
  for (int count = std::min(toInt(highest.text), largestParallelCount); count >= smallestParallelCount;
       --count)
    counts.push_back(formatInt(count));
  const WireValue value = counts.empty() ? WireValue() : WireValue{counts.front(), highest.origin};
  input.setNumberList(LookupField::parallelCount, counts, value);
  loadMinimumSizes(input, defaults, choices);
  input.setTick(LookupField::showUndersized, choices.showUndersized);
}

} // namespace brenvolt
