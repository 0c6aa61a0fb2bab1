#include "data/circuit_fields.h"

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

} // namespace

void readCircuitFields(const ZanCircParams& record, ZanCircuitData& circuit) {
  for (const RecordText& row : recordTexts)
    circuit.*row.field = trim(record.get(row.place));
  for (const RecordNumber& row : recordNumbers)
    circuit.*row.field = toDouble(record.get(row.place));
}

ZanCircParams writeCircuitFields(const ZanCircuitData& circuit) {
  ZanCircParams record;
  for (const RecordText& row : recordTexts)
    record.set(row.place, circuit.*row.field);
  for (const RecordNumber& row : recordNumbers)
    if (isGiven(circuit.*row.field)) record.set(row.place, formatTrimmed(circuit.*row.field));
  return record;
}

} // namespace brenvolt
