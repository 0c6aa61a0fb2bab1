// Moving, and painting what is missing.
#include "simhost/gui/viewport.h"

#include <chrono>

namespace simhost {
namespace {

/// Of one turn of the event loop: short enough that a pan stays smooth.
constexpr std::chrono::milliseconds paintTime{12};
/// Margin around an area that is shown, as a fraction of it.
constexpr double roomAround = 0.25;

} // namespace

Viewport::Viewport(const Scene& scene) : scene_(scene), picture_(scene) {
  painting_.callOnTimeout([this] { paintOn(); });
}

void Viewport::setPaper(Paper paper) {
  paper_ = paper;
  picture_.setPaper(paper);
  refresh();
}

void Viewport::setGrid(bool isShown) {
  picture_.setGrid(isShown);
  refresh();
}

void Viewport::resize(const QSize& size, double ratio) {
  ratio_ = ratio;
  picture_.resize((QSizeF(size) * ratio).toSize(), ratio);
  if (isFitted_) return fit();
  refresh();
}

void Viewport::sceneChanged() {
  picture_.invalidate();
  if (isFitted_) return fit();
  refresh();
}

void Viewport::fit() {
  isFitted_ = true;
  picture_.setView(ViewTransform::fitting(scene_.extents(), image().size()));
  refresh();
}

void Viewport::zoomBy(double factor) {
  zoomAt(factor, QRectF(image().rect()).center());
}

void Viewport::zoomAt(double factor, const QPointF& pixel) {
  setView(view().zoomed(factor, pixel));
}

void Viewport::zoomTo(const Box& area) {
  setView(ViewTransform::fitting(area, image().size()));
}

void Viewport::panBy(const QPoint& pixels) {
  isFitted_ = false;
  picture_.pan(pixels);
  refresh();
}

void Viewport::show(const Box& area) {
  const Box now = seen();
  const bool isSeen =
      area.left >= now.left && area.right <= now.right && area.bottom >= now.bottom && area.top <= now.top;
  if (isSeen || image().isNull()) return;
  // A point, and what is only a little out of view, keeps the zoom.
  const bool fits =
      area.right - area.left <= now.right - now.left && area.top - area.bottom <= now.top - now.bottom;
  if (fits && (area.right <= area.left || area.top <= area.bottom)) {
    const QPointF middle = QRectF(image().rect()).center();
    const QPointF there = view().toScreen({(area.left + area.right) / 2, (area.bottom + area.top) / 2, 0.0});
    panBy((middle - there).toPoint());
  } else {
    const double dx = (area.right - area.left) * roomAround;
    const double dy = (area.top - area.bottom) * roomAround;
    zoomTo({area.left - dx, area.bottom - dy, area.right + dx, area.top + dy});
  }
}

void Viewport::paintSome() {
  if (!picture_.isComplete()) static_cast<void>(picture_.paint(paintTime));
}

void Viewport::finishPainting() {
  picture_.finish();
  refresh();
}

void Viewport::setView(const ViewTransform& view) {
  isFitted_ = false;
  picture_.setView(view);
  refresh();
}

void Viewport::refresh() {
  if (!picture_.isComplete() && !painting_.isActive()) painting_.start(0);
  if (onChanged) onChanged();
}

void Viewport::paintOn() {
  if (picture_.paint(paintTime)) painting_.stop();
  if (onChanged) onChanged();
}

} // namespace simhost
