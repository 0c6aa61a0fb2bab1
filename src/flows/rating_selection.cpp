#include "flows/rating_selection.h"

#include "text/numbers.h"

namespace brenvolt {

RatingSelection selectionOf(const ZanCircuitData& circuit) {
  RatingSelection selection;
  for (const RatingField& field : ratingFields)
    if (field.text) selection.*field.text = circuit.*field.text;
  if (isGiven(circuit.fla)) selection.fla = circuit.fla;
  if (circuit.flaMultiplier > 0.0) selection.flaMultiplier = circuit.flaMultiplier;
  return selection;
}

void storeSelection(const RatingSelection& selection, ZanCircuitData& circuit) {
  circuit.fromSelection = true;
  static_cast<Ratings&>(circuit) = selection;
}

} // namespace brenvolt
