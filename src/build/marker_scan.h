// Finds the markers that a template brought into the drawing.
#pragma once

#include "build/build_state.h"

#include <string_view>

namespace brenvolt {

/// The block whose references are markers, compared without case.
inline constexpr std::wstring_view markerBlock = L"ZAN_BV_MARKER_BLOCK";

/// Puts the markers that stand behind `afterHandle` in the build's space (from its start for the null handle) into the
/// list, in order: at `level` (1 for the template, one more for each nested insertion) and with the number of the
/// present run. Their wire settings go to the build, which keeps those of all scans, and to the maker of widget
/// managers. References that the list's tree holds already are skipped.
/// @return whether any marker came; false also when the space or the entity of the handle cannot be reached
bool scanMarkers(
    BuildState& build, ZanDwgMarkerList& list, KvDbDatabase& database, KvDbHandle afterHandle,
    std::int32_t level);

} // namespace brenvolt
