// All that outlives one LISP call, in one place to read and to reset.
#pragma once

namespace brenvolt {

/// Gives the process a fresh start, as if the module had just been loaded; tests begin with it, since a process that
/// runs several has loaded the module once:
/// - `circuitContext()` (data/circuit_data.h): the circuit in hand
/// - `setTrace()` (host/lisp_calls.h): the trace flag
/// - `acceptedTables()` (host/alerts.h): missing tables that the user accepted
/// - `existingCircuit()` (flows/existing_circuit.h): the circuit of the project that was picked to start from
/// - `configuredCircuit()` (flows/configured_circuit.h): empty outside a configuration dialog, which resets it itself
/// - `lastMarkerId()` (drawing/markers.h): the counter of marker ids
/// - `buildUnderWay()` (plugin/handlers/build_circuit.h): null outside a build
/// What belongs to the loaded module itself stays: `extensionModule()` (plugin/application.h) and `resourceModule()`
/// (host/resources.h).
void resetProcessState();

} // namespace brenvolt
