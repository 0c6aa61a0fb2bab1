// What is at a place of a drawing, found without a search through all: numbers by the squares of a grid.
#pragma once

#include "simhost/drawing/box.h"
#include "simhost/drawing/entity.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace circuits {

class Squares final {
public:
  /// Side of a square, about the length of a text.
  static constexpr double side = 16.0;

  /// What is farther out than any drawing counts as there, so that squares stay countable.
  [[nodiscard]] static std::int32_t squareOf(double coordinate) {
    constexpr double farthest = 1e5;
    return static_cast<std::int32_t>(std::floor(std::clamp(coordinate, -farthest, farthest) / side));
  }

  /// Calls `visit(column, row)` for each square that the box reaches into.
  template <class Visit>
  static void inBox(const simhost::Box& box, Visit visit) {
    for (std::int32_t column = squareOf(box.left); column <= squareOf(box.right); ++column)
      for (std::int32_t row = squareOf(box.bottom); row <= squareOf(box.top); ++row)
        visit(column, row);
  }

  void put(std::int32_t column, std::int32_t row, std::uint32_t number) {
    numbers_[keyOf(column, row)].push_back(number);
  }
  /// Puts the number into each square that has a point not farther from the line than `reach`; only along a slanting line
  /// into a few more. Their count grows with the length of the line, and not with the box around it.
  void putAlong(const simhost::Line& line, double reach, std::uint32_t number);

  /// In the order in which they were put.
  [[nodiscard]] const std::vector<std::uint32_t>& at(std::int32_t column, std::int32_t row) const {
    static const std::vector<std::uint32_t> none;
    const auto square = numbers_.find(keyOf(column, row));
    return square == numbers_.end() ? none : square->second;
  }

private:
  struct KeyHash {
    std::size_t operator()(std::uint64_t key) const {
      return static_cast<std::size_t>((key ^ (key >> 32U)) * 0x9E3779B97F4A7C15U);
    }
  };
  [[nodiscard]] static std::uint64_t keyOf(std::int32_t column, std::int32_t row) {
    return (static_cast<std::uint64_t>(static_cast<std::uint32_t>(column)) << 32U) |
           static_cast<std::uint32_t>(row);
  }

  std::unordered_map<std::uint64_t, std::vector<std::uint32_t>, KeyHash> numbers_;
};

} // namespace circuits
