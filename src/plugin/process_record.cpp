#include "plugin/process_record.h"

#include "data/circuit_data.h"
#include "host/lisp_calls.h"

namespace brenvolt {

ProcessRecord& processRecord() {
  static ProcessRecord record;
  return record;
}

void resetProcessRecord() {
  processRecord() = ProcessRecord();
  circuitContext() = CircuitContext();
  setTrace(false);
}

} // namespace brenvolt
