#include "plugin/process_record.h"

#include "data/circuit_data.h"
#include "host/lisp_calls.h"

namespace brenvolt {

ProcessRecord& processRecord() {
  static ProcessRecord record;
  return record;
}

LentTables lentTables() {
  return {processRecord().acceptedTables, processRecord().tableWatch};
}

void resetProcessRecord() {
  processRecord() = ProcessRecord();
  circuitContext() = CircuitContext();
  setTrace(false);
}

} // namespace brenvolt
