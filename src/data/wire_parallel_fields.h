// Parallel runs in the lookup: the highest count of conductors and the smallest size that may be paralleled.
#pragma once

#include "data/circuit_data.h"
#include "data/wire_defaults.h"

namespace brenvolt {

void loadParallel(WireInput& input, const WireDefaults& defaults, const ZanCircuitData& choices);

} // namespace brenvolt
