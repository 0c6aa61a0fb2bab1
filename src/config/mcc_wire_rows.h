// The wire group of a motor's or load's page: two rows for each wire of the template, its size and its layer, the
// grounding wires after the conductors.
#pragma once

#include "drawing/annotation_rows.h"
#include "drawing/wire_formatter.h"
#include "widgets/group_spec.h"

#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// A wire layer of the active drawing.
struct WireLayer {
  std::wstring name;
  std::wstring numbers; ///< "1": its wires carry numbers, "0": they do not
};

/// The wire layers of the active drawing, sorted for a reader.
[[nodiscard]] std::vector<WireLayer> activeWireLayers();

/// The layers to choose from for a wire position, the one that its cell shows first: the first of the position's
/// numbering that fits its pattern, else the pattern as a layer to be made, else the first of the numbering, else a
/// default name.
[[nodiscard]] std::vector<std::wstring> layerChoices(
    const std::vector<WireLayer>& layers, const WireFormat& format);

/// The rows when the page is created, without sizes. The labels come from the resource module.
[[nodiscard]] std::vector<ZanGroupRow> wireRows(
    const ZanWireFormatter& formats, const std::vector<WireLayer>& layers);

/// The rows with the sizes filled in, and the layer names derived from them before the stored layers. The group's rows
/// are those of the page's creation; positions of nested templates are not added.
/// @param shown the rows as shown; their labels stay
/// @param kept the rows as the page came up, for their layers
/// @param suffix of the unit's code, with its dash
[[nodiscard]] std::vector<ZanGroupRow> sizedWireRows(
    const ZanWireFormatter& formats, const std::vector<ZanGroupRow>& shown,
    const std::vector<ZanGroupRow>& kept, std::wstring_view suffix, const WireSizes& sizes);

/// Whether the label of a row marks its wire as a grounding one: "W01E - Size" does, "W1 - Size" does not.
[[nodiscard]] bool isGroundingLabel(std::wstring_view label);

/// The wires as the history stores them. A circuit without a grounding row still gives one, with its grounding size.
[[nodiscard]] ZanAnnotationDataList exportWires(
    const std::vector<ZanGroupRow>& rows, std::wstring_view groundSize);

/// The size of the first grounding wire that was stored; empty without one.
[[nodiscard]] std::wstring storedGroundSize(const ZanAnnotationDataList& stored);

/// The values of the group's rows after an import; what the stored wires do not contain stays as shown.
[[nodiscard]] std::vector<std::wstring> importWires(
    const ZanWireFormatter& formats, const ZanAnnotationDataList& stored,
    const std::vector<ZanGroupRow>& shown, const std::wstring& groundSize);

} // namespace brenvolt
