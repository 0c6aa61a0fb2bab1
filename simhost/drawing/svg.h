// Pictures of drawings: one space as an SVG, dark on white, the way a plot of it would look.
#pragma once

#include "simhost/drawing/drawing_database.h"

#include <string>

namespace simhost {

struct SvgPicture {
  std::string svg;    ///< UTF-8
  std::wstring error; ///< empty on success
};

/// The block's entities with their layers' colours and line types, block references resolved, visible attributes as
/// texts, a margin around. Attribute definitions show their tag in a space and nothing inside a placed block. The
/// longer side has 1200 pixels. Fails for blocks so nested that the picture would have more than half a million
/// shapes.
[[nodiscard]] SvgPicture renderSvg(const DrawingDatabase& drawing, KvDbHandle block);

/// Renders the current space into a file, replaced whole; the reason of a failure, nothing on success.
[[nodiscard]] Fault saveSvg(const DrawingDatabase& drawing, const std::wstring& path);

} // namespace simhost
