// One line per piece of state that its owner keeps behind an accessor.
#include "plugin/process_state.h"

#include "data/circuit_data.h"
#include "drawing/markers.h"
#include "flows/existing_circuit.h"
#include "host/alerts.h"
#include "host/lisp_calls.h"

namespace brenvolt {

void resetProcessState() {
  circuitContext() = CircuitContext();
  setTrace(false);
  clearAcceptedTables();
  existingCircuit().clear();
  lastMarkerId() = 0;
}

} // namespace brenvolt
