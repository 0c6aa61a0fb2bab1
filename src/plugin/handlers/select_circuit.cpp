// Answers nil: this module has no circuit selection dialog yet.
#include "plugin/handlers/select_circuit.h"

namespace brenvolt {

ResultList selectCircuit(const ResultList& arguments) {
  static_cast<void>(arguments);
  return ResultList();
}

} // namespace brenvolt
