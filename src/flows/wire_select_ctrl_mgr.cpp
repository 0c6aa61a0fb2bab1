#include "flows/wire_select_ctrl_mgr.h"

#include "flows/wire_choices.h"
#include "text/numbers.h"
#include "text/split.h"

namespace brenvolt {

void ZanDlgWireSelectBaseCtrlMgr::Begun(const WireLookup&) {}

void ZanDlgWireSelectBaseCtrlMgr::storeAsMotor(const WireLookup& lookup) {
  ZanCircuitData& circuit = context_.circuit;
  lookup.store(circuit);
  circuit.fromSelection = false;
  circuit.wireChosen = true;
}

WireStart ZanDlgWireSelectCtrlMgr::Start() const {
  WireStart start;
  start.choices = context().circuit;
  return start;
}

void ZanDlgWireSelectCtrlMgr::Begun(const WireLookup& lookup) {
  if (const std::optional<double> multiplier = lookup.defaultMultiplier())
    context().circuit.flaMultiplier = *multiplier;
}

void ZanDlgWireSelectCtrlMgr::Store(const WireLookup& lookup) {
  storeAsMotor(lookup);
}

WireStart ZanDlgWireSelectPfCtrlMgr::Start() const {
  WireStart start;
  start.choices = loadChoices(context());
  start.powerFactorSetting = option::feedPowerFactor;
  return start;
}

void ZanDlgWireSelectPfCtrlMgr::Store(const WireLookup& lookup) {
  ZanCircuitData& data = context().circuit;
  const double motorMultiplier = data.flaMultiplier;
  const double motorPowerFactor = data.powerFactor;
  lookup.store(data);
  data.flaMultiplier = motorMultiplier;
  data.powerFactor = motorPowerFactor;
  data.wireChosen = true;
  context().load.flaMultiplier = lookup.storedNumber(LookupField::multiplier);
  context().load.powerFactor = lookup.storedNumber(LookupField::powerFactor);
}

WireStart ZanDlgWireSelectEditWireSizeCtrlMgr::Start() const {
  WireStart start;
  start.choices = placedChoices(context().circuit, record_);
  PowerFactorChoice& powerFactor = start.powerFactor.emplace();
  powerFactor.list = {L"0.8", L"0.85", L"0.9", L"1.0"};
  powerFactor.value.text = L"0.85";
  // As text: the list shows 1.0 as "1", and a stored "1.0" is a separate entry at the top.
  if (isGiven(start.choices.powerFactor))
    powerFactor.value = {trim(record_.get(circparam::powerFactor)), std::wstring(givenOrigin)};
  const std::wstring wire = record_.get(circparam::wire);
  start.size = wire.substr(0, wire.rfind(L'('));
  return start;
}

void ZanDlgWireSelectEditWireSizeCtrlMgr::Store(const WireLookup& lookup) {
  storeAsMotor(lookup);
}

} // namespace brenvolt
