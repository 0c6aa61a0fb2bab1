// Standard, metal and insulation of the lookup: what the tables offer, and which one a circuit starts with.
#pragma once

#include "data/circuit_data.h"
#include "data/wire_defaults.h"

namespace brenvolt {

void loadStandards(WireInput& input, const WireDefaults& defaults, const ZanCircuitData& choices);
/// Of the chosen standard.
void loadMetals(WireInput& input, const WireDefaults& defaults, const ZanCircuitData& choices);
/// Of the chosen standard and metal.
void loadInsulations(WireInput& input, const WireDefaults& defaults, const ZanCircuitData& choices);

} // namespace brenvolt
