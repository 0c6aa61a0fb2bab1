// Pointer and keys of the drawing, and what is painted over the kept picture.
#include "simhost/gui/drawing_view.h"

#include "simhost/qt/host_style.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QRegularExpression>
#include <QWheelEvent>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

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
/// Places snap to this, in drawing units, and arrow keys move by it.
constexpr double snapStep = 5.0;
constexpr double fineStep = 1.0;
constexpr double snapReachPixels = 8.0;
/// Margin around an area that is shown, as a fraction of it.
constexpr double roomAround = 0.25;
bool comesFirst(KvDbHandle one, KvDbHandle other) {
  return one.value() < other.value();
}

const QColor overlapColour(0xd0, 0x20, 0x20);
const QColor hoverColour(0xff, 0x8c, 0x1a);
const QColor selectionColour(0x1e, 0x90, 0xff);
const QColor groupColour(0x6a, 0xb4, 0xf5);
const QColor litColour(0x2e, 0xa0, 0x43);

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
  findGroupItems();
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
  moved_.reset();
  typed_.clear();
  if (mode != Mode::pickPoint && mode != Mode::zoomWindow) outline_.reset();
  point(pointer_);
  updateCursor();
  update();
}

void DrawingView::select(std::optional<KvDbHandle> entity) {
  selected_ = entity;
  update();
}

void DrawingView::light(std::optional<KvDbHandle> entity) {
  if (entity == lit_) return;
  lit_ = entity;
  update();
}

void DrawingView::selectGroup(std::vector<KvDbHandle> entities) {
  group_ = std::move(entities);
  std::sort(group_.begin(), group_.end(), comesFirst);
  findGroupItems();
  update();
}

void DrawingView::findGroupItems() {
  groupItems_.clear();
  if (group_.empty()) return;
  for (std::uint32_t number = 0; number < scene_.items().size(); ++number) {
    const DisplayItem& item = scene_.items()[number];
    if (std::binary_search(group_.begin(), group_.end(), item.entity, comesFirst) && scene_.isShown(item))
      groupItems_.push_back(number);
  }
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
  // The strip that a pan makes visible is painted at once: it is small, and would flicker otherwise.
  if (!picture_.isComplete()) static_cast<void>(picture_.paint(paintTime));
  QPainter painter(this);
  painter.scale(1.0 / ratio(), 1.0 / ratio());
  painter.drawImage(0, 0, picture_.image());
  paintHighlight(painter, groupItems_, groupColour);
  if (selected_) paintHighlight(painter, scene_.itemsOf(*selected_), selectionColour);
  if (lit_) paintLit(painter);
  const bool isPicking = mode_ == Mode::select || mode_ == Mode::pickEntity;
  if (hovered_ && isPicking && hovered_ != selected_ && isOffered(*hovered_))
    paintHighlight(painter, scene_.itemsOf(*hovered_), hoverColour);
  if (corner_) {
    painter.setPen(QPen(selectionColour, 1.0, Qt::DashLine));
    painter.drawRect(QRectF(*corner_ * ratio(), pointer_ * ratio()).normalized());
  }
  if (mode_ == Mode::pickPoint) paintPlace(painter);
  if (hasFocus()) HostStyle::paintFocus(painter, picture_.image().rect(), palette());
}

bool DrawingView::isOffered(KvDbHandle entity) const {
  return mode_ != Mode::pickEntity || !fits_ || fits_(entity);
}

/// A ring around it as well: a marker is small, and may lie under wires.
void DrawingView::paintLit(QPainter& painter) {
  const std::vector<std::uint32_t> items = scene_.itemsOf(*lit_);
  paintHighlight(painter, items, litColour);
  Box box;
  for (const std::uint32_t item : items)
    box.include(scene_.box(item));
  if (box.isEmpty()) return;
  constexpr double space = 6.0; // pixels
  const QRectF around =
      QRectF(view().toScreen({box.left, box.top, 0.0}), view().toScreen({box.right, box.bottom, 0.0}))
          .normalized()
          .adjusted(-space, -space, space, space);
  painter.setPen(QPen(litColour, 2.0 * ratio()));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(around, space, space);
}

