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

/// Whether a step concerns the circuit as a whole: direct builds then also fill the circuit's own data.
enum class CircuitRows { leave, fill };

/// Copies its record to each marker of the list. If there are markers and none of them is in the worksheet, reports
/// that the template does not belong to it and returns false.
[[nodiscard]] bool matchRecords(BuildState& build, ZanDwgMarkerList& list);

/// Pushes the opened history into the markers of the list that have options, and those below.
void applyOpenHistory(BuildState& build, ZanDwgMarkerList& list, CircuitRows circuitRows);

/// Parses the preset fields and looks up their components in the project. Missing ones are skipped; `observer` may be
/// null.
[[nodiscard]] BuildPresets readPresets(const ZanBuildArgs& args, TableObserver* observer);

/// Puts wires and component data of the presets into the markers of the list that have options, and those below.
void buildWireAnnotations(BuildState& build, ZanDwgMarkerList& list, CircuitRows circuitRows);

} // namespace brenvolt
