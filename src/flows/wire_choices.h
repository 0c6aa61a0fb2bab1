// What the fields of the wire lookup start from: the choices of the circuit in hand, of a load, or of a placed circuit,
// each as one record of the same form, so that the fields are loaded in one way.
#pragma once

#include "data/circuit_data.h"
#include "data/entity_records.h"

#include <string>
#include <string_view>

namespace brenvolt {

/// The circuit in hand.
[[nodiscard]] ZanCircuitData circuitChoices();
/// The circuit in hand with the load's own multiplier and power factor.
[[nodiscard]] ZanCircuitData loadChoices();
/// A placed circuit. What the record does not hold, the ticks, comes from the circuit in hand; every field is open.
/// A text that is no number counts as not given.
[[nodiscard]] ZanCircuitData placedChoices(const ZanCircParams& record);

/// A size that was stored without blanks as the tables show it: "8AWG" is "8 AWG", "250KCMIL" is "250 KCMIL". The blank
/// stands ahead of the standard's word, or ahead of "KCMIL" for the standard "AWG".
[[nodiscard]] std::wstring shownSize(std::wstring_view stored, std::wstring_view standard);

} // namespace brenvolt
