// The two process-wide records and the flags of the fields that a configuration fixes.
#include "data/circuit_data.h"

namespace brenvolt {

void ZanCircuitData::setOpenField(std::size_t index, bool value) {
  if (index < openField.size()) openField[index] = value;
}

void ZanCircuitData::resetOpenFields() {
  openField.fill(true);
}

ZanCircuitData& circuitData() {
  static ZanCircuitData data;
  return data;
}

ZanLoadFactors& loadFactors() {
  static ZanLoadFactors factors;
  return factors;
}

} // namespace brenvolt
