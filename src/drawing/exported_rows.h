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

/// Gives the fields of a motor's or load's data row the labels by which a page stores them: ratings, wire choices and
/// the field that marks the row. A field without a label, or a row without a name, is not saved with a configuration.
void labelSetupRow(ZanAnnotationData& row);

/// The same for a wire's row, the `number`th of its kind: size and layer.
void labelWireRow(ZanAnnotationData& row, bool isGrounding, int number);

} // namespace brenvolt
