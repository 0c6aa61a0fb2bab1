#include "flows/wire_choices.h"

#include "text/numbers.h"
#include "text/split.h"

namespace brenvolt {

namespace {

struct RecordText {
  std::size_t place;
  std::wstring ZanCircuitData::*field;
};
constexpr RecordText recordTexts[] = {
    {circparam::voltage, &ZanCircuitData::voltage},
    {circparam::phase, &ZanCircuitData::phase},
    {circparam::wireStandard, &ZanCircuitData::wireStandard},
    {circparam::wireMetal, &ZanCircuitData::wireMetal},
    {circparam::insulation, &ZanCircuitData::insulation},
    {circparam::temperature, &ZanCircuitData::temperature},
    {circparam::lengthUnits, &ZanCircuitData::lengthUnits},
    {circparam::raceway, &ZanCircuitData::raceway},
    {circparam::fillRange, &ZanCircuitData::fillRange},
    {circparam::ambientRange, &ZanCircuitData::ambientRange},
    {circparam::parallelCount, &ZanCircuitData::parallelCount},
    {circparam::parallelMinSize, &ZanCircuitData::parallelMinSize},
    {circparam::groundWire, &ZanCircuitData::groundSize},
};

struct RecordNumber {
  std::size_t place;
  double ZanCircuitData::*field;
};
constexpr RecordNumber recordNumbers[] = {
    {circparam::fla, &ZanCircuitData::fla},
    {circparam::multiplier, &ZanCircuitData::flaMultiplier},
    {circparam::extraCurrent, &ZanCircuitData::extraCurrent},
    {circparam::length, &ZanCircuitData::length},
    {circparam::powerFactor, &ZanCircuitData::powerFactor},
    {circparam::dropLimit, &ZanCircuitData::dropLimit},
    {circparam::continuousFactor, &ZanCircuitData::continuousFactor},
    {circparam::fillFactor, &ZanCircuitData::fillFactor},
    {circparam::ambientFactor, &ZanCircuitData::ambientFactor},
    {circparam::overallFactor, &ZanCircuitData::overallFactor},
    {circparam::energyPrice, &ZanCircuitData::energyPrice},
};

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
  for (const RecordText& row : recordTexts)
    choices.*row.field = trim(record.get(row.place));
  for (const RecordNumber& row : recordNumbers)
    choices.*row.field = toDouble(record.get(row.place));
  // A record that was written by hand must not fill a list without end.
  if (toInt(choices.parallelCount) > mostParallelConductors)
    choices.parallelCount = formatInt(mostParallelConductors);
  return choices;
}

} // namespace brenvolt
