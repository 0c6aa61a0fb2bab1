// What the wire lookup leaves behind in the circuit's record for the next dialog and the build.
#include "flows/wire_select_ctrl_mgr.h"
#include "text/numbers.h"
#include "text/split.h"

namespace brenvolt {

namespace {

constexpr double notGiven = -1.0;

struct StoredText {
  WireControl control;
  std::wstring ZanCircuitData::*field;
};
constexpr StoredText storedTexts[] = {
    {WireControl::voltage, &ZanCircuitData::voltage},
    {WireControl::phase, &ZanCircuitData::phase},
    {WireControl::standard, &ZanCircuitData::wireStandard},
    {WireControl::metal, &ZanCircuitData::wireMetal},
    {WireControl::lengthUnits, &ZanCircuitData::lengthUnits},
    {WireControl::raceway, &ZanCircuitData::raceway},
    {WireControl::fillRange, &ZanCircuitData::fillRange},
    {WireControl::ambientRange, &ZanCircuitData::ambientRange},
    {WireControl::parallelCount, &ZanCircuitData::parallelCount},
    {WireControl::parallelMinSize, &ZanCircuitData::parallelMinSize},
};

struct StoredNumber {
  WireControl control;
  double ZanCircuitData::*field;
};
constexpr StoredNumber storedNumbers[] = {
    {WireControl::current, &ZanCircuitData::fla},
    {WireControl::multiplier, &ZanCircuitData::flaMultiplier},
    {WireControl::extraCurrent, &ZanCircuitData::extraCurrent},
    {WireControl::length, &ZanCircuitData::length},
    {WireControl::powerFactor, &ZanCircuitData::powerFactor},
    {WireControl::dropLimit, &ZanCircuitData::dropLimit},
    {WireControl::continuousFactor, &ZanCircuitData::continuousFactor},
    {WireControl::energyPrice, &ZanCircuitData::energyPrice},
    {WireControl::fillFactor, &ZanCircuitData::fillFactor},
    {WireControl::ambientFactor, &ZanCircuitData::ambientFactor},
    {WireControl::overallFactor, &ZanCircuitData::overallFactor},
};

struct StoredTick {
  WireControl control;
  bool ZanCircuitData::*field;
};
constexpr StoredTick storedTicks[] = {
    {WireControl::dropTick, &ZanCircuitData::useVoltageDrop},
    {WireControl::dropLimitTick, &ZanCircuitData::useDropLimit},
    {WireControl::continuousTick, &ZanCircuitData::useContinuousLoad},
    {WireControl::fillTick, &ZanCircuitData::useFill},
    {WireControl::ambientTick, &ZanCircuitData::useAmbient},
    {WireControl::parallelTick, &ZanCircuitData::useParallel},
    {WireControl::showUndersized, &ZanCircuitData::showUndersized},
};

} // namespace

double ZanDlgWireSelectCtrlMgr::storedNumber(WireControl control) const {
  return isGood(control) ? numberOf(control) : notGiven;
}

void ZanDlgWireSelectCtrlMgr::StoreFields(ZanCircuitData& data) const {
  for (const StoredText& row : storedTexts)
    data.*row.field = textOf(row.control);
  for (const StoredNumber& row : storedNumbers)
    data.*row.field = storedNumber(row.control);
  for (const StoredTick& row : storedTicks)
    data.*row.field = isTicked(row.control);
  data.insulation = insulationDescription();
  data.temperature = temperature();
  data.groundSize = textOf(WireControl::groundSize);
  if (const std::size_t blank = data.groundSize.find(L' '); blank != std::wstring::npos)
    data.groundSize.erase(blank, 1);
}

void ZanDlgWireSelectCtrlMgr::StoreToCircuitData() {
  StoreFields(circuitData());
  circuitData().fromSelection = false;
}

} // namespace brenvolt
