// A saved configuration pushed back into a marker: its selections, its catalog rows, its motor, load and wire rows.
#pragma once

#include "drawing/annotation_rows.h"
#include "drawing/history.h"
#include "drawing/markers.h"

#include <functional>
#include <string>
#include <vector>

namespace brenvolt {

/// Returns the wire types of the active drawing; called only for markers with stored wires.
using WireTypeSource = std::function<std::vector<std::wstring>()>;

/// Applies the entry that the opened history has for the marker's key. A marker without one keeps its defaults.
/// Names of properties are in the user's language and ignored; two values are found by position.
/// @param circuitControls the build's own list, which gets the same control rows; null when the build does not need
///   it. Each marker with control rows clears it first, so that the last marker's rows stay.
/// @return whether the history has an entry for the marker
bool applyHistoryToMarker(
    ZanXmlHistory& history, ZanDwgMarker& marker, const WireTypeSource& wireTypes,
    ZanAnnotationDataList* circuitControls);

} // namespace brenvolt
