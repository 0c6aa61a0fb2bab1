// Pointer and keys of the drawing, and what is painted over the kept picture.
#include "simhost/gui/drawing_view.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QWheelEvent>

#include <chrono>
#include <cmath>

namespace simhost {
namespace {

/// Of one turn of the event loop: short enough that a pan stays smooth.
constexpr std::chrono::milliseconds paintTime{12};
constexpr double pickReachPixels = 6.0;
constexpr int keyPanPixels = 60;
constexpr double keyZoom = 1.25;
/// A wheel's notch is 120 eighths of a degree.
constexpr double zoomPerNotch = 1.2;
constexpr double notch = 120.0;
/// A window smaller than this was a slip of the hand.
constexpr double smallestWindowPixels = 4.0;
const QColor hoverColour(0xff, 0x8c, 0x1a);
const QColor selectionColour(0x1e, 0x90, 0xff);

} // namespace

DrawingView::DrawingView(QWidget* parent) : QWidget(parent) {
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMinimumSize(200, 150);
  connect(&painting_, &QTimer::timeout, this, [this] { paintOn(); });
}

void DrawingView::sceneChanged() {
  picture_.invalidate();
  hovered_.reset();
  if (isFitted_) picture_.setView(ViewTransform::fitting(scene_.extents(), picture_.image().size()));
  refresh();
}

void DrawingView::setPaper(Paper paper) {
  paper_ = paper;
  picture_.setPaper(paper);
  refresh();
}

void DrawingView::setGrid(bool isShown) {
  picture_.setGrid(isShown);
  refresh();
}

void DrawingView::setMode(Mode mode) {
  if (mode == Mode::zoomWindow && mode_ != Mode::zoomWindow) modeBehindWindow_ = mode_;
  mode_ = mode;
  corner_.reset();
  point(pointer_);
  updateCursor();
  update();
}

void DrawingView::select(std::optional<KvDbHandle> entity) {
  selected_ = entity;
  update();
}

void DrawingView::zoomExtents() {
  isFitted_ = true;
  picture_.setView(ViewTransform::fitting(scene_.extents(), picture_.image().size()));
  refresh();
}

void DrawingView::zoomBy(double factor) {
  setView(view().zoomed(factor, QRectF(picture_.image().rect()).center()));
}

void DrawingView::zoomTo(const Box& area) {
  setView(ViewTransform::fitting(area, picture_.image().size()));
}

void DrawingView::panBy(const QPoint& pixels) {
  isFitted_ = false;
  picture_.pan(pixels);
  refresh();
}

void DrawingView::finishPainting() {
  picture_.finish();
  refresh();
}

void DrawingView::setView(const ViewTransform& view) {
  isFitted_ = false;
  picture_.setView(view);
  refresh();
}

void DrawingView::refresh() {
  if (!picture_.isComplete() && !painting_.isActive()) painting_.start(0);
  update();
}

void DrawingView::paintOn() {
  if (picture_.paint(paintTime)) painting_.stop();
  update();
}

void DrawingView::paintEvent(QPaintEvent* /*event*/) {
  // What a pan has brought into view is painted at once: a strip is small, and would flicker otherwise.
  if (!picture_.isComplete()) static_cast<void>(picture_.paint(paintTime));
  QPainter painter(this);
  painter.scale(1.0 / ratio(), 1.0 / ratio());
  painter.drawImage(0, 0, picture_.image());
  if (selected_) paintHighlight(painter, *selected_, selectionColour);
  const bool isPicking = mode_ == Mode::select || mode_ == Mode::pickEntity;
  if (hovered_ && isPicking && hovered_ != selected_) paintHighlight(painter, *hovered_, hoverColour);
  if (corner_) {
    painter.setPen(QPen(selectionColour, 1.0, Qt::DashLine));
    painter.drawRect(QRectF(*corner_ * ratio(), pointer_ * ratio()).normalized());
  }
  if (mode_ == Mode::pickPoint) {
    const QPointF at = pointer_ * ratio();
    painter.setPen(QPen(hoverColour, 1.0));
    painter.drawLine(QPointF(0.0, at.y()), QPointF(picture_.image().width(), at.y()));
    painter.drawLine(QPointF(at.x(), 0.0), QPointF(at.x(), picture_.image().height()));
  }
}

void DrawingView::paintHighlight(QPainter& painter, KvDbHandle entity, const QColor& colour) {
  PaintStyle style;
  style.paper = paper_;
  style.highlight = colour;
  ItemPainter items(painter, view(), style);
  for (const std::uint32_t number : scene_.itemsOf(entity))
    items.paint(scene_.items()[number], scene_.box(number));
}

void DrawingView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  picture_.resize((QSizeF(size()) * ratio()).toSize());
  if (isFitted_) zoomExtents();
  refresh();
}

