// Assigns the wires of a preset to the wire positions of the template.
#pragma once

#include "build/preset_texts.h"
#include "drawing/annotation_rows.h"
#include "drawing/wire_formatter.h"

#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

enum class WirePass { conductors, grounding };

/// Appends a row for each wire position of the suffix: first word of its wire, layer or nil, kind. Wires of the other
/// pass take no position. Positions beyond the wires repeat the last one; in the grounding pass they repeat an empty
/// text when `layerValue` is empty, which is a fixed rule and no slip.
void expandWires(
    const std::vector<PresetWire>& wires, const ZanWireFormatter& formatter, std::wstring_view suffix,
    WirePass pass, std::wstring_view layerValue, ZanAnnotationDataList& rows);

} // namespace brenvolt