void DrawingView::paintPlace(QPainter& painter) const {
  const KvPoint3d place = pointed();
  const QPointF at = view().toScreen(place);
  const bool isTaken = overlaps(place);
  painter.setPen(QPen(isTaken ? overlapColour : hoverColour, 1.0));
  painter.drawLine(QPointF(0.0, at.y()), QPointF(picture_.image().width(), at.y()));
  painter.drawLine(QPointF(at.x(), 0.0), QPointF(at.x(), picture_.image().height()));
  if (outline_) {
    const QPointF low = view().toScreen({place.x + outline_->left, place.y + outline_->bottom, 0.0});
    const QPointF high = view().toScreen({place.x + outline_->right, place.y + outline_->top, 0.0});
    const QRectF area = QRectF(low, high).normalized();
    QColor fill = isTaken ? overlapColour : hoverColour;
    painter.setPen(QPen(fill, 2.0, Qt::DashLine));
    fill.setAlpha(0x22);
    painter.fillRect(area, fill);
    painter.drawRect(area);
  }
  const auto number = [](double value) { return QString::number(value, 'f', 2); };
  const QString told =
      typed_.isEmpty() ? number(place.x) + QStringLiteral(", ") + number(place.y) : typed_ + QLatin1Char('_');
  painter.setPen(QPen(isTaken ? overlapColour : hoverColour, 1.0));
  painter.drawText(at + QPointF(8.0, -8.0), told);
}

Box DrawingView::outlineAt(const KvPoint3d& point) const {
  Box area;
  area.include(point);
  if (!outline_) return area;
  return {
      outline_->left + point.x, outline_->bottom + point.y, outline_->right + point.x,
      outline_->top + point.y};
}

void DrawingView::setOutline(const std::optional<Box>& outline) {
  outline_ = outline;
  update();
}

bool DrawingView::overlaps(const KvPoint3d& point) const {
  if (!outline_) return false;
  const std::vector<std::uint32_t> met = scene_.itemsIn(outlineAt(point));
  if (!ignoresGroup_) return !met.empty();
  return std::any_of(met.begin(), met.end(), [this](std::uint32_t number) {
    return !std::binary_search(group_.begin(), group_.end(), scene_.items()[number].entity, comesFirst);
  });
}

KvPoint3d DrawingView::pointed() const {
  return moved_ ? *moved_ : snapped(pointer_);
}

KvPoint3d DrawingView::snapped(const QPointF& pixel) const {
  const KvPoint3d raw = view().toDrawing(pixel * ratio());
  KvPoint3d point{std::round(raw.x / snapStep) * snapStep, std::round(raw.y / snapStep) * snapStep, 0.0};
  // The rails of a neighbour: a horizontal line at the height of the pointer, anywhere in the view.
  const double reach = snapReachPixels * ratio() / view().scale;
  const Box seen = view().toDrawing(QRectF(picture_.image().rect()));
  const Box band{seen.left, raw.y - reach, seen.right, raw.y + reach};
  double nearest = reach;
  for (const std::uint32_t item : scene_.itemsIn(band)) {
    const auto* line = std::get_if<Line>(&scene_.items()[item].shape);
    if (line == nullptr || line->from.y != line->to.y || std::abs(line->to.x - line->from.x) <= snapStep)
      continue;
    if (std::abs(line->from.y - raw.y) >= nearest) continue;
    nearest = std::abs(line->from.y - raw.y);
    point.y = line->from.y;
  }
  return point;
}

void DrawingView::proposePoint(const KvPoint3d& point) {
  Box area = scene_.extents();
  area.include(outlineAt(point));
  showArea(area);
  moveTo(point);
}

void DrawingView::moveTo(const KvPoint3d& point) {
  moved_ = point;
  pointer_ = view().toScreen(point) / ratio();
  Box place;
  place.include(point);
  showArea(place);
  if (onPointer) onPointer(point);
  update();
}

void DrawingView::showArea(const Box& area) {
  const Box seen = view().toDrawing(QRectF(picture_.image().rect()));
  const bool isSeen = area.left >= seen.left && area.right <= seen.right && area.bottom >= seen.bottom &&
                      area.top <= seen.top;
  if (isSeen || picture_.image().isNull()) return;
  // A point, and what is only a little out of view, keeps the zoom.
  const bool fits =
      area.right - area.left <= seen.right - seen.left && area.top - area.bottom <= seen.top - seen.bottom;
  if (fits && (area.right <= area.left || area.top <= area.bottom)) {
    const QPointF middle = QRectF(picture_.image().rect()).center();
    const QPointF there = view().toScreen({(area.left + area.right) / 2, (area.bottom + area.top) / 2, 0.0});
    panBy((middle - there).toPoint());
  } else {
    const double dx = (area.right - area.left) * roomAround;
    const double dy = (area.top - area.bottom) * roomAround;
    zoomTo({area.left - dx, area.bottom - dy, area.right + dx, area.top + dy});
  }
  if (moved_) pointer_ = view().toScreen(*moved_) / ratio();
}

