// Circuits on sheets: each by the extents of what it shows, in the order of the list, on frames that a site draws. A
// frame is a drawing whose variables say where circuits may go, in its own units:
// AREA_LEFT, AREA_BOTTOM, AREA_RIGHT, AREA_TOP, and PAPER_WIDTH, PAPER_HEIGHT.
#pragma once

#include "simhost/drawing/box.h"
#include "simhost/drawing/drawing_database.h"

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace circuits {

/// What a drawing shows in its current space; empty for nothing.
[[nodiscard]] simhost::Box shownExtents(const simhost::DrawingDatabase& drawing);

/// Where a frame lets circuits go. Throws BadInput, naming `file`, for a frame that does not say it.
[[nodiscard]] simhost::Box frameArea(const simhost::DrawingDatabase& frame, const std::string& file);

/// Which circuit comes where on one sheet: its place in the list and how far it is moved.
struct SheetPlan {
  std::vector<std::pair<std::size_t, KvPoint3d>> circuits;
};

/// Fills sheet after sheet in rows from the top, `gap` apart. A circuit without extents comes nowhere; one larger than
/// the area is named in `tooLarge` and comes nowhere either.
[[nodiscard]] std::vector<SheetPlan> planSheets(
    const std::vector<simhost::Box>& extents, const simhost::Box& area, double gap,
    std::vector<std::size_t>& tooLarge);

/// Texts by tag for the attributes of a sheet's frame.
using FrameTexts = std::vector<std::pair<std::wstring, std::wstring>>;
void fillFrame(simhost::DrawingDatabase& sheet, const FrameTexts& texts);

} // namespace circuits
