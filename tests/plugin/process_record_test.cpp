// What outlives a call can be counted, and can be reset.
#include "plugin/process_record.h"

#include "data/circuit_data.h"
#include "host/lisp_calls.h"

#include <doctest/doctest.h>

using namespace brenvolt;

TEST_CASE("a reset gives the process a fresh start") {
  circuitData().type = L"AC";
  circuitData().fla = 14.0;
  circuitData().setOpenField(8, false);
  circuitData().setOpenField(9, false);
  CHECK_FALSE(circuitData().isOpen(OpenField::flaMultiplier));
  CHECK(circuitData().isOpen(OpenField::fla));
  loadFactors().powerFactor = 0.9;
  setTrace(true);
  processRecord() = {{{L"A", 1001}}, {L"1"}, 7};
  resetProcessRecord();
  CHECK_EQ(processRecord().lastMarkerId, 0);
  CHECK(circuitData().type.empty());
  CHECK_EQ(circuitData().fla, -1.0);
  CHECK(circuitData().isOpen(OpenField::flaMultiplier));
  CHECK_EQ(loadFactors().powerFactor, -1.0);
  CHECK_FALSE(isTracing());
  CHECK(processRecord().acceptedTables.empty());
  CHECK(processRecord().existingCircuit.empty());
}
