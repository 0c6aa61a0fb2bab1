#include "data/wire_drop_fields.h"

#include "text/numbers.h"

namespace brenvolt {

PowerFactorChoice powerFactorChoice(const WireDefaults& defaults, std::wstring_view setting, double given) {
  return {defaults.list(setting), defaults.numberOr(given, setting)};
}

void loadDropFields(
    WireInput& input, const WireDefaults& defaults, const ZanCircuitData& choices,
    const PowerFactorChoice& powerFactor) {
  input.setTick(LookupField::dropTick, choices.useVoltageDrop);
  input.setNumberList(
      LookupField::length, defaults.list(option::lengths),
      defaults.numberOr(choices.length, option::lengths));
  input.setList(
      LookupField::lengthUnits, defaults.list(option::lengthUnits),
      defaults.textOr(choices.lengthUnits, option::lengthUnits), AbsentChoice::addAtTop);
  loadRaceways(input, defaults, choices);
  input.setNumberList(LookupField::powerFactor, powerFactor.list, powerFactor.value);
  input.setTick(LookupField::dropLimitTick, choices.useDropLimit);
  input.setList(
      LookupField::dropLimit, defaults.list(option::dropLimit),
      defaults.numberOr(choices.dropLimit, option::dropLimit), AbsentChoice::addAtTop);
  input.currency = defaults.setting(option::energyPriceUnits).text;
}

void loadRaceways(WireInput& input, const WireDefaults& defaults, const ZanCircuitData& choices) {
  std::vector<std::wstring> shown = defaults.tables().racewayColumns(input.tables());
  const auto& described = defaults.tables().raceways(input.code);
  input.raceways = described.value_or(std::map<std::wstring, std::wstring>());
  // A description table without rows offers nothing; without the table the columns themselves are offered.
  if (described && described->empty()) shown.clear();
  for (std::wstring& column : shown)
    if (const auto entry = input.raceways.find(column); entry != input.raceways.end()) column = entry->second;
  input.setList(
      LookupField::raceway, std::move(shown), {choices.raceway, std::wstring(givenOrigin)},
      AbsentChoice::takeFirst);
}

} // namespace brenvolt
