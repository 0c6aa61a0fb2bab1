// Ensures that no wire of a motor or load is drawn without a size in silence. Wires without sizes are sized by the rules
// of an unattended build, in a direct build and in the dialog alike: a saved configuration or a preset may contain the
// data without the wires, and a page knows the grounding conductor only when its wire lookup was opened. Each conductor
// and the grounding conductor count by themselves: sizes that are there stay, and do not hide one that is missing.
#pragma once

#include "build/build_state.h"

#include <vector>

namespace brenvolt {

/// Fills the sizes in the rows of the markers of a list, and of the circuit as a whole where no marker is a motor or
/// load. What cannot be sized, and what no size of the tables is large enough for, is reported on the command line and
/// counted in `GBL_qn_bv_unsized_wires`, once for each motor or load.
void sizeUnsizedWires(BuildState& build, ZanDwgMarkerList& list);

/// The same for what the pages of the dialog pass to the forms of a run, without a report: a page may still get its
/// motor. The pages themselves, and what is saved of them, stay as the user left them.
void sizeUnsizedPages(BuildState& build, std::vector<MotorRows>& pages);

/// At the end of the dialog: reports and counts what cannot be sized of the inserted motors and loads as their pages are
/// then.
void reportUnsizedWires(BuildState& build);

} // namespace brenvolt
