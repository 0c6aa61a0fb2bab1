// Texts on wires where they cover nothing: a site draws a label at the middle of a wire, and here it is moved along the
// wire, to its other side, or to another wire of the same net, until it stands free.
#pragma once

#include "circuits/netlist/squares.h"
#include "simhost/drawing/box.h"
#include "simhost/drawing/display_list.h"
#include "simhost/drawing/drawing_database.h"

#include <vector>

namespace circuits {

/// Boxes by the squares of a grid: what lies at a place is found without asking all.
class CoveredAreas final {
public:
  void add(const simhost::Box& box);
  /// How much of the area the boxes cover; where several do, each counts.
  [[nodiscard]] double in(const simhost::Box& area) const;

private:
  std::vector<simhost::Box> boxes_;
  Squares squares_;
};

/// An attribute without a text takes no room, though it has a place.
[[nodiscard]] bool isEmptyText(const simhost::Shape& shape);

class LabelPlaces final {
public:
  /// What the drawing's current space shows now. The drawing must outlive it.
  explicit LabelPlaces(simhost::DrawingDatabase& drawing);
  /// The same from its display list.
  LabelPlaces(simhost::DrawingDatabase& drawing, const std::vector<simhost::DisplayItem>& items);

  /// Moves what a site has drawn for a net, texts and blocks with texts, from `drawnAt` to the best place at one of
  /// the wires. A block stays on its wire, whatever its text does: its place says whose label it is.
  void place(
      const std::vector<KvDbHandle>& drawn, const KvPoint3d& drawnAt,
      const std::vector<simhost::Line>& wires);

  /// The first of these places where the text covers least; the text counts as shown from then on.
  [[nodiscard]] simhost::Text freest(const std::vector<simhost::Text>& candidates);

private:
  void placeText(
      KvDbHandle text, const simhost::EntityNode* block, const KvPoint3d& drawnAt,
      const std::vector<simhost::Line>& wires);

  simhost::DrawingDatabase& drawing_;
  CoveredAreas shown_;
};

} // namespace circuits
