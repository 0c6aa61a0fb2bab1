// Markers to units and back: the tree of units is made from the markers that have options, and what the user chose in
// a unit is taken back into its marker.
#pragma once

#include "config/config_units.h"
#include "drawing/marker_tree.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace brenvolt {

/// What making units needs of a build.
struct UnitMaking {
  /// Makes and binds the managers of a new unit. May be empty: units then have no managers.
  std::function<void(ZanConfigUnit&)> makeManagers;
  /// Receives the units that repeat one of their list. They stay alive, because their managers are created before the
  /// repetition is found, but they are not shown. Lives as long as the build.
  ZanConfigUnitList& duplicates;
};

/// Makes a unit for each marker of the tree that has option groups. Units of a marker's child list go below its unit;
/// below a marker without options they go below the unit before it, or into the same list when there is none.
void BuildConfigUnits(ZanDwgMarkerList& markers, ZanConfigUnitList& units, const UnitMaking& making);

/// The same for a tree that has grown: markers that have their unit keep it.
void RefreshConfigUnits(ZanDwgMarkerList& markers, ZanConfigUnitList& units, const UnitMaking& making);

/// For each pending unit: notes the run in it, copies record and rows into its marker, and collects that marker and
/// those after it up to the next with option groups.
/// @param markers any list of the tree: markers are found in all of it
/// @param step number of the insertion run
void ApplyConfigUnits(
    ZanDwgMarkerList& markers, const ZanConfigUnitList& units, std::uint32_t step,
    std::vector<ZanExecRecord>& items);

/// Copies record and rows of each pending unit into its marker.
void CopyUnitsToMarkers(ZanDwgMarkerList& markers, const ZanConfigUnitList& units);

} // namespace brenvolt
