// Answers nil: this module has no build driver yet.
#include "plugin/handlers/build_circuit.h"

namespace brenvolt {

ResultList buildCircuit(const ResultList& arguments) {
  static_cast<void>(arguments);
  return ResultList();
}

} // namespace brenvolt
