// What a picker starts from and ends with: the ratings of one motor or load.
#pragma once

#include "data/circuit_data.h"

namespace brenvolt {

/// A load leaves the speed empty. Empty texts and 0.0 are not given.
struct RatingSelection : Ratings {
  RatingSelection() {
    fla = 0.0;
    flaMultiplier = 0.0;
  }
};

/// A circuit as a picker's start; a number that the record does not hold is not given.
[[nodiscard]] RatingSelection selectionOf(const ZanCircuitData& circuit);

/// Makes the selection that of a circuit.
void storeSelection(const RatingSelection& selection, ZanCircuitData& circuit);

} // namespace brenvolt
