// Mouse and keys of the drawing.
#include "simhost/gui/drawing_view.h"

#include "simhost/qt/host_style.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QWheelEvent>

#include <cmath>

namespace simhost {
namespace {

constexpr double pickReachPixels = 6.0;
constexpr int keyPanPixels = 60;
constexpr double keyZoom = 1.25;
/// A wheel's notch is 120 eighths of a degree.
constexpr double zoomPerNotch = 1.2;
constexpr double notch = 120.0;
/// A window smaller than this was a slip of the hand.
constexpr double smallestWindowPixels = 4.0;
const QColor windowColour(0x1e, 0x90, 0xff);

} // namespace

DrawingView::DrawingView(QWidget* parent) : QWidget(parent) {
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMinimumSize(200, 150);
  port_.onChanged = [this] {
    place_.viewChanged();
    update();
  };
  marks_.onChanged = [this] { update(); };
  place_.onChanged = [this] { update(); };
  place_.onMoved = [this](const KvPoint3d& point) {
    if (onPointer) onPointer(point);
  };
}

void DrawingView::sceneChanged() {
  marks_.sceneChanged();
  port_.sceneChanged();
}

void DrawingView::setMode(Mode mode) {
  if (mode == Mode::zoomWindow && mode_ != Mode::zoomWindow) modeBehindWindow_ = mode_;
  mode_ = mode;
  corner_.reset();
  place_.reset();
  if (mode != Mode::pickPoint && mode != Mode::zoomWindow) place_.setOutline(std::nullopt);
  point(place_.pixel());
  updateCursor();
  update();
}

void DrawingView::paintEvent(QPaintEvent* /*event*/) {
  port_.paintSome();
  QPainter painter(this);
  const double ratio = port_.ratio();
  painter.scale(1.0 / ratio, 1.0 / ratio);
  painter.drawImage(0, 0, port_.image());
  const bool isPicking = mode_ == Mode::select || mode_ == Mode::pickEntity;
  marks_.paint(painter, view(), port_.paper(), ratio, isPicking);
  if (corner_) {
    painter.setPen(QPen(windowColour, ratio, Qt::DashLine));
    painter.drawRect(QRectF(*corner_, place_.pixel()).normalized());
  }
  if (mode_ == Mode::pickPoint) place_.paint(painter);
  painter.resetTransform();
  if (hasFocus()) HostStyle::paintFocus(painter, rect(), palette());
}

void DrawingView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  port_.resize(size(), devicePixelRatioF());
}

void DrawingView::wheelEvent(QWheelEvent* event) {
  const double notches = event->angleDelta().y() / notch;
  if (notches != 0.0) port_.zoomAt(std::pow(zoomPerNotch, notches), event->position() * port_.ratio());
  event->accept();
}

void DrawingView::mousePressEvent(QMouseEvent* event) {
  const bool isPan =
      event->button() == Qt::MiddleButton || (event->button() == Qt::LeftButton && isSpaceDown_);
  const QPointF pixel = event->position() * port_.ratio();
  if (isPan) {
    dragStart_ = pixel;
    updateCursor();
    return;
  }
  if (event->button() == Qt::LeftButton) click(pixel);
}

void DrawingView::mouseMoveEvent(QMouseEvent* event) {
  const QPointF pixel = event->position() * port_.ratio();
  if (dragStart_) {
    const QPoint moved = (pixel - *dragStart_).toPoint();
    *dragStart_ += QPointF(moved);
    port_.panBy(moved);
  }
  point(pixel);
}

void DrawingView::mouseReleaseEvent(QMouseEvent* event) {
  if (dragStart_) {
    dragStart_.reset();
    updateCursor();
    return;
  }
  if (corner_ && event->button() == Qt::LeftButton) finishZoomWindow(event->position() * port_.ratio());
}

