#include "data/wire_current_fields.h"

#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>

namespace brenvolt {

namespace {

constexpr int currentDecimals = 4;

} // namespace

bool hasVoltage(const ZanCircuitData& choices) {
  return isGiven(toDouble(choices.voltage));
}

bool hasPhase(const ZanCircuitData& choices) {
  return toInt(choices.phase) != 0;
}

void loadVoltage(WireInput& input, const WireDefaults& defaults, const ZanCircuitData& choices) {
  input.setNumberList(
      LookupField::voltage, defaults.list(option::voltages),
      defaults.textOr(hasVoltage(choices) ? choices.voltage : std::wstring(), option::voltages));
}

void loadPhase(WireInput& input, const WireDefaults& defaults, const ZanCircuitData& choices) {
  input.setList(
      LookupField::phase, defaults.list(option::phases),
      defaults.textOr(hasPhase(choices) ? choices.phase : std::wstring(), option::phases),
      AbsentChoice::addAtTop);
}

void loadCurrents(
    WireInput& input, const WireDefaults& defaults, const ZanCircuitData& choices, LinkedCurrents& currents) {
  const auto take = [&input](LookupField field, double amperes) {
    if (isGiven(amperes)) input.set(field, formatTrimmed(amperes, currentDecimals), givenOrigin);
  };
  take(LookupField::extraCurrent, choices.extraCurrent);
  take(LookupField::current, choices.fla);
  take(LookupField::multiplier, choices.flaMultiplier);
  if (!isGiven(choices.flaMultiplier)) {
    const WireValue standard = defaults.setting(option::flaMultiplier);
    const double multiplier = toDouble(standard.text);
    if (isGiven(multiplier))
      input.set(LookupField::multiplier, formatTrimmed(multiplier, currentDecimals), standard.origin);
  }
  CurrentTexts texts = currentTextsOf(input);
  currents.begin(texts);
  showCurrents(input, texts);
}

CurrentTexts currentTextsOf(const WireInput& input) {
  return {
      input.text(LookupField::current), input.text(LookupField::multiplier),
      input.text(LookupField::extraCurrent), input.text(LookupField::total)};
}

void showCurrents(WireInput& input, const CurrentTexts& texts) {
  const auto show = [&input](LookupField field, const std::wstring& text) {
    if (input.text(field) != text) input.set(field, text);
  };
  show(LookupField::current, texts.current);
  show(LookupField::multiplier, texts.multiplier);
  show(LookupField::extraCurrent, texts.extra);
  show(LookupField::total, texts.total);
}

void loadGroundSizes(WireInput& input, const WireDefaults& defaults, std::wstring_view storedSize) {
  std::vector<std::wstring> sizes;
  const WireValue expression = defaults.setting(option::groundingRating);
  defaults.reader().ListGround(input.tables(), expression.text, input.text(LookupField::current), sizes);
  // Sizes are stored without blanks.
  const std::wstring stored = removeBlanks(storedSize);
  const auto kept = std::find_if(sizes.begin(), sizes.end(), [&stored](const std::wstring& size) {
    return equalsOrdinalNoCase(removeBlanks(size), stored);
  });
  const WireValue value = kept == sizes.end() ? WireValue() : WireValue{*kept, std::wstring(givenOrigin)};
  input.setList(LookupField::groundSize, std::move(sizes), value, AbsentChoice::takeFirst);
}

} // namespace brenvolt
