// The two lookups of a circuit that is being made: a motor's and a load's.
#include "plugin/handlers/wire_select.h"

#include "build/driver.h"
#include "data/circuit_fields.h"
#include "flows/dlg_wire_select.h"
#include "host/host_api_documents.h"
#include "plugin/process_record.h"

namespace brenvolt {

namespace {

ResultList lookUp(ZanDlgWireSelectBaseCtrlMgr& manager) {
  // Opened out of a configuration dialog, the report names its circuit.
  const ZanBrenvolt* const configured = processRecord().configured;
  const std::optional<WireLookupAnswer> chosen = runWireLookup(
      manager, kvdsForegroundWindow(), lentTables(),
      configured == nullptr ? std::nullopt : std::optional(configured->args().circuit));
  if (!chosen) return {};
  ListBuilder answer;
  return answer.beginList().addText(chosen->size).addText(chosen->parallelNote).endList().take();
}

} // namespace

ResultList wireSelect(const ResultList&) {
  ZanDlgWireSelectCtrlMgr manager(circuitContext());
  return lookUp(manager);
}

ResultList powerFeedWireSelect(const ResultList&) {
  ZanDlgWireSelectPfCtrlMgr manager(circuitContext());
  return lookUp(manager);
}

// The lookups return a size only. Whoever changes a placed circuit by it needs the grounding conductor too, and the
// figures that led to the size: else the circuit's record would contradict its wires.
ResultList wireFields(const ResultList&) {
  if (!circuitData().wireChosen) return {};
  const ZanCircParams record = writeCircuitFields(circuitData());
  ListBuilder answer;
  answer.beginList();
  for (std::size_t place = 0; place < circparam::count; ++place)
    answer.addText(record.get(place));
  return answer.endList().take();
}

} // namespace brenvolt
