// Finding the square of a box, and the squares that a search has to look into.
#include "simhost/drawing/entity_grid.h"

#include "simhost/drawing/display_list.h"

#include <algorithm>
#include <cmath>
#include <variant>

namespace simhost {

namespace {

/// Smaller squares than of side 8 would only make more of them: that is about a symbol.
constexpr int lowestLevel = 3;

/// Beyond this a square's number is not exact; everything farther out is in the last squares.
constexpr double farthest = 1e15;

std::int64_t numberOf(int level, double coordinate) {
  return static_cast<std::int64_t>(
      std::clamp(std::floor(std::ldexp(coordinate, -level)), -farthest, farthest));
}

} // namespace

std::size_t EntityGrid::SquareHash::operator()(const Square& square) const {
  constexpr std::uint64_t spread = 0x9E3779B97F4A7C15U;
  const std::uint64_t mixed = static_cast<std::uint64_t>(square.column) * spread;
  return static_cast<std::size_t>((mixed ^ (mixed >> 32U)) + static_cast<std::uint64_t>(square.row)) * spread;
}

Box EntityGrid::boxOf(const Shape& shape) {
  Box box;
  if (const auto* reference = std::get_if<BlockReference>(&shape)) {
    box.include(reference->position);
  } else if (const auto* definition = std::get_if<AttributeDefinition>(&shape)) {
    box = simhost::boxOf(definition->text);
  } else {
    box = simhost::boxOf(shape);
  }
  return box;
}

EntityGrid::Square EntityGrid::squareAt(int level, double x, double y) {
  return {numberOf(level, x), numberOf(level, y)};
}

EntityGrid::Place EntityGrid::placeOf(const Box& box) {
  int level = lowestLevel;
  const double extent = std::max(box.width(), box.height());
  // The next power of two above the extent; an extent beyond all numbers has the level above them.
  if (!std::isfinite(extent))
    level = 1025;
  else if (extent > 0.0)
    level = std::max(level, std::ilogb(extent) + 1);
  return {level, squareAt(level, box.left, box.bottom)};
}

void EntityGrid::insert(KvDbHandle handle, const Box& box) {
  const Place place = placeOf(box);
  levels_[place.level][place.square].push_back({handle, box});
  places_[handle.value()] = place;
}

void EntityGrid::remove(KvDbHandle handle) {
  const auto found = places_.find(handle.value());
  if (found == places_.end()) return;
  Level& level = levels_.at(found->second.level);
  const auto square = level.find(found->second.square);
  std::erase_if(square->second, [handle](const Member& member) { return member.handle == handle; });
  if (square->second.empty()) level.erase(square);
  if (level.empty()) levels_.erase(found->second.level);
  places_.erase(found);
}

std::vector<KvDbHandle> EntityGrid::meeting(const Box& area) const {
  std::vector<KvDbHandle> found;
  const auto collect = [&](const std::vector<Member>& members) {
    for (const Member& member : members)
      if (member.box.meets(area)) found.push_back(member.handle);
  };
  for (const auto& [number, level] : levels_) {
    // What begins one square before the area can still reach into it.
    Square first = squareAt(number, area.left, area.bottom);
    const Square last = squareAt(number, area.right, area.top);
    --first.column;
    --first.row;
    const double squares = (static_cast<double>(last.column - first.column) + 1.0) *
                           (static_cast<double>(last.row - first.row) + 1.0);
    if (squares > static_cast<double>(level.size())) {
      for (const auto& [square, members] : level)
        collect(members);
      continue;
    }
    for (std::int64_t column = first.column; column <= last.column; ++column)
      for (std::int64_t row = first.row; row <= last.row; ++row)
        if (const auto square = level.find({column, row}); square != level.end()) collect(square->second);
  }
  return found;
}

} // namespace simhost
