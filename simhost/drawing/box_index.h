// Finds the boxes that overlap a given one without testing all of them: a tree of boxes, built once.
#pragma once

#include "simhost/drawing/display_list.h"

#include <cstdint>
#include <span>
#include <vector>

namespace simhost {

class BoxIndex final {
public:
  BoxIndex() = default;
  /// Empty boxes, and those with a coordinate that is not a number, are never found.
  explicit BoxIndex(std::span<const Box> boxes);

  /// The numbers of the boxes that overlap `area`, ascending.
  [[nodiscard]] std::vector<std::uint32_t> meeting(const Box& area) const;
  /// The box around all.
  [[nodiscard]] const Box& extents() const { return extents_; }

private:
  struct Leaf {
    Box box;
    std::uint32_t number = 0;
  };
  /// A run of nodes below it, in `leaves_` for the lowest level, else in the level below.
  struct Node {
    Box box;
    std::uint32_t first = 0;
    std::uint32_t count = 0;
  };

  void collect(
      std::size_t level, std::uint32_t node, const Box& area, std::vector<std::uint32_t>& found) const;

  std::vector<Leaf> leaves_;
  std::vector<std::vector<Node>> levels_; ///< the lowest first; the last one has one node
  Box extents_;
};

} // namespace simhost
