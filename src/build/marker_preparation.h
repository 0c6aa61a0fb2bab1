// Markers made ready to run: each gets its record from the worksheet, then what a saved configuration and the presets
// say of it.
#pragma once

#include "build/build_state.h"

namespace brenvolt {

/// Whether a step speaks for the circuit as a whole: direct builds then fill the circuit's own data as well.
enum class CircuitRows { leave, fill };

/// Copies to each marker of the list its record. With markers and not one of them in the worksheet the user is told
/// that the template does not belong to it, and the answer is false.
[[nodiscard]] bool matchRecords(BuildState& build, ZanDwgMarkerList& list);

/// Pushes the opened history into the markers of the list that have options, and those below.
void applyOpenHistory(BuildState& build, ZanDwgMarkerList& list, CircuitRows circuitRows);

/// Looks the presets' components up in the project. What cannot be found is passed over.
void readPresets(BuildState& build);

/// Puts wires and component data of the presets into the markers of the list that have options, and those below.
void buildWireAnnotations(BuildState& build, ZanDwgMarkerList& list, CircuitRows circuitRows);

} // namespace brenvolt
