// Every candidate is measured by the area that it would cover: a text on a text is worse than a text across a line.
#include "circuits/set/label_places.h"

#include "simhost/drawing/display_list.h"
#include "simhost/drawing/distance.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
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

void addSegment(std::vector<Box>& boxes, const KvPoint3d& from, const KvPoint3d& to) {
  Box box;
  box.includeAround(from, lineReach);
  box.includeAround(to, lineReach);
  boxes.push_back(box);
}

/// A candidate: where the label's block stands, and how its text.
struct Candidate {
  KvPoint3d onWire;
  Text text;
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
        for (const KvPoint3d& side : {offset, mirrored}) {
          candidates.push_back({point, drawn});
          candidates.back().text.position = {point.x + side.x, point.y + side.y, 0.0};
        }
      if (isLevel(wire)) continue;
      for (const auto& [x, justification] :
           {std::pair{-textGap, simhost::Justification::right},
            std::pair{textGap, simhost::Justification::left}}) {
        candidates.push_back({point, drawn});
        Text& text = candidates.back().text;
        text.position = {point.x + x, point.y - drawn.height / 2.0, 0.0};
        text.rotationDegrees = 0.0;
        text.justification = justification;
      }
    }
  return candidates;
}

} // namespace

LabelPlaces::LabelPlaces(simhost::DrawingDatabase& drawing) : drawing_(drawing) {
  const auto items = simhost::displayList(drawing, drawing.currentSpace());
  if (!items) return;
  for (const simhost::DisplayItem& item : *items) {
    if (const auto* line = std::get_if<Line>(&item.shape)) {
      addSegment(shown_, line->from, line->to);
    } else if (const auto* outline = std::get_if<simhost::Polyline>(&item.shape)) {
      for (std::size_t point = 1; point < outline->points.size(); ++point)
        addSegment(shown_, outline->points[point - 1], outline->points[point]);
      if (outline->isClosed && !outline->points.empty())
        addSegment(shown_, outline->points.back(), outline->points.front());
    } else {
      shown_.push_back(simhost::boxOf(item.shape));
    }
  }
}

double LabelPlaces::covered(const Box& box) const {
  double area = 0.0;
  for (const Box& other : shown_) {
    const double width = std::min(box.right, other.right) - std::max(box.left, other.left);
    const double height = std::min(box.top, other.top) - std::max(box.bottom, other.bottom);
    if (width > 0.0 && height > 0.0) area += width * height;
  }
  return area;
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
  double least = std::numeric_limits<double>::infinity();
  Candidate best{drawnAt, shape};
  double order = 0.0;
  for (const Candidate& candidate : candidatesFor(shape, drawnAt, wires)) {
    const double cover = covered(simhost::boxOf(candidate.text)) + order;
    order += orderPenalty;
    if (cover >= least) continue;
    least = cover;
    best = candidate;
  }
  shown_.push_back(simhost::boxOf(best.text));
  shape = best.text;
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
    const double cover = covered(simhost::boxOf(candidate)) + order;
    order += orderPenalty;
    if (cover >= least) continue;
    least = cover;
    best = &candidate;
  }
  shown_.push_back(simhost::boxOf(*best));
  return *best;
}

} // namespace circuits
