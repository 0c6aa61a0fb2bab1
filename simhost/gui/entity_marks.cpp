// Marking and stepping.
#include "simhost/gui/entity_marks.h"

#include <algorithm>
#include <utility>

namespace simhost {
namespace {

constexpr Colour hoverColour{0xff, 0x8c, 0x1a};
constexpr Colour selectionColour{0x1e, 0x90, 0xff};
constexpr Colour groupColour{0x6a, 0xb4, 0xf5};
constexpr Colour litColour{0x2e, 0xa0, 0x43};

bool comesFirst(KvDbHandle one, KvDbHandle other) {
  return one.value() < other.value();
}

} // namespace

void EntityMarks::changed() {
  if (onChanged) onChanged();
}

bool EntityMarks::isInGroup(KvDbHandle entity) const {
  return std::binary_search(group_.begin(), group_.end(), entity, comesFirst);
}

void EntityMarks::hover(std::optional<KvDbHandle> entity) {
  stepped_.reset();
  if (entity == hovered_) return;
  hovered_ = entity;
  changed();
}

void EntityMarks::select(std::optional<KvDbHandle> entity) {
  selected_ = entity;
  changed();
}

void EntityMarks::light(std::optional<KvDbHandle> entity) {
  if (entity == lit_) return;
  lit_ = entity;
  changed();
}

void EntityMarks::selectGroup(std::vector<KvDbHandle> entities) {
  group_ = std::move(entities);
  std::sort(group_.begin(), group_.end(), comesFirst);
  findGroupItems();
  changed();
}

void EntityMarks::sceneChanged() {
  hovered_.reset();
  findGroupItems();
}

void EntityMarks::findGroupItems() {
  groupItems_.clear();
  if (group_.empty()) return;
  for (std::uint32_t number = 0; number < scene_.items().size(); ++number) {
    const DisplayItem& item = scene_.items()[number];
    if (isInGroup(item.entity) && scene_.isShown(item)) groupItems_.push_back(number);
  }
}

Box EntityMarks::boxOf(KvDbHandle entity) const {
  Box box;
  for (const std::uint32_t item : scene_.itemsOf(entity))
    box.include(scene_.box(item));
  return box;
}

std::optional<Box> EntityMarks::step(int step) {
  std::vector<KvDbHandle> entities;
  for (const DisplayItem& item : scene_.items())
    if (scene_.isShown(item) && (entities.empty() || entities.back() != item.entity) &&
        isOffered(item.entity))
      entities.push_back(item.entity);
  if (entities.empty()) return std::nullopt;
  const auto count = static_cast<std::ptrdiff_t>(entities.size());
  const auto now = hovered_ ? std::find(entities.begin(), entities.end(), *hovered_) : entities.end();
  std::ptrdiff_t next = now == entities.end() ? (step > 0 ? 0 : count - 1) : now - entities.begin() + step;
  next = (next + count) % count;
  hovered_ = entities[static_cast<std::size_t>(next)];
  const Box area = boxOf(*hovered_);
  stepped_ = KvPoint3d{(area.left + area.right) / 2, (area.bottom + area.top) / 2, 0.0};
  changed();
  return area;
}

void EntityMarks::paint(
    QPainter& painter, const ViewTransform& view, Paper paper, double ratio, bool showsHover) const {
  paintItems(painter, view, paper, ratio, groupItems_, groupColour);
  if (selected_) paintItems(painter, view, paper, ratio, scene_.itemsOf(*selected_), selectionColour);
  if (lit_) paintLit(painter, view, paper, ratio);
  if (showsHover && hovered_ && hovered_ != selected_ && isOffered(*hovered_))
    paintItems(painter, view, paper, ratio, scene_.itemsOf(*hovered_), hoverColour);
}

/// A ring around it as well: a marker is small, and may be under wires.
void EntityMarks::paintLit(QPainter& painter, const ViewTransform& view, Paper paper, double ratio) const {
  paintItems(painter, view, paper, ratio, scene_.itemsOf(*lit_), litColour);
  const Box box = boxOf(*lit_);
  if (box.isEmpty()) return;
  const double space = 6.0 * ratio;
  const QRectF around =
      QRectF(view.toScreen({box.left, box.top, 0.0}), view.toScreen({box.right, box.bottom, 0.0}))
          .normalized()
          .adjusted(-space, -space, space, space);
  painter.setPen(QPen(colourOf(litColour), 2.0 * ratio));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(around, space, space);
}

void EntityMarks::paintItems(
    QPainter& painter, const ViewTransform& view, Paper paper, double ratio,
    const std::vector<std::uint32_t>& numbers, Colour colour) const {
  PictureStyle style;
  style.paper = paper;
  style.detail = Detail::screen;
  style.pixel = ratio;
  style.highlight = colour;
  PainterSink sink(painter);
  PicturePainter picture(sink, view.place(), style);
  for (const std::uint32_t number : numbers)
    picture.paint(scene_.items()[number], scene_.box(number));
}

} // namespace simhost
