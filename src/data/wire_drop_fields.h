// Length, units, raceway, power factor and limit of the voltage drop in the lookup.
#pragma once

#include "data/circuit_data.h"
#include "data/wire_defaults.h"

namespace brenvolt {

/// The choices of a power factor, and the value that the circuit or the options have.
struct PowerFactorChoice {
  std::vector<std::wstring> list;
  WireValue value;
};
[[nodiscard]] PowerFactorChoice powerFactorChoice(
    const WireDefaults& defaults, std::wstring_view setting, double given);

void loadDropFields(
    WireInput& input, const WireDefaults& defaults, const ZanCircuitData& choices,
    const PowerFactorChoice& powerFactor);
void loadRaceways(WireInput& input, const WireDefaults& defaults, const ZanCircuitData& choices);

} // namespace brenvolt
