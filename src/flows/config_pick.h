// A motor or a load out of the drawing becomes the circuit in hand.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace brenvolt {

/// Asks until a motor is picked. Its texts come as type, load, units, voltage, phase, frequency, speed, full-load
/// current (A), multiplier; the circuit in hand takes them over. Nothing when the user ends the prompt.
[[nodiscard]] std::optional<std::vector<std::wstring>> pickMotorRatings();

/// The same for a load: no speed comes, and the circuit in hand loses its own.
[[nodiscard]] std::optional<std::vector<std::wstring>> pickLoadRatings();

} // namespace brenvolt
