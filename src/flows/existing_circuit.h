// The circuit of the project that the user has picked to start from, and what its components say of installation and
// location.
#pragma once

#include "data/project_circuits.h"
#include "project/annotation_presets.h"

#include <vector>

namespace brenvolt {

/// The picked circuit's row in the project database; empty while none is picked. It outlives the dialogs, so that the
/// next selection finds it again.
using ExistingCircuit = TextRow;
[[nodiscard]] bool isPicked(const ExistingCircuit& circuit);

/// The row of a picked circuit as the project has it now; empty when the circuit, known by drawing index and handle, is
/// gone.
[[nodiscard]] ExistingCircuit refreshedCircuit(
    const ExistingCircuit& picked, const std::vector<TextRow>& rows);

/// Installation and location of each component that the picked circuit's preset text names: label is the CODE, the
/// attribute INST or LOC. A component without one value of its own gets the drawing's where tag and location are
/// combined, else an empty one. Empty without a picked circuit, a component or a project database.
/// `observer` may be null.
[[nodiscard]] std::vector<AnnotationRow> readComponentRows(const TextRow& circuit, TableObserver* observer);

} // namespace brenvolt
