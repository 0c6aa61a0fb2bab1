#include "data/wire_conductor_fields.h"

#include "text/compare.h"

#include <algorithm>

namespace brenvolt {

namespace {

/// Takes the entry that equals the value without case, as the list spells it.
void takeSpelled(WireInput& input, LookupField field, std::vector<std::wstring> entries, WireValue value) {
  const auto entry = std::find_if(entries.begin(), entries.end(), [&value](const std::wstring& each) {
    return equalsOrdinalNoCase(each, value.text);
  });
  if (entry != entries.end()) value.text = *entry;
  input.setList(field, std::move(entries), value, AbsentChoice::takeFirst);
}

} // namespace

void loadStandards(WireInput& input, const WireDefaults& defaults, const ZanCircuitData& choices) {
  std::vector<std::wstring> standards;
  defaults.reader().ListStandards(standards);
  takeSpelled(
      input, LookupField::standard, std::move(standards),
      defaults.textOr(choices.wireStandard, option::wireStandard));
}

void loadMetals(WireInput& input, const WireDefaults& defaults, const ZanCircuitData& choices) {
  std::vector<std::wstring> metals;
  defaults.reader().ListMetals(input.text(LookupField::standard), metals);
  takeSpelled(
      input, LookupField::metal, std::move(metals), defaults.textOr(choices.wireMetal, option::wireMetal));
}

void loadInsulations(WireInput& input, const WireDefaults& defaults, const ZanCircuitData& choices) {
  WireTableCache& tables = defaults.tables();
  WireValue value;
  if (!choices.insulation.empty() && !choices.temperature.empty()) {
    value = {insulationLabel(choices.insulation, choices.temperature), std::wstring(givenOrigin)};
  } else {
    value = defaults.setting(option::insulation);
    value.text = tables.insulationLabel(input.tables(), value.text);
  }
  input.setList(LookupField::insulation, tables.insulations(input.tables()), value, AbsentChoice::takeFirst);
}

} // namespace brenvolt
