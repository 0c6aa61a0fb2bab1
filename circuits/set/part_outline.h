// What placing and numbering need to know of a built circuit, kept beside its drawing: sheets are planned without reading
// the drawings of all circuits.
#pragma once

#include "circuits/set/cross_references.h"
#include "simhost/drawing/box.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace circuits {

/// By which a drawing is known as the one that was written.
struct DrawingMark {
  std::size_t length = 0; ///< in bytes
  std::string digest{};
};

struct PartOutline {
  simhost::Box extents{}; ///< of what the drawing shows; empty for nothing
  std::vector<DeviceSymbols> symbols{};
  std::vector<LineEnd> lineEnds{};
  std::map<std::wstring, int> terminals{}; ///< how many there are of each strip
  DrawingMark drawing{};
};

[[nodiscard]] PartOutline outlineOf(const simhost::DrawingDatabase& drawing);

[[nodiscard]] std::string outlineText(const PartOutline& outline);
/// Nothing for a text that `outlineText` has not written.
[[nodiscard]] std::optional<PartOutline> readOutline(std::string_view text);

} // namespace circuits
