#include "flows/rating_selection.h"

#include "text/numbers.h"

namespace brenvolt {

namespace {

struct SharedText {
  std::wstring RatingSelection::*selected;
  std::wstring ZanCircuitData::*ofCircuit;
};
constexpr SharedText sharedTexts[] = {
    {&RatingSelection::type, &ZanCircuitData::type},
    {&RatingSelection::load, &ZanCircuitData::load},
    {&RatingSelection::units, &ZanCircuitData::units},
    {&RatingSelection::voltage, &ZanCircuitData::voltage},
    {&RatingSelection::phase, &ZanCircuitData::phase},
    {&RatingSelection::frequency, &ZanCircuitData::frequency},
    {&RatingSelection::speed, &ZanCircuitData::speed},
};

} // namespace

RatingSelection selectionOf(const ZanCircuitData& circuit) {
  RatingSelection selection;
  for (const SharedText& text : sharedTexts)
    selection.*text.selected = circuit.*text.ofCircuit;
  if (isGiven(circuit.fla)) selection.fla = circuit.fla;
  if (circuit.flaMultiplier > 0.0) selection.multiplier = circuit.flaMultiplier;
  return selection;
}

void storeSelection(const RatingSelection& selection, ZanCircuitData& circuit) {
  circuit.fromSelection = true;
  for (const SharedText& text : sharedTexts)
    circuit.*text.ofCircuit = selection.*text.selected;
  circuit.fla = selection.fla;
  circuit.flaMultiplier = selection.multiplier;
}

} // namespace brenvolt
