// Distances and directions in the plane of the drawing, in drawing units: for a pointer, for the ends of wires.
#pragma once

#include "simhost/drawing/entity.h"

namespace simhost {

[[nodiscard]] double distanceBetween(const KvPoint3d& one, const KvPoint3d& other);
/// From the nearest point of the segment; of its one point when both ends are equal.
[[nodiscard]] double distanceToSegment(const KvPoint3d& point, const KvPoint3d& from, const KvPoint3d& to);
/// From what is drawn of the shape; 0 within the box of a text. A block reference itself draws nothing: infinity.
[[nodiscard]] double distanceTo(const Shape& shape, const KvPoint3d& point);
/// Whether the line runs from side to side rather than up or down.
[[nodiscard]] bool isLevel(const Line& line);

} // namespace simhost
