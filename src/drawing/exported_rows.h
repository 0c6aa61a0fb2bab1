// The wire choices of the circuit in hand as labelled fields, appended to the row that a motor or load page exports.
#pragma once

#include "drawing/annotation_rows.h"

namespace brenvolt {

/// How many fields `exportRows` appends; behind the nine of the motor or load data they stand at 9 to 28.
inline constexpr std::size_t exportedRowCount = 20;

/// Appends the fields of `circuitData()`, all of them texts: the choices when a wire was chosen, else empty texts and
/// "0". The labels come from the resource module.
void exportRows(ZanAnnotationData& record);

} // namespace brenvolt
