// The process-wide record and the flags of the fields that a configuration fixes.
#include "data/circuit_data.h"

namespace brenvolt {

void ZanCircuitData::setOpenField(std::size_t index, bool value) {
  if (index < openField.size()) openField[index] = value;
}

void ZanCircuitData::resetOpenFields() {
  openField.fill(true);
}

CircuitContext& circuitContext() {
  static CircuitContext context;
  return context;
}

} // namespace brenvolt