bool DrawingView::pickKey(const QKeyEvent& event) {
  if (mode_ == Mode::pickPoint) return pointKey(event);
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
    if (!hovered_ || !moved_ || !onPick) return false;
    onPick(*moved_, hovered_);
    return true;
  default:
    return false;
  }
}

bool DrawingView::pointKey(const QKeyEvent& event) {
  const double step = event.modifiers() & Qt::ShiftModifier ? fineStep : snapStep;
  KvPoint3d point = pointed();
  switch (event.key()) {
  case Qt::Key_Left:
    point.x -= step;
    break;
  case Qt::Key_Right:
    point.x += step;
    break;
  case Qt::Key_Down:
    point.y -= step;
    break;
  case Qt::Key_Up:
    point.y += step;
    break;
  case Qt::Key_Return:
  case Qt::Key_Enter:
    if (!typed_.isEmpty()) {
      answerTyped();
    } else if (onPick) {
      onPick(point, std::nullopt);
    }
    return true;
  case Qt::Key_Backspace:
    typed_.chop(1);
    update();
    return true;
  default: {
    const QString text = event.text();
    if (text.size() != 1 || !QStringLiteral("0123456789+-.,; ").contains(text)) return false;
    if (typed_.isEmpty() && !QStringLiteral("0123456789-.").contains(text)) return false;
    typed_ += text;
    update();
    return true;
  }
  }
  moveTo(point);
  return true;
}

/// "100,50", "100.5 -20" or "100;50".
void DrawingView::answerTyped() {
  static const QRegularExpression between(QStringLiteral("[,; ]+"));
  const QStringList parts = std::exchange(typed_, {}).split(between, Qt::SkipEmptyParts);
  bool isX = false;
  bool isY = false;
  const double x = parts.value(0).toDouble(&isX);
  const double y = parts.value(1).toDouble(&isY);
  update();
  if (parts.size() != 2 || !isX || !isY) {
    if (onBadCoordinates) onBadCoordinates();
    return;
  }
  moveTo({x, y, 0.0});
  if (onPick) onPick({x, y, 0.0}, std::nullopt);
}

/// The next entity in drawing order lights up, as if the pointer were over it.
void DrawingView::stepEntity(int step) {
  std::vector<KvDbHandle> entities;
  for (const DisplayItem& item : scene_.items())
    if (scene_.isShown(item) && (entities.empty() || entities.back() != item.entity) &&
        isOffered(item.entity))
      entities.push_back(item.entity);
  if (entities.empty()) return;
  const auto count = static_cast<std::ptrdiff_t>(entities.size());
  const auto now = hovered_ ? std::find(entities.begin(), entities.end(), *hovered_) : entities.end();
  std::ptrdiff_t next = now == entities.end() ? (step > 0 ? 0 : count - 1) : now - entities.begin() + step;
  next = (next + count) % count;
  hovered_ = entities[static_cast<std::size_t>(next)];
  Box area;
  for (const std::uint32_t item : scene_.itemsOf(*hovered_))
    area.include(scene_.box(item));
  showArea(area);
  moved_ = KvPoint3d{(area.left + area.right) / 2, (area.bottom + area.top) / 2, 0.0};
  if (onPointer) onPointer(*moved_);
  update();
}

void DrawingView::paintHighlight(
    QPainter& painter, const std::vector<std::uint32_t>& numbers, const QColor& colour) {
  PaintStyle style;
  style.paper = paper_;
  style.highlight = colour;
  ItemPainter items(painter, view(), style);
  for (const std::uint32_t number : numbers)
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
  if (pickKey(*event)) return;
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
    if (mode_ == Mode::select) {
      select(std::nullopt);
      if (onSelected) onSelected();
    }
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
  moved_.reset();
  const std::optional<KvDbHandle> found = scene_.entityAt(at, pickReachPixels * ratio() / view().scale);
  if (found != hovered_ || corner_ || mode_ == Mode::pickPoint) update();
  hovered_ = found;
  if (onPointer) onPointer(mode_ == Mode::pickPoint ? pointed() : at);
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
    if (onPick) onPick(at, hovered_);
    return;
  case Mode::pickPoint:
    if (onPick) onPick(pointed(), std::nullopt);
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
