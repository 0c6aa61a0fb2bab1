// Which part of the drawing is seen: moving about in it, and its picture, which is painted by and by.
#pragma once

#include "simhost/gui/picture_cache.h"

#include <QTimer>

#include <functional>

namespace simhost {

class Viewport final {
public:
  /// The scene must outlive it.
  explicit Viewport(const Scene& scene);
  Viewport(const Viewport&) = delete;
  Viewport& operator=(const Viewport&) = delete;

  [[nodiscard]] const ViewTransform& view() const { return picture_.view(); }
  /// Pixels of the device for one of the window.
  [[nodiscard]] double ratio() const { return ratio_; }
  /// In pixels of the device.
  [[nodiscard]] const QImage& image() const { return picture_.image(); }
  [[nodiscard]] Box seen() const { return view().toDrawing(QRectF(image().rect())); }
  [[nodiscard]] Paper paper() const { return paper_; }

  void setPaper(Paper paper);
  void setGrid(bool isShown);
  /// `size` in pixels of the window.
  void resize(const QSize& size, double ratio);
  void sceneChanged();

  /// Shows the whole drawing, and goes on doing so when drawing or window change, until the user moves.
  void fit();
  /// Around the middle of the view.
  void zoomBy(double factor);
  /// Around a pixel of the device.
  void zoomAt(double factor, const QPointF& pixel);
  void zoomTo(const Box& area);
  /// In pixels of the device.
  void panBy(const QPoint& pixels);
  /// Shows the area unless all of it is seen already.
  void show(const Box& area);

  /// Paints at once what a pan has made visible: it is small, and would flicker otherwise.
  void paintSome();
  /// Paints to the end instead of by and by.
  void finishPainting();

  /// The picture is another one.
  std::function<void()> onChanged;

private:
  void setView(const ViewTransform& view);
  void refresh();
  void paintOn();

  const Scene& scene_;
  PictureCache picture_;
  QTimer painting_; ///< runs while pieces of the picture are missing
  Paper paper_ = Paper::light;
  double ratio_ = 1.0;
  bool isFitted_ = true;
};

} // namespace simhost
