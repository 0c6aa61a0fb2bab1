// Parsing of the wire tables' texts: ranges of conduit fill and ambient temperature, factor texts, impedance cells.
// Pure functions on texts from the reader of the tables.
#pragma once

#include "data/wire_sizing.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// A factor text without trailing zeros; a point left bare gets one zero back: 0.80 is 0.8, 1.00 is 1.0.
[[nodiscard]] std::wstring normaliseFactor(std::wstring_view text);

/// Turns the upper limits of the fill table into ranges in place: 3, 6, 9, 20 become 1~3, 4~6, 7~9, >9. The last
/// limit is not used. A single limit is both ends of its range: 3 becomes 1~3.
void makeFillRanges(std::vector<std::wstring>& limits);

/// Turns ambient temperature ranges, named by their upper limit with a unit letter, into ranges in place (25C, 30C,
/// 35C become 0~25C, 26~30C, 31~35C) and returns the index of the last one that begins below `ambient` degrees: 30
/// selects the second of these.
[[nodiscard]] std::size_t makeAmbientRanges(std::vector<std::wstring>& brackets, int ambient);

/// The degrees of an option text such as "30C"; a trailing C of either case is dropped.
[[nodiscard]] int ambientDegrees(std::wstring_view option);

/// An impedance cell "x;r". Nothing without a semicolon.
[[nodiscard]] std::optional<Impedance> parseImpedance(std::wstring_view cell);

/// A row of the impedance table for one raceway.
struct ImpedanceRow {
  std::wstring size;
  std::wstring cell;
};

/// The rows between which a size without a cell is interpolated: of its unit word, with a cell of their own.
struct ImpedanceNeighbours {
  std::optional<ImpedanceRow> lower;
  std::optional<ImpedanceRow> upper;
  bool hasOwnRow = false; ///< the size itself is in the table
};
[[nodiscard]] ImpedanceNeighbours impedanceNeighbours(
    const std::vector<ImpedanceRow>& rows, std::wstring_view size);

/// The impedance of a size whose own cell is empty, by linear interpolation between its neighbours of the same unit
/// word ("250 KCMIL" never with "4/0"); at an end the one neighbour's. Zero for a size that has no row of its own.
/// Nothing when there is no neighbour with a cell, or a neighbour's cell is not an impedance.
[[nodiscard]] std::optional<Impedance> interpolateImpedance(
    const ImpedanceNeighbours& neighbours, std::wstring_view size);

/// A size text as its leading number and the unit word after it: trimmed, without case, "number" when empty. "1/0" is
/// the number 1 of the word "/0".
struct SizeNumber {
  double number = 0.0;
  std::wstring unit;
};
[[nodiscard]] SizeNumber splitSize(std::wstring_view size);

} // namespace brenvolt
