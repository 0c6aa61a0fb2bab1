// Voltage, phase and the four linked currents of the lookup, and the grounding sizes that follow from the current.
#pragma once

#include "data/circuit_data.h"
#include "data/linked_currents.h"
#include "data/wire_defaults.h"

namespace brenvolt {

void loadVoltage(WireInput& input, const WireDefaults& defaults, const ZanCircuitData& choices);
void loadPhase(WireInput& input, const WireDefaults& defaults, const ZanCircuitData& choices);
/// Whether the circuit itself has the figure; else it comes from the options.
[[nodiscard]] bool hasVoltage(const ZanCircuitData& choices);
[[nodiscard]] bool hasPhase(const ZanCircuitData& choices);

void loadCurrents(
    WireInput& input, const WireDefaults& defaults, const ZanCircuitData& choices, LinkedCurrents& currents);
[[nodiscard]] CurrentTexts currentTextsOf(const WireInput& input);
void showCurrents(WireInput& input, const CurrentTexts& texts);

/// The sizes of the grounding table that suffice for the full-load current; a stored one among them stays selected.
void loadGroundSizes(WireInput& input, const WireDefaults& defaults, std::wstring_view storedSize);

} // namespace brenvolt
