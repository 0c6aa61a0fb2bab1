// The circuit of a drawing that an option of a subcommand names.
#pragma once

#include "circuits/provenance/circuit_objects.h"

#include <string>
#include <vector>

namespace simhost {

/// The one circuit of this id, name or tag. Throws BadInput, naming the option, when there is none or there are several.
[[nodiscard]] const circuits::CircuitObject& chosenCircuit(
    const std::vector<circuits::CircuitObject>& circuits, const char* option, const std::string& name,
    const std::string& drawing);

} // namespace simhost
