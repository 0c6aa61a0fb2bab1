// A saved configuration pushed back into a marker: its selections, its catalog rows, its motor, load and wire rows.
#pragma once

#include "drawing/annotation_rows.h"
#include "drawing/history.h"
#include "drawing/markers.h"

#include <functional>
#include <string>
#include <vector>

namespace brenvolt {

/// Names the wire types of the active drawing; asked only for markers with stored wires.
using WireTypeSource = std::function<std::vector<std::wstring>()>;

/// Applies the entry that the opened history has for the marker's key. A marker without one keeps its defaults.
/// Names of properties are words of the user's language and never looked at; two places go by position.
/// @param circuitControls the build's own list, which takes the same control rows; null when the build does not ask
///   for it. Each marker with control rows starts it anew, so that the last marker's rows stay.
/// @return whether the history has an entry for the marker
bool applyHistoryToMarker(
    ZanXmlHistory& history, ZanDwgMarker& marker, const WireTypeSource& wireTypes,
    ZanAnnotationDataList* circuitControls);

} // namespace brenvolt
