// The positions of a placed block's parts: moving, rotating and scaling points, shared by insertion and pictures.
#pragma once

#include "simhost/drawing/entity.h"

namespace simhost {

/// Similarity in the plane; z is scaled and moved only.
class Placement final {
public:
  Placement() = default;
  /// Maps `base` to `position`. Angle in degrees; a negative scale turns by 180 degrees, as it holds for all axes.
  Placement(const KvPoint3d& base, const KvPoint3d& position, double scale, double rotationDegrees);

  /// This placement after `inner`: what `inner` puts into a block, this one puts into the drawing.
  [[nodiscard]] Placement of(const Placement& inner) const;
  [[nodiscard]] KvPoint3d apply(const KvPoint3d& point) const;
  /// Lengths are scaled by the amount of the scale.
  [[nodiscard]] double length(double value) const;
  [[nodiscard]] double angle(double degrees) const;
  [[nodiscard]] double scale() const { return scale_; }
  [[nodiscard]] double rotationDegrees() const { return rotationDegrees_; }

private:
  KvPoint3d offset_;
  double scale_ = 1.0;
  double rotationDegrees_ = 0.0;
};

/// The point at the distance and angle from a centre. Multiples of 90 degrees come out exact.
[[nodiscard]] KvPoint3d pointAt(const KvPoint3d& centre, double radius, double degrees);

/// The shape moved by the placement; a block reference keeps its block.
[[nodiscard]] Shape placed(const Shape& shape, const Placement& placement);

} // namespace simhost
