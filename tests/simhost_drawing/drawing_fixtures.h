// Drawings that several tests start from.
#pragma once

#include "simhost/drawing/drawing_database.h"

#include <string_view>

namespace simhost::testing {

[[nodiscard]] Entity makeLine(double fromX, double fromY, double toX, double toY);
[[nodiscard]] Entity makeText(double x, double y, std::wstring_view text);
[[nodiscard]] Entity makeReference(KvDbHandle block, double x, double y);
[[nodiscard]] Entity makeAttribute(std::wstring_view tag, std::wstring_view text);

/// Every kind of entity once, a nested block, attributes, entity data, wire layers and variables of each type.
void fillWithEverything(DrawingDatabase& drawing);

/// A motor branch as a designer would draw it, with a starter block, wire layers and labels.
void drawMotorBranch(DrawingDatabase& drawing);

} // namespace simhost::testing
