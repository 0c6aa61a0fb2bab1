// Markers made ready to run: each gets its record from the worksheet, then what a saved configuration and the presets
// say of it.
#pragma once

#include "build/build_state.h"
#include "build/marker_scan.h"

#include <cstdint>

namespace brenvolt {

/// Puts what a scan found into a list, in order, and its wire positions among those of the circuit.
/// @return whether any marker came
bool adoptScan(BuildState& build, ZanDwgMarkerList& list, MarkerScan scan, std::int32_t run);

/// Whether a step speaks for the circuit as a whole: direct builds then fill the circuit's own data as well.
enum class CircuitRows { leave, fill };

/// Copies to each marker of the list its record. With markers and not one of them in the worksheet it is reported
/// that the template does not belong to it, and the answer is false.
[[nodiscard]] bool matchRecords(BuildState& build, ZanDwgMarkerList& list);

/// Pushes the opened history into the markers of the list that have options, and those below.
void applyOpenHistory(BuildState& build, ZanDwgMarkerList& list, CircuitRows circuitRows);

/// Takes the preset fields apart and looks their components up in the project. What cannot be found is passed over.
[[nodiscard]] BuildPresets readPresets(const ZanBuildArgs& args);

/// Puts wires and component data of the presets into the markers of the list that have options, and those below.
void buildWireAnnotations(BuildState& build, ZanDwgMarkerList& list, CircuitRows circuitRows);

} // namespace brenvolt
