// Column by column, the part of the line that is in it.
#include "circuits/netlist/squares.h"

#include <utility>

namespace circuits {

void Squares::putAlong(const simhost::Line& line, double reach, std::uint32_t number) {
  auto [from, to] = std::pair{line.from, line.to};
  if (to.x < from.x) std::swap(from, to);
  const auto heightAt = [from = from, to = to](double x) {
    return from.y + std::clamp((x - from.x) / (to.x - from.x), 0.0, 1.0) * (to.y - from.y);
  };
  const bool isUpright = from.x == to.x;
  const std::int32_t first = squareOf(from.x - reach);
  const std::int32_t last = squareOf(to.x + reach);
  for (std::int32_t column = first; column <= last; ++column) {
    // What is farther out than the squares counts to the first and the last of them.
    const double one = isUpright || column == first ? from.y : heightAt(column * side - reach);
    const double other = isUpright || column == last ? to.y : heightAt((column + 1) * side + reach);
    const auto [low, high] = std::minmax(one, other);
    const std::int32_t top = squareOf(high + reach);
    for (std::int32_t row = squareOf(low - reach); row <= top; ++row)
      put(column, row, number);
  }
}

} // namespace circuits
