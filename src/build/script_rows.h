// The walk over the markers of a build: for each, the script variables are set and the rows of its selection run; a
// form that inserts another template adds markers, which run before the walk continues.
#pragma once

#include "build/build_state.h"
#include "drawing/marker_tree.h"

#include <vector>

namespace brenvolt {

/// How deep templates may insert templates. A template that inserts itself without end stops here with a message; the
/// build then runs no further nested one, or two such forms in a template would build 2^64 of them.
inline constexpr std::int32_t deepestLevel = 64;

/// Runs the markers of the items in order. In an interactive build the first walk binds the undo manager and every
/// later one sets a mark. False when a marker's last row failed, a script variable cannot be set, or a quit was
/// requested; the rest is then not run.
[[nodiscard]] bool runMarkers(BuildState& build, const std::vector<ZanExecRecord>& items);

} // namespace brenvolt
