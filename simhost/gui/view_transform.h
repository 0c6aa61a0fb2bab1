// The position of the drawing on the screen: pixels grow to the right and downwards, the drawing's y upwards.
#pragma once

#include "simhost/drawing/picture_painter.h"

#include <QPoint>
#include <QPointF>
#include <QRectF>
#include <QSize>

#include <algorithm>
#include <cmath>

namespace simhost {

struct ViewTransform {
  double scale = 1.0;   ///< pixels for a drawing unit, above 0
  double originX = 0.0; ///< the pixel of the drawing's origin
  double originY = 0.0;

  [[nodiscard]] QPointF toScreen(const KvPoint3d& point) const {
    return {point.x * scale + originX, originY - point.y * scale};
  }
  [[nodiscard]] KvPoint3d toDrawing(const QPointF& pixel) const {
    return {(pixel.x() - originX) / scale, (originY - pixel.y()) / scale, 0.0};
  }
  /// The part of the drawing under a rectangle of pixels.
  [[nodiscard]] Box toDrawing(const QRectF& pixels) const {
    Box box;
    box.include(toDrawing(pixels.bottomLeft()));
    box.include(toDrawing(pixels.topRight()));
    return box;
  }
  /// The same for what paints pictures.
  [[nodiscard]] PicturePlace place() const { return {scale, {}, originX, originY}; }
  [[nodiscard]] ViewTransform moved(const QPoint& pixels) const {
    return {scale, originX + pixels.x(), originY + pixels.y()};
  }
  /// Zoomed with a fixed point under the pixel. Scales beyond the resolution of a screen are ignored.
  [[nodiscard]] ViewTransform zoomed(double factor, const QPointF& fixed) const {
    const double wanted = std::clamp(scale * factor, smallestScale, largestScale);
    const double ratio = wanted / scale;
    return {wanted, fixed.x() + (originX - fixed.x()) * ratio, fixed.y() + (originY - fixed.y()) * ratio};
  }
  /// Shows the whole box in the middle of a view of `size` pixels, with a margin around. An empty box shows the zero
  /// point.
  [[nodiscard]] static ViewTransform fitting(const Box& box, const QSize& size) {
    constexpr double margin = 24.0;
    const double width = std::max(1.0, size.width() - 2.0 * margin);
    const double height = std::max(1.0, size.height() - 2.0 * margin);
    if (box.isEmpty()) return {1.0, size.width() / 2.0, size.height() / 2.0};
    ViewTransform view;
    const double widest = std::max(box.width() / width, box.height() / height);
    view.scale = widest > 0.0 ? std::clamp(1.0 / widest, smallestScale, largestScale) : 1.0;
    view.originX = size.width() / 2.0 - (box.left + box.right) / 2.0 * view.scale;
    view.originY = size.height() / 2.0 + (box.bottom + box.top) / 2.0 * view.scale;
    return view;
  }

  static constexpr double smallestScale = 1e-6;
  static constexpr double largestScale = 1e6;
};

} // namespace simhost
