// Finds the markers of a template in the drawing.
#pragma once

#include "drawing/markers.h"
#include "drawing/wire_formatter.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// The block whose references are markers, compared without case.
inline constexpr std::wstring_view markerBlock = L"ZAN_BV_MARKER_BLOCK";

/// Where a scan looks, and what its markers are.
struct ScanPlace {
  std::wstring spaceName; ///< the block that receives the circuit
  KvDbHandle afterHandle; ///< of the entity after which it begins; null: at the start
  std::int32_t level = 1; ///< 1 for the circuit's template, one more for each nested one
  std::int32_t run = 0;   ///< the run that adds the markers; undoing it removes them
};

/// The result of scanning a template.
struct MarkerScan {
  std::vector<ZanDwgMarker> markers; ///< in the order of the drawing
  ZanWireFormatter wires;            ///< the positions that its WT markers declare
};

/// Reads the markers after an entity. References that are markers of the tree of `known` already are left out, and
/// those without a CODE. Empty also when the space or the entity cannot be reached.
[[nodiscard]] MarkerScan scanMarkers(
    KvDbDatabase& database, const ScanPlace& place, const ZanDwgMarkerList& known);

} // namespace brenvolt
