// Packing by tiles: the boxes are cut into columns by their x, each column into runs by y, and the same again for the
// nodes, so that neighbours on the paper are neighbours in memory.
#include "simhost/drawing/box_index.h"

#include <algorithm>
#include <cmath>

namespace simhost {
namespace {

constexpr std::size_t fanOut = 16;

double middleX(const Box& box) {
  return box.left + box.right;
}
double middleY(const Box& box) {
  return box.bottom + box.top;
}

template <typename Row>
void sortByTiles(std::vector<Row>& rows) {
  const auto byX = [](const Row& one, const Row& other) { return middleX(one.box) < middleX(other.box); };
  const auto byY = [](const Row& one, const Row& other) { return middleY(one.box) < middleY(other.box); };
  const double runs = std::ceil(static_cast<double>(rows.size()) / fanOut);
  const std::size_t column = static_cast<std::size_t>(std::ceil(std::sqrt(runs))) * fanOut;
  std::stable_sort(rows.begin(), rows.end(), byX);
  for (std::size_t start = 0; start < rows.size(); start += column) {
    const std::size_t end = std::min(rows.size(), start + column);
    std::stable_sort(
        rows.begin() + static_cast<std::ptrdiff_t>(start), rows.begin() + static_cast<std::ptrdiff_t>(end),
        byY);
  }
}

} // namespace

BoxIndex::BoxIndex(std::span<const Box> boxes) {
  for (std::size_t number = 0; number < boxes.size(); ++number) {
    const Box& box = boxes[number];
    if (!std::isfinite(box.width()) || !std::isfinite(box.height())) continue;
    leaves_.push_back({box, static_cast<std::uint32_t>(number)});
    extents_.include(box);
  }
  if (leaves_.empty()) return;
  sortByTiles(leaves_);
  const auto pack = [](const auto& rows) {
    std::vector<Node> nodes;
    for (std::size_t start = 0; start < rows.size(); start += fanOut) {
      const std::size_t count = std::min(fanOut, rows.size() - start);
      Node node{{}, static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(count)};
      for (std::size_t row = start; row < start + count; ++row)
        node.box.include(rows[row].box);
      nodes.push_back(node);
    }
    return nodes;
  };
  levels_.push_back(pack(leaves_));
  while (levels_.back().size() > 1) {
    sortByTiles(levels_.back());
    levels_.push_back(pack(levels_.back()));
  }
}

std::vector<std::uint32_t> BoxIndex::meeting(const Box& area) const {
  std::vector<std::uint32_t> found;
  if (!levels_.empty()) collect(levels_.size() - 1, 0, area, found);
  std::sort(found.begin(), found.end());
  return found;
}

void BoxIndex::collect(
    std::size_t level, std::uint32_t node, const Box& area, std::vector<std::uint32_t>& found) const {
  const Node& here = levels_[level][node];
  if (!here.box.meets(area)) return;
  for (std::uint32_t below = here.first; below < here.first + here.count; ++below) {
    if (level > 0)
      collect(level - 1, below, area, found);
    else if (leaves_[below].box.meets(area))
      found.push_back(leaves_[below].number);
  }
}

} // namespace simhost
