// What the fields of the wire lookup start from: the choices of a load or of a placed circuit,
// each as one record of the same form, so that the fields are loaded in one way.
#pragma once

#include "data/circuit_data.h"
#include "data/entity_records.h"

namespace brenvolt {

/// A circuit with the load's own multiplier and power factor.
[[nodiscard]] ZanCircuitData loadChoices(const CircuitContext& context);
/// A placed circuit. What the record does not hold, the ticks, comes from `circuit`; every field is open. A text that is
/// not a number counts as not given.
[[nodiscard]] ZanCircuitData placedChoices(const ZanCircuitData& circuit, const ZanCircParams& record);

} // namespace brenvolt
