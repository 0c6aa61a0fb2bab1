// Every candidate is measured by the area that it would cover: a text on a text is worse than a text across a line.
#include "circuits/set/label_places.h"

#include "simhost/drawing/display_list.h"
#include "simhost/drawing/distance.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>
#include <utility>

namespace circuits {

using simhost::Box;
using simhost::Line;
using simhost::Text;

namespace {

/// Half of the width that a line takes.
constexpr double lineReach = 0.15;
/// Between a wire and a text that stands beside it.
constexpr double textGap = 0.8;
/// Places along a wire, as parts of its length, in the order in which they are tried.
constexpr std::array alongWire = {0.5, 0.35, 0.65, 0.2, 0.8};
/// Candidates that cover the same are taken in their order.
constexpr double orderPenalty = 0.001;
/// A place later among those of a reference is farther from its symbol.
constexpr double referencePenalty = 0.4;
/// On the other side than the site has drawn it: numbers above and sizes below are found sooner, so another place along the
/// wire goes first.
constexpr double otherSidePenalty = 0.05;
/// A text farther from its wire, by its own height and a little: only where nothing nearer is free. The second row is for
/// the size of a wire whose number has the first one.
constexpr double fartherHeights = 1.5;
constexpr double fartherPenalty = 0.5;
constexpr std::array rowsFarther = {0.0, 1.0, 2.0};
/// Labels are capitals and digits, which are wider than the mean of letters by this part.
constexpr std::size_t widerBy = 7;
constexpr double textMargin = 0.3;

/// Above and below they take less than the mean, by this part of their height.
constexpr double lowerBy = 0.2;

/// As wide as it is taken to be.
Text widened(Text text) {
  text.text.append(text.text.size() / widerBy, L'0');
  return text;
}

/// What a label takes that was widened, with a little air.
Box roomOf(const Text& text) {
  const Box box = simhost::boxOf(text);
  const bool isUpright = std::abs(std::cos(text.rotationDegrees * std::numbers::pi / 180.0)) < 0.5;
  const double less = lowerBy * text.height - textMargin;
  const double x = isUpright ? less : -textMargin;
  const double y = isUpright ? -textMargin : less;
  return {box.left + x, box.bottom + y, box.right - x, box.top - y};
}

void addSegment(CoveredAreas& areas, const KvPoint3d& from, const KvPoint3d& to) {
  Box box;
  box.includeAround(from, lineReach);
  box.includeAround(to, lineReach);
  areas.add(box);
}

/// A candidate: where the label's block is, and how its text.
struct Candidate {
  KvPoint3d onWire;
  KvPoint3d position;
  double rotationDegrees = 0.0;
  simhost::Justification justification = simhost::Justification::left;
  double penalty = 0.0;

