// The record of a circuit by positions, as stored in a placed component and in a saved configuration, and the same
// figures in the current circuit.
#pragma once

#include "data/circuit_data.h"
#include "data/entity_records.h"

namespace brenvolt {

/// Takes voltage, phase and everything from the current on; a text that is not a number counts as not given.
void readCircuitFields(const ZanCircParams& record, ZanCircuitData& circuit);

/// The same fields of a record, as texts; blank where the circuit has none.
[[nodiscard]] ZanCircParams writeCircuitFields(const ZanCircuitData& circuit);

} // namespace brenvolt
