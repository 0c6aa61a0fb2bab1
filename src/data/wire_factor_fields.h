// The correction factors of the lookup: continuous load, conduit fill and ambient temperature, and the combined factor
// that is applied to the table.
#pragma once

#include "data/circuit_data.h"
#include "data/wire_defaults.h"

namespace brenvolt {

void loadContinuous(WireInput& input, const WireDefaults& defaults, const ZanCircuitData& choices);
void loadFill(WireInput& input, const WireDefaults& defaults, const ZanCircuitData& choices);

/// The ambient ranges of the chosen insulation, with the range that the options select.
void loadAmbient(WireInput& input, const WireDefaults& defaults);
/// The range and the factor that the circuit has, over those of the options.
void restoreAmbient(WireInput& input, const ZanCircuitData& choices);

/// The factor of the chosen range.
void takeFillFactor(WireInput& input);
void takeAmbientFactor(WireInput& input);

/// The factors whose ticks are set.
[[nodiscard]] DeratingFactors deratingFactorsOf(const WireInput& input);
/// The combined factor of the ticked ones, with four decimals: what the field shows is what is applied.
void updateOverallFactor(WireInput& input);

} // namespace brenvolt
