// The LISP symbol by which scripts know the current marker: (index (handle ...) (value ...)).
#pragma once

#include "drawing/markers.h"

#include <cstdint>
#include <vector>

namespace brenvolt {

/// Sets the symbol before a run: index 0, the handles of all markers in tree order, the one value "-1".
/// @return false, the symbol unchanged, when a marker has no handle, LISP cannot run or the host refuses the list
bool PublishMarkerData(ZanDwgMarkerList& markers);

/// Puts `index` into the symbol and, unless `values` is empty, the values as decimal texts into its third element. A
/// list without a third element stays without one; a missing second becomes 0.
/// @return false when the symbol holds no list that begins with an integer, or LISP cannot run
bool SetMarkerData(std::int32_t index, const std::vector<std::int32_t>& values);

} // namespace brenvolt
