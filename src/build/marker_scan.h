// Finds the markers that a template brought into the drawing.
#pragma once

#include "drawing/markers.h"
#include "drawing/wire_formatter.h"
#include "host/host_api_database.h"

#include <cstdint>
#include <string>

namespace brenvolt {

/// The block whose references are markers, compared without case.
inline constexpr std::wstring_view markerBlock = L"ZAN_BV_MARKER_BLOCK";

/// What a scan gives the markers that it finds.
struct ScanStamp {
  std::int32_t level = 1; ///< 1 for the template, one more for each nested insertion
  std::int32_t run = 0;   ///< undo marks taken so far
};

/// Puts the markers that stand behind `afterHandle` in a block (from its start for the null handle) into the list, in
/// order, and their wire settings into the formatter. References that the list's tree holds already are skipped.
/// @return whether any marker came; false also when the block or the entity of the handle cannot be reached
bool scanMarkers(
    ZanDwgMarkerList& list, KvDbDatabase& database, const std::wstring& spaceName, KvDbHandle afterHandle,
    const ScanStamp& stamp, ZanWireFormatter& formatter);

} // namespace brenvolt
