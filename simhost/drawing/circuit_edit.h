// Changes a circuit of a build as a whole: all entities with its mark, in both spaces. Undo sees each of these as the
// changes of its entities.
#pragma once

#include "simhost/drawing/drawing_database.h"

#include <string>
#include <string_view>
#include <vector>

namespace simhost {

/// What carries the mark of the circuit, in drawing order, attributes not counted.
[[nodiscard]] std::vector<KvDbHandle> entitiesOfCircuit(
    const DrawingDatabase& drawing, std::wstring_view circuit);

/// Erases it and what the drawing keeps of its build.
void eraseCircuit(DrawingDatabase& drawing, const std::wstring& circuit);

/// Moves all of it, and the point that its record keeps. Why it cannot go there; nothing when it has moved.
[[nodiscard]] Fault moveCircuit(DrawingDatabase& drawing, const std::wstring& circuit, double dx, double dy);

} // namespace simhost
