// What a picker starts from and ends with: the ratings of one motor or load.
#pragma once

#include "data/circuit_data.h"

#include <string>

namespace brenvolt {

/// A load leaves the speed empty. Empty texts and 0.0 are not given.
struct RatingSelection {
  std::wstring type;
  std::wstring load; ///< power or rating figure
  std::wstring units;
  std::wstring voltage;   ///< volts
  std::wstring phase;     ///< "1" or "3"
  std::wstring frequency; ///< hertz
  std::wstring speed;     ///< rpm
  double fla = 0.0;       ///< full-load current, amperes
  double multiplier = 0.0;
};

/// The circuit in hand as a picker's start; a number that the record does not hold is not given.
[[nodiscard]] RatingSelection selectionOf(const ZanCircuitData& circuit);

/// Makes the selection the circuit in hand.
void storeSelection(const RatingSelection& selection, ZanCircuitData& circuit);

} // namespace brenvolt