  void place(Text& text) const {
    text.position = position;
    text.rotationDegrees = rotationDegrees;
    text.justification = justification;
  }
};

/// Along the wires as the site has drawn it, then on the other side; beside an upright wire also level.
std::vector<Candidate> candidatesFor(
    const Text& drawn, const KvPoint3d& drawnAt, const std::vector<Line>& wires) {
  const bool isLevelText = std::abs(drawn.rotationDegrees) < 1.0;
  const KvPoint3d offset{drawn.position.x - drawnAt.x, drawn.position.y - drawnAt.y, 0.0};
  const KvPoint3d mirrored = isLevelText ? KvPoint3d{offset.x, -offset.y - drawn.height, 0.0}
                                         : KvPoint3d{-offset.x + drawn.height, offset.y, 0.0};
  std::vector<Candidate> candidates;
  for (const Line& wire : wires)
    for (const double part : alongWire) {
      const KvPoint3d point{
          wire.from.x + part * (wire.to.x - wire.from.x), wire.from.y + part * (wire.to.y - wire.from.y),
          0.0};
      if (isLevel(wire) == isLevelText)
        for (const double rows : rowsFarther)
          for (const auto& [side, penalty] :
               {std::pair{offset, 0.0}, std::pair{mirrored, otherSidePenalty}}) {
            const double farther = rows * fartherHeights * drawn.height;
            const double x = isLevelText ? 0.0 : std::copysign(farther, side.x);
            const double y = isLevelText ? std::copysign(farther, side.y) : 0.0;
            candidates.push_back(
                {point,
                 {point.x + side.x + x, point.y + side.y + y, 0.0},
                 drawn.rotationDegrees,
                 drawn.justification,
                 rows * fartherPenalty + penalty});
          }
      if (isLevel(wire)) continue;
      for (const auto& [x, justification] :
           {std::pair{-textGap, simhost::Justification::right},
            std::pair{textGap, simhost::Justification::left}})
        candidates.push_back({point, {point.x + x, point.y - drawn.height / 2.0, 0.0}, 0.0, justification});
    }
  return candidates;
}

} // namespace

bool isEmptyText(const simhost::Shape& shape) {
  const auto* text = std::get_if<Text>(&shape);
  return text != nullptr && text->text.empty();
}

void CoveredAreas::add(const Box& box) {
  if (box.isEmpty()) return;
  const auto number = static_cast<std::uint32_t>(boxes_.size());
  boxes_.push_back(box);
  Squares::inBox(box, [&](std::int32_t column, std::int32_t row) { squares_.put(column, row, number); });
}

double CoveredAreas::in(const Box& area) const {
  double covered = 0.0;
  Squares::inBox(area, [&](std::int32_t column, std::int32_t row) {
    for (const std::uint32_t number : squares_.at(column, row)) {
      const Box& other = boxes_[number];
      const double left = std::max(area.left, other.left);
      const double bottom = std::max(area.bottom, other.bottom);
      // A box that several squares have counts in the one where the common part begins.
      if (Squares::squareOf(left) != column || Squares::squareOf(bottom) != row) continue;
      const double width = std::min(area.right, other.right) - left;
      const double height = std::min(area.top, other.top) - bottom;
      if (width > 0.0 && height > 0.0) covered += width * height;
    }
  });
  return covered;
}

LabelPlaces::LabelPlaces(simhost::DrawingDatabase& drawing)
    : LabelPlaces(
          drawing, simhost::displayList(drawing, drawing.currentSpace())
                       .value_or(std::vector<simhost::DisplayItem>())) {}

LabelPlaces::LabelPlaces(simhost::DrawingDatabase& drawing, const std::vector<simhost::DisplayItem>& items)
    : drawing_(drawing) {
  for (const simhost::DisplayItem& item : items) {
    if (const auto* line = std::get_if<Line>(&item.shape)) {
      addSegment(shown_, line->from, line->to);
    } else if (const auto* outline = std::get_if<simhost::Polyline>(&item.shape)) {
      for (std::size_t point = 1; point < outline->points.size(); ++point)
        addSegment(shown_, outline->points[point - 1], outline->points[point]);
      if (outline->isClosed && !outline->points.empty())
        addSegment(shown_, outline->points.back(), outline->points.front());
    } else if (!isEmptyText(item.shape)) {
      shown_.add(simhost::boxOf(item.shape));
    }
  }
}

void LabelPlaces::place(
    const std::vector<KvDbHandle>& drawn, const KvPoint3d& drawnAt, const std::vector<Line>& wires) {
  for (const KvDbHandle handle : drawn) {
    const simhost::EntityNode* node = drawing_.find(handle);
    if (node == nullptr) continue;
    if (node->value.kind() == simhost::EntityKind::text) placeText(handle, nullptr, drawnAt, wires);
    for (const KvDbHandle attribute : std::vector<KvDbHandle>(node->attributes))
      if (const simhost::EntityNode* text = drawing_.find(attribute);
          text != nullptr && std::get<simhost::Attribute>(text->value.shape).isVisible)
        placeText(attribute, node, drawnAt, wires);
  }
}

void LabelPlaces::placeText(
    KvDbHandle text, const simhost::EntityNode* block, const KvPoint3d& drawnAt,
    const std::vector<Line>& wires) {
  simhost::Entity value = drawing_.find(text)->value;
  Text& shape =
      block == nullptr ? std::get<Text>(value.shape) : std::get<simhost::Attribute>(value.shape).text;
  Text room = widened(shape);
  double least = std::numeric_limits<double>::infinity();
  Candidate best{drawnAt, shape.position, shape.rotationDegrees, shape.justification};
  double order = 0.0;
  for (const Candidate& candidate : candidatesFor(shape, drawnAt, wires)) {
    if (order >= least) break; // however little the others cover
    const double penalty = candidate.penalty + std::exchange(order, order + orderPenalty);
    if (penalty >= least) continue;
    candidate.place(room);
    const double cover = shown_.in(roomOf(room)) + penalty;
    if (cover >= least) continue;
    least = cover;
    best = candidate;
  }
  best.place(room);
  shown_.add(roomOf(room));
  best.place(shape);
  drawing_.changeEntity(text, std::move(value));
  if (block == nullptr) return;
  simhost::Entity reference = drawing_.find(block->handle)->value;
  std::get<simhost::BlockReference>(reference.shape).position = best.onWire;
  drawing_.changeEntity(block->handle, std::move(reference));
}

Text LabelPlaces::freest(const std::vector<Text>& candidates) {
  const Text* best = &candidates.front();
  double least = std::numeric_limits<double>::infinity();
  double order = 0.0;
  for (const Text& candidate : candidates) {
    if (order >= least) break; // however little the others cover
    const double cover =
        shown_.in(roomOf(widened(candidate))) + std::exchange(order, order + referencePenalty);
    if (cover >= least) continue;
    least = cover;
    best = &candidate;
  }
  shown_.add(roomOf(widened(*best)));
  return *best;
}

} // namespace circuits
