// Where a load's circuit and a placed circuit differ from a motor's.
#include "flows/wire_choices.h"
#include "flows/wire_select_ctrl_mgr.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

namespace brenvolt {

ZanCircuitData ZanDlgWireSelectPfCtrlMgr::GivenChoices() const {
  return loadChoices();
}

ZanDlgWireSelectCtrlMgr::PowerFactors ZanDlgWireSelectPfCtrlMgr::PowerFactorChoices() const {
  return powerFactorsOf(option::feedPowerFactor);
}

// A load's default is asked of the options each time.
void ZanDlgWireSelectPfCtrlMgr::KeepDefaultMultiplier(double) {}

void ZanDlgWireSelectPfCtrlMgr::StoreToCircuitData() {
  ZanCircuitData& data = circuitData();
  const double motorMultiplier = data.flaMultiplier;
  const double motorPowerFactor = data.powerFactor;
  StoreFields(data);
  data.flaMultiplier = motorMultiplier;
  data.powerFactor = motorPowerFactor;
  loadFactors().flaMultiplier = storedNumber(WireControl::multiplier);
  loadFactors().powerFactor = storedNumber(WireControl::powerFactor);
}

ZanCircuitData ZanDlgWireSelectEditWireSizeCtrlMgr::GivenChoices() const {
  return placedChoices(record_);
}

ZanDlgWireSelectCtrlMgr::PowerFactors ZanDlgWireSelectEditWireSizeCtrlMgr::PowerFactorChoices() const {
  PowerFactors factors{{L"0.8", L"0.85", L"0.9", L"1.0"}, L"0.85", {}};
  // As text: the list shows 1.0 as "1", and a stored "1.0" stands at the top beside it.
  if (isGiven(choices().powerFactor)) factors.given = trim(record_.get(circparam::powerFactor));
  return factors;
}

// The multiplier of the circuit in hand is not the placed circuit's.
void ZanDlgWireSelectEditWireSizeCtrlMgr::KeepDefaultMultiplier(double) {}

std::optional<std::size_t> ZanDlgWireSelectEditWireSizeCtrlMgr::WantedRow() const {
  const std::wstring wire = record_.get(circparam::wire);
  const std::wstring stored = wire.substr(0, wire.rfind(L'('));
  const std::wstring size = shownSize(stored, textOf(WireControl::standard));
  if (size.empty()) return std::nullopt;
  for (std::size_t index = 0; index < rows().size(); ++index)
    if (equalsOrdinalNoCase(rows()[index].size, size)) return index;
  return std::nullopt;
}

} // namespace brenvolt
