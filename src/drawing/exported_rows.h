// The wire choices of a circuit as labelled fields, appended to the row that a motor or load page exports.
#pragma once

#include "data/circuit_data.h"
#include "drawing/annotation_rows.h"

#include <string>
#include <vector>

namespace brenvolt {

/// How many fields `exportRows` appends; after the nine of the motor or load data their places are 9 to 28.
inline constexpr std::size_t exportedRowCount = 20;

/// The same fields as texts that an earlier build has stored. Empty: there are none.
using StoredWireFields = std::vector<std::wstring>;

/// Appends the fields of a circuit, all of them texts: its choices when a wire was chosen, else those that were stored,
/// else empty texts and "0". The labels come from the resource module.
void exportRows(const ZanCircuitData& circuit, const StoredWireFields& stored, ZanAnnotationData& record);

} // namespace brenvolt
