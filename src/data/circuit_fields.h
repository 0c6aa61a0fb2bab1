// The record of a circuit by positions, as a placed component and a saved configuration carry it, and the same figures as
// the circuit in hand has them.
#pragma once

#include "data/circuit_data.h"
#include "data/entity_records.h"

namespace brenvolt {

/// Takes voltage, phase and everything from the current on; a text that is not a number counts as not given.
void readCircuitFields(const ZanCircParams& record, ZanCircuitData& circuit);

} // namespace brenvolt
