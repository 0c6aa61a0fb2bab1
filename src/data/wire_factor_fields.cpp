#include "data/wire_factor_fields.h"

#include "text/numbers.h"

namespace brenvolt {

namespace {

constexpr int factorDecimals = 4;

void takeFactor(WireInput& input, LookupField range, LookupField factor, const FactorList& list) {
  const std::size_t place = input.place(range);
  if (place < list.factors.size() && !input.text(range).empty()) input.set(factor, list.factors[place]);
}

} // namespace

void loadContinuous(WireInput& input, const WireDefaults& defaults, const ZanCircuitData& choices) {
  input.setTick(LookupField::continuousTick, choices.useContinuousLoad);
  const std::wstring given =
      isGiven(choices.continuousFactor) ? formatTrimmed(choices.continuousFactor) : std::wstring();
  const WireValue factor = defaults.valueOf(LookupField::continuousFactor, given);
  input.set(LookupField::continuousFactor, factor.text, factor.origin);
  const WireValue price = defaults.numberOr(choices.energyPrice, option::energyPrice);
  input.set(LookupField::energyPrice, price.text, price.origin);
}

void loadFill(WireInput& input, const WireDefaults& defaults, const ZanCircuitData& choices) {
  input.setTick(LookupField::fillTick, choices.useFill);
  input.fill = defaults.tables().fill(input.code);
  input.setList(
      LookupField::fillRange, input.fill.ranges, {choices.fillRange, std::wstring(givenOrigin)},
      AbsentChoice::takeFirst);
  if (isGiven(choices.fillFactor))
    input.set(LookupField::fillFactor, formatTrimmed(choices.fillFactor), givenOrigin);
  else
    takeFillFactor(input);
}

void loadAmbient(WireInput& input, const WireDefaults& defaults) {
  const WireTableCache::Ambient& ambient =
      defaults.tables().ambient(input.tables(), input.insulationDescription());
  input.ambient = ambient.list;
  const std::vector<std::wstring>& ranges = ambient.list.ranges;
  const bool isOffered = ambient.defaultIndex < ranges.size();
  input.setList(
      LookupField::ambientRange, ranges, {isOffered ? ranges[ambient.defaultIndex] : std::wstring(), {}},
      AbsentChoice::takeFirst);
  input.set(LookupField::ambientFactor, {});
  takeAmbientFactor(input);
  input.set(LookupField::ambientFactor, trimNumber(input.text(LookupField::ambientFactor)));
}

void restoreAmbient(WireInput& input, const ZanCircuitData& choices) {
  for (const std::wstring& range : input.ambient.ranges)
    if (range == choices.ambientRange) input.set(LookupField::ambientRange, range, givenOrigin);
  input.setTick(LookupField::ambientTick, choices.useAmbient);
  takeAmbientFactor(input);
  input.set(LookupField::ambientFactor, trimNumber(input.text(LookupField::ambientFactor)));
  if (isGiven(choices.ambientFactor))
    input.set(LookupField::ambientFactor, formatTrimmed(choices.ambientFactor), givenOrigin);
}

void takeFillFactor(WireInput& input) {
  takeFactor(input, LookupField::fillRange, LookupField::fillFactor, input.fill);
}

void takeAmbientFactor(WireInput& input) {
  takeFactor(input, LookupField::ambientRange, LookupField::ambientFactor, input.ambient);
}

DeratingFactors deratingFactorsOf(const WireInput& input) {
  const auto ticked = [&input](LookupField tick, LookupField factor) {
    return input.isTicked(tick) ? std::optional<double>(input.number(factor)) : std::nullopt;
  };
  return {
      ticked(LookupField::continuousTick, LookupField::continuousFactor),
      ticked(LookupField::fillTick, LookupField::fillFactor),
      ticked(LookupField::ambientTick, LookupField::ambientFactor)};
}

void updateOverallFactor(WireInput& input) {
  input.set(
      LookupField::overallFactor, formatTrimmed(overallFactor(deratingFactorsOf(input)), factorDecimals));
}

} // namespace brenvolt
