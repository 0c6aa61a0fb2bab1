// Finds the entities of a block near a position while the drawing changes: squares of many sizes, each entity in the
// square of its size that contains its lower left corner. A change takes one step in any drawing.
#pragma once

#include "simhost/drawing/box.h"
#include "simhost/drawing/entity.h"

#include <cstdint>
#include <map>
#include <unordered_map>
#include <vector>

namespace simhost {

class EntityGrid final {
public:
  /// The area of an entity: a block reference is at its position, whatever its block shows.
  [[nodiscard]] static Box boxOf(const Shape& shape);

  void insert(KvDbHandle handle, const Box& box);
  /// An entity that is not in it is passed over.
  void remove(KvDbHandle handle);
  /// The entities whose boxes overlap `area`, in no order.
  [[nodiscard]] std::vector<KvDbHandle> meeting(const Box& area) const;

private:
  struct Square {
    std::int64_t column = 0;
    std::int64_t row = 0;
    friend bool operator==(const Square&, const Square&) = default;
  };
  struct SquareHash {
    std::size_t operator()(const Square& square) const;
  };
  struct Member {
    KvDbHandle handle;
    Box box;
  };
  /// Squares with sides of a power of two; an entity is not larger than a square of its level.
  using Level = std::unordered_map<Square, std::vector<Member>, SquareHash>;
  struct Place {
    int level = 0;
    Square square;
  };

  [[nodiscard]] static Square squareAt(int level, double x, double y);
  [[nodiscard]] static Place placeOf(const Box& box);

  std::map<int, Level> levels_;
  std::unordered_map<std::uint64_t, Place> places_; ///< by handle
};

} // namespace simhost