void DrawingView::keyPressEvent(QKeyEvent* event) {
  if (pickKey(*event)) return;
  switch (event->key()) {
  case Qt::Key_Left:
    return port_.panBy({keyPanPixels, 0});
  case Qt::Key_Right:
    return port_.panBy({-keyPanPixels, 0});
  case Qt::Key_Up:
    return port_.panBy({0, keyPanPixels});
  case Qt::Key_Down:
    return port_.panBy({0, -keyPanPixels});
  case Qt::Key_Plus:
    return port_.zoomBy(keyZoom);
  case Qt::Key_Minus:
    return port_.zoomBy(1.0 / keyZoom);
  case Qt::Key_Home:
    return port_.fit();
  case Qt::Key_Space:
    isSpaceDown_ = true;
    return updateCursor();
  case Qt::Key_Return:
  case Qt::Key_Enter:
    if (onEnter) onEnter();
    return;
  case Qt::Key_Escape:
    return escape();
  default:
    QWidget::keyPressEvent(event);
  }
}

void DrawingView::escape() {
  if (mode_ == Mode::zoomWindow) return setMode(modeBehindWindow_);
  if (mode_ == Mode::select) {
    marks_.select(std::nullopt);
    if (onSelected) onSelected();
  }
  if (onEscape) onEscape();
}

void DrawingView::keyReleaseEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Space) return QWidget::keyReleaseEvent(event);
  if (event->isAutoRepeat()) return;
  isSpaceDown_ = false;
  updateCursor();
}

void DrawingView::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  marks_.hover(std::nullopt);
}

bool DrawingView::pickKey(const QKeyEvent& event) {
  using Key = PlacePointer::Key;
  if (mode_ == Mode::pickPoint) {
    const Key key = place_.press(event);
    if (key == Key::chosen) pick(place_.point(), std::nullopt);
    if (key == Key::notAPoint && onBadCoordinates) onBadCoordinates();
    return key != Key::other;
  }
  if (mode_ != Mode::pickEntity) return false;
  switch (event.key()) {
  case Qt::Key_Right:
  case Qt::Key_Down:
    stepEntity(1);
    return true;
  case Qt::Key_Left:
  case Qt::Key_Up:
    stepEntity(-1);
    return true;
  case Qt::Key_Return:
  case Qt::Key_Enter:
    if (!marks_.hovered() || !marks_.stepped() || !onPick) return false;
    pick(*marks_.stepped(), marks_.hovered());
    return true;
  default:
    return false;
  }
}

void DrawingView::stepEntity(int step) {
  const std::optional<Box> area = marks_.step(step);
  if (!area) return;
  port_.show(*area);
  if (onPointer) onPointer(*marks_.stepped());
}

void DrawingView::pick(const KvPoint3d& point, std::optional<KvDbHandle> entity) const {
  if (onPick) onPick(point, entity);
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
  const QPointF place = pixel; // may be the pointer's own
  place_.follow(place);
  const KvPoint3d at = view().toDrawing(place);
  marks_.hover(scene_.entityAt(at, pickReachPixels * port_.ratio() / view().scale));
  if (corner_ || mode_ == Mode::pickPoint) update();
  if (onPointer) onPointer(mode_ == Mode::pickPoint ? place_.point() : at);
}

void DrawingView::click(const QPointF& pixel) {
  setFocus();
  point(pixel);
  const KvPoint3d at = view().toDrawing(pixel);
  switch (mode_) {
  case Mode::select:
    marks_.select(marks_.hovered());
    if (onSelected) onSelected();
    return;
  case Mode::zoomWindow:
    if (corner_)
      finishZoomWindow(pixel);
    else
      corner_ = pixel;
    return;
  case Mode::pickEntity:
    return pick(at, marks_.hovered());
  case Mode::pickPoint:
    return pick(place_.point(), std::nullopt);
  }
}

void DrawingView::finishZoomWindow(const QPointF& pixel) {
  const QRectF window = QRectF(*corner_, pixel).normalized();
  // A click without a drag is the first corner; the second one follows with the next click.
  const double smallest = smallestWindowPixels * port_.ratio();
  if (window.width() < smallest || window.height() < smallest) return;
  const Box area = view().toDrawing(window);
  setMode(modeBehindWindow_);
  port_.zoomTo(area);
}

} // namespace simhost
