// What outlives a call can be counted, and can be reset.
#include "plugin/process_state.h"

#include "data/circuit_data.h"
#include "drawing/markers.h"
#include "flows/existing_circuit.h"
#include "host/alerts.h"
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
  acceptedTables()[L"A"] = 1001;
  existingCircuit() = {L"1"};
  CHECK_GT(ZanDwgMarker().id, 0);
  resetProcessState();
  CHECK_EQ(lastMarkerId(), 0);
  CHECK(circuitData().type.empty());
  CHECK_EQ(circuitData().fla, -1.0);
  CHECK(circuitData().isOpen(OpenField::flaMultiplier));
  CHECK_EQ(loadFactors().powerFactor, -1.0);
  CHECK_FALSE(isTracing());
  CHECK(acceptedTables().empty());
  CHECK(existingCircuit().empty());
}
