#include "flows/wire_choices.h"

#include "data/circuit_fields.h"
#include "text/numbers.h"

namespace brenvolt {

namespace {

/// More conductors of one phase than any raceway takes.
constexpr int mostParallelConductors = 99;

} // namespace

ZanCircuitData loadChoices(const CircuitContext& context) {
  ZanCircuitData choices = context.circuit;
  choices.flaMultiplier = context.load.flaMultiplier;
  choices.powerFactor = context.load.powerFactor;
  return choices;
}

ZanCircuitData placedChoices(const ZanCircuitData& circuit, const ZanCircParams& record) {
  ZanCircuitData choices = circuit;
  choices.resetOpenFields();
  readCircuitFields(record, choices);
  // A record that was written by hand must not fill a list without end.
  if (toInt(choices.parallelCount) > mostParallelConductors)
    choices.parallelCount = formatInt(mostParallelConductors);
  return choices;
}

} // namespace brenvolt