void DrawingView::wheelEvent(QWheelEvent* event) {
  const double notches = event->angleDelta().y() / notch;
  if (notches != 0.0) setView(view().zoomed(std::pow(zoomPerNotch, notches), event->position() * ratio()));
  event->accept();
}

void DrawingView::mousePressEvent(QMouseEvent* event) {
  const bool isPan =
      event->button() == Qt::MiddleButton || (event->button() == Qt::LeftButton && isSpaceDown_);
  if (isPan) {
    dragStart_ = event->position();
    updateCursor();
    return;
  }
  if (event->button() == Qt::LeftButton) click(event->position());
}

void DrawingView::mouseMoveEvent(QMouseEvent* event) {
  if (dragStart_) {
    const QPoint moved = ((event->position() - *dragStart_) * ratio()).toPoint();
    *dragStart_ += QPointF(moved) / ratio();
    panBy(moved);
  }
  point(event->position());
}

void DrawingView::mouseReleaseEvent(QMouseEvent* event) {
  if (dragStart_) {
    dragStart_.reset();
    updateCursor();
    return;
  }
  if (corner_ && event->button() == Qt::LeftButton) finishZoomWindow(event->position());
}

void DrawingView::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
  case Qt::Key_Left:
    return panBy({keyPanPixels, 0});
  case Qt::Key_Right:
    return panBy({-keyPanPixels, 0});
  case Qt::Key_Up:
    return panBy({0, keyPanPixels});
  case Qt::Key_Down:
    return panBy({0, -keyPanPixels});
  case Qt::Key_Plus:
    return zoomBy(keyZoom);
  case Qt::Key_Minus:
    return zoomBy(1.0 / keyZoom);
  case Qt::Key_Home:
    return zoomExtents();
  case Qt::Key_Space:
    isSpaceDown_ = true;
    return updateCursor();
  case Qt::Key_Return:
  case Qt::Key_Enter:
    if (onEnter) onEnter();
    return;
  case Qt::Key_Escape:
    if (mode_ == Mode::zoomWindow) return setMode(modeBehindWindow_);
    if (mode_ == Mode::select) select(std::nullopt);
    if (onEscape) onEscape();
    return;
  default:
    QWidget::keyPressEvent(event);
  }
}

void DrawingView::keyReleaseEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Space) return QWidget::keyReleaseEvent(event);
  if (event->isAutoRepeat()) return;
  isSpaceDown_ = false;
  updateCursor();
}

void DrawingView::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  if (!hovered_) return;
  hovered_.reset();
  update();
}

void DrawingView::updateCursor() {
  if (dragStart_)
    setCursor(Qt::ClosedHandCursor);
  else if (isSpaceDown_)
    setCursor(Qt::OpenHandCursor);
  else if (mode_ == Mode::select)
    unsetCursor();
  else if (mode_ == Mode::pickEntity)
    setCursor(Qt::PointingHandCursor);
  else
    setCursor(Qt::CrossCursor);
}

void DrawingView::point(const QPointF& pixel) {
  pointer_ = pixel;
  const KvPoint3d at = view().toDrawing(pixel * ratio());
  const std::optional<KvDbHandle> found = scene_.entityAt(at, pickReachPixels * ratio() / view().scale);
  if (found != hovered_ || corner_ || mode_ == Mode::pickPoint) update();
  hovered_ = found;
  if (onPointer) onPointer(at);
}

void DrawingView::click(const QPointF& pixel) {
  setFocus();
  point(pixel);
  const KvPoint3d at = view().toDrawing(pixel * ratio());
  switch (mode_) {
  case Mode::select:
    select(hovered_);
    if (onSelected) onSelected();
    return;
  case Mode::zoomWindow:
    if (corner_)
      finishZoomWindow(pixel);
    else
      corner_ = pixel;
    return;
  case Mode::pickEntity:
  case Mode::pickPoint:
    if (onPick) onPick(at, hovered_);
  }
}

void DrawingView::finishZoomWindow(const QPointF& pixel) {
  const QRectF window = QRectF(*corner_, pixel).normalized();
  // A click without a drag is the first corner; the second one follows with the next click.
  if (window.width() < smallestWindowPixels || window.height() < smallestWindowPixels) return;
  const QRectF device(window.topLeft() * ratio(), window.size() * ratio());
  const Box area = view().toDrawing(device);
  setMode(modeBehindWindow_);
  zoomTo(area);
}

} // namespace simhost
