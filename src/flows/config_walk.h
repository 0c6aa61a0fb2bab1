// Every unit of a configuration with the one that holds it, in the order of the tree on the screen.
#pragma once

#include "config/config_units.h"

namespace brenvolt {

/// Calls `visit(unit, parent)` for each unit, parents before their children; `parent` is null in the root list. The
/// lists must not change meanwhile.
template <class Visit>
void forEachUnit(const ZanConfigUnitList& units, Visit&& visit) {
  ZanConfigUnitListIterator walk(&units);
  for (walk.First(); !walk.IsDone(); walk.Next())
    visit(*walk.Current(), walk.Parent());
}

} // namespace brenvolt
