// All that outlives one LISP call, in one place to read and to reset. Only handlers read and write it; what they call
// gets what it needs.
#pragma once

#include "data/table_watch.h"
#include "flows/existing_circuit.h"

#include <cstdint>

namespace brenvolt {

class ZanBrenvolt;

/// Two more values outlive a call: the current circuit, `circuitContext()` (data/circuit_data.h), and the trace flag,
/// `setTrace()` (host/lisp_calls.h), which every call of LISP looks at. What belongs to the loaded module itself stays:
/// `extensionModule()` (plugin/application.h) and `resourceModule()` (host/resources.h).
struct ProcessRecord {
  AcceptedTables acceptedTables;   ///< missing tables that the user accepted
  ExistingCircuit existingCircuit; ///< the circuit of the project that was picked to start from
  std::int32_t lastMarkerId = 0;
  TableWatch* tableWatch = nullptr;        ///< of the outermost call; null outside one
  const ZanBrenvolt* build = nullptr;      ///< the innermost build that runs; null outside a build
  const ZanBrenvolt* configured = nullptr; ///< the innermost one whose configuration dialog is open
};

[[nodiscard]] ProcessRecord& processRecord();

/// What a call lends to those who open tables.
[[nodiscard]] LentTables lentTables();

/// Gives the process a fresh start, as if the module had just been loaded; tests begin with it, since a process that
/// runs several has loaded the module once.
void resetProcessRecord();

} // namespace brenvolt
