// A motor or a load out of the drawing becomes that of a circuit.
#pragma once

#include "data/circuit_data.h"

#include <optional>
#include <string>
#include <vector>

namespace brenvolt {

/// Asks until a motor is picked. Its texts come as type, load, units, voltage, phase, frequency, speed, full-load
/// current (A), multiplier; `circuit` takes them over. Nothing when the user ends the prompt.
[[nodiscard]] std::optional<std::vector<std::wstring>> pickMotorRatings(ZanCircuitData& circuit);

/// The same for a load, which has no speed: the circuit's speed is removed.
[[nodiscard]] std::optional<std::vector<std::wstring>> pickLoadRatings(ZanCircuitData& circuit);

} // namespace brenvolt
