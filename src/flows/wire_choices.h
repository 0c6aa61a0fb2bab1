// What the fields of the wire lookup start from: the choices of the circuit in hand, of a load, or of a placed circuit,
// each as one record of the same form, so that the fields are loaded in one way.
#pragma once

#include "data/circuit_data.h"
#include "data/entity_records.h"

namespace brenvolt {

/// The circuit in hand.
[[nodiscard]] ZanCircuitData circuitChoices();
/// The circuit in hand with the load's own multiplier and power factor.
[[nodiscard]] ZanCircuitData loadChoices();
/// A placed circuit. What the record does not hold, the ticks, comes from the circuit in hand; every field is open.
/// A text that is no number counts as not given.
[[nodiscard]] ZanCircuitData placedChoices(const ZanCircParams& record);

} // namespace brenvolt
