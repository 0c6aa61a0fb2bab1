// The cached picture of a scene: moving it shifts the pixels and paints only the newly visible strips; after a zoom
// the old picture, scaled, is shown until the new one has been painted piece by piece. So panning costs only what
// becomes visible, and the screen does not freeze for large drawings.
#pragma once

#include "simhost/gui/painter_sink.h"
#include "simhost/gui/scene.h"
#include "simhost/gui/view_transform.h"

#include <QImage>
#include <QRegion>

#include <chrono>

namespace simhost {

class PictureCache final {
public:
  /// The scene must outlive it.
  explicit PictureCache(const Scene& scene) : scene_(scene) {}

  /// In pixels of the device, `ratio` of them for a pixel of the window. What is kept stays where it is.
  void resize(const QSize& size, double ratio = 1.0);
  void setPaper(Paper paper);
  void setGrid(bool isShown);
  /// Call when the scene has changed: everything is painted again, the old picture is shown meanwhile.
  void invalidate() { dirty_ = image_.rect(); }

  [[nodiscard]] const ViewTransform& view() const { return view_; }
  /// Shows the drawing elsewhere or at another scale.
  void setView(const ViewTransform& view);
  /// Shifts the picture by whole pixels.
  void pan(const QPoint& pixels);

  /// Paints what is missing, the middle of the view first, until all is there or the time is used up; at least one
  /// piece. True when all is there.
  bool paint(std::chrono::milliseconds time);
  /// Until all is there.
  void finish();
  [[nodiscard]] bool isComplete() const { return dirty_.isEmpty(); }
  [[nodiscard]] const QImage& image() const { return image_; }

private:
  void paintPiece(const QRect& piece);
  void paintGrid(QPainter& painter, const QRect& piece) const;

  const Scene& scene_;
  QImage image_;
  QRegion dirty_;
  ViewTransform view_;
  double ratio_ = 1.0;
  Paper paper_ = Paper::light;
  bool hasGrid_ = true;
};

/// The distance of grid lines in drawing units at a scale: 1, 2 or 5 times a power of ten, some pixels apart.
[[nodiscard]] double gridStep(double scale);

} // namespace simhost
