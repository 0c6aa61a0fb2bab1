#include "drawing/exported_rows.h"

#include "data/circuit_data.h"
#include "drawing_support.h"

using namespace brenvolt;
using namespace brenvolt::test;

namespace {

std::wstring exportedValues(const ZanCircuitData& circuit, const StoredWireFields& stored = {}) {
  ZanAnnotationData row(L"MotorSetup");
  exportRows(circuit, stored, row);
  CHECK(row.Count() == exportedRowCount);
  std::wstring values;
  for (const ZanAnnotationField& field : row.fields) {
    CHECK(field.type == static_cast<std::uint32_t>(kvtype::string));
    CHECK_FALSE(field.hidden);
    values += field.value + L"|";
  }
  return values;
}

ZanCircuitData chosenWire() {
  ZanCircuitData data;
  data.wireChosen = true;
  data.extraCurrent = 2.5;
  data.wireStandard = L"AWG";
  data.wireMetal = L"CU";
  data.insulation = L"THHN";
  data.temperature = L"75C";
  data.useVoltageDrop = true;
  data.length = 120.0;
  data.lengthUnits = L"FT";
  data.raceway = L"Steel";
  data.powerFactor = 0.85;
  data.dropLimit = 3.0;
  data.useFill = true;
  data.fillRange = L"4-6";
  data.fillFactor = 0.8;
  data.useAmbient = true;
  data.ambientRange = L"31-35";
  data.ambientFactor = 0.94;
  data.overallFactor = 0.752;
  data.useParallel = true;
  data.parallelCount = L"2";
  data.parallelMinSize = L"1/0";
  data.energyPrice = 0.123456;
  data.quantity = 3;
  data.groundSize = L"10AWG";
  return data;
}

} // namespace

TEST_CASE("the wire choices are exported in their order, the parts that are switched off as nothing") {
  ZanCircuitData circuit = chosenWire();
  const StoredWireFields stored(exportedRowCount, L"old");
  CHECK(
      exportedValues(circuit, stored) ==
      L"2.5|AWG|CU|THHN|75C|120|FT|Steel|0.85|3|0.8|4-6|0.8|31-35|0.94|0.752|2|1/0|0.123456|10AWG|");

  circuit.useVoltageDrop = false;
  circuit.useContinuousLoad = false;
  circuit.useFill = false;
  circuit.useAmbient = false;
  circuit.useParallel = false;
  circuit.extraCurrent = 0.00001;
  CHECK(exportedValues(circuit) == L"0|AWG|CU|THHN|75C|0|||0|0|0||0||0|0.752|||0.123456|10AWG|");

  circuit.useVoltageDrop = true;
  circuit.useDropLimit = false;
  CHECK(exportedValues(circuit) == L"0|AWG|CU|THHN|75C|120|FT|Steel|0.85|0|0||0||0|0.752|||0.123456|10AWG|");
}
