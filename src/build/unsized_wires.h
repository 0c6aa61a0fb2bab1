// Ensures that no wire of a motor or load is drawn without a size in silence. A direct build sizes wires without sizes
// by the rules of an unattended build: a saved configuration or a preset may contain the data without the wires, or
// neither. Each conductor and the grounding conductor count by themselves: sizes that are there stay, and do not hide one
// that is missing. In the dialog the user sizes them.
#pragma once

#include "build/build_state.h"

namespace brenvolt {

/// Fills the sizes in the rows of the markers of a list, and of the circuit as a whole where no marker is a motor or
/// load. What cannot be sized, and what no size of the tables is large enough for, is reported on the command line and
/// counted in `GBL_qn_bv_unsized_wires`, once for each motor or load.
void sizeUnsizedWires(BuildState& build, ZanDwgMarkerList& list);

/// At the end of the dialog: reports and counts the inserted motors and loads whose pages have wires and no size.
void reportUnsizedWires(const BuildState& build);

} // namespace brenvolt
