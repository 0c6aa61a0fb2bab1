// What every part of the managers needs: the base without behaviour, start and end of a dialog, and access to the
// fields.
#include "flows/wire_select_ctrl_mgr.h"

#include "flows/wire_numbers.h"
#include "host/alerts.h"
#include "host/host_api_lisp.h"
#include "text/assertion.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

namespace brenvolt {

namespace {

constexpr wchar_t helpTopic[] = L"wire_size_lookup_dialog";
constexpr wchar_t ampacityExceededKey[] = L"ZanBrenvolt.WirAmpacityExceeded";
constexpr wchar_t ampacityParameter[] = L"ampacityratio";
constexpr double fullLoadPercent = 100.0;
constexpr std::wstring_view fullLoadText = L"100";

} // namespace

bool ZanDlgWireSelectBaseCtrlMgr::CheckAtStart(const WireTableSet&) {
  return true;
}

void ZanDlgWireSelectBaseCtrlMgr::Init() {}

void ZanDlgWireSelectBaseCtrlMgr::OnChanged(WireControl) {}

void ZanDlgWireSelectBaseCtrlMgr::Refresh() {}

void ZanDlgWireSelectBaseCtrlMgr::ShowHeldBack() {}

bool ZanDlgWireSelectBaseCtrlMgr::IsTableSeen() const {
  return true;
}

void ZanDlgWireSelectBaseCtrlMgr::MarkSeen() {}

void ZanDlgWireSelectBaseCtrlMgr::ExportReport() {}

void ZanDlgWireSelectBaseCtrlMgr::ShowHelp() {}

bool ZanDlgWireSelectBaseCtrlMgr::CheckOnOk() {
  return true;
}

void ZanDlgWireSelectBaseCtrlMgr::StoreToCircuitData() {}

WireLookupForm& ZanDlgWireSelectBaseCtrlMgr::form() const {
  BRENVOLT_ASSERT(form_ != nullptr, "a control manager is used before its form");
  return *form_;
}

bool ZanDlgWireSelectCtrlMgr::CheckAtStart(const WireTableSet&) {
  return true;
}

void ZanDlgWireSelectCtrlMgr::Init() {
  choices_ = GivenChoices();
  for (const WireNumberRule& rule : wireNumberRules)
    lastGood_[rule.field] = rule.initial;
  LoadStandards();
  if (!CheckTables(OptionTables::check)) {
    form().endCancelled();
    return;
  }
  LoadInsulations();
  LoadCurrentFields();
  LoadDropFields();
  LoadDeratingFields();
  LoadParallelFields();
  LoadGroundSizes();
  Refresh();
}

bool ZanDlgWireSelectCtrlMgr::CheckTables(OptionTables options) const {
  MissingTables missing;
  using With = ZanWireTableReader::WithOptions;
  const With with = options == OptionTables::check ? With::yes : With::no;
  if (form().reader().CheckWireTables(tables(), missing, with)) return true;
  std::wstring source;
  if (const ZanOleDbConnection* connection = form().reader().connection()) connection->GetDatasource(source);
  return alertTables(source, missing.forCode, missing.everywhere, AlertKind::table);
}

bool ZanDlgWireSelectCtrlMgr::CheckOnOk() {
  ShowHeldBack();
  const int row = form().results().SelectedRow();
  if (row < 1 || static_cast<std::size_t>(row) > rows().size()) return true;
  const std::wstring& percent = rows()[static_cast<std::size_t>(row) - 1].loadPercent;
  const bool isBelow = toDouble(percent) - fullLoadPercent < numberTolerance && percent != fullLoadText;
  if (isBelow) return true;
  const std::optional<int> answer =
      showTaskDialog(ampacityExceededKey, {{ampacityParameter, percent}}, form().parentWindow());
  return !answer || *answer == kvui::firstCommand;
}

void ZanDlgWireSelectCtrlMgr::ShowHelp() {
  kvedHelp(helpTopic);
}

ZanCircuitData ZanDlgWireSelectCtrlMgr::GivenChoices() const {
  return circuitData();
}

ZanDlgWireSelectCtrlMgr::PowerFactors ZanDlgWireSelectCtrlMgr::powerFactorsOf(
    std::wstring_view setting) const {
  PowerFactors factors;
  form().reader().GetList(setting, factors.list);
  form().reader().GetValue(setting, optionfield::defaultValue, factors.standard);
  if (isGiven(choices_.powerFactor)) factors.given = formatTrimmed(choices_.powerFactor);
  return factors;
}

ZanDlgWireSelectCtrlMgr::PowerFactors ZanDlgWireSelectCtrlMgr::PowerFactorChoices() const {
  return powerFactorsOf(option::motorPowerFactor);
}

void ZanDlgWireSelectCtrlMgr::KeepDefaultMultiplier(double multiplier) {
  circuitData().flaMultiplier = multiplier;
}

std::optional<std::size_t> ZanDlgWireSelectCtrlMgr::WantedRow() const {
  return std::nullopt;
}

WireTableSet ZanDlgWireSelectCtrlMgr::tables() const {
  return {textOf(WireControl::metal), textOf(WireControl::standard), form().code()};
}

bool ZanDlgWireSelectCtrlMgr::isTicked(WireControl control) const {
  return form().tick(control).IsChecked();
}

std::wstring ZanDlgWireSelectCtrlMgr::textOf(WireControl control) const {
  switch (rowOf(control).kind) {
  case WireControlKind::edit:
    return trim(form().edit(control).Text());
  case WireControlKind::list:
  case WireControlKind::editableList:
    return trim(form().list(control).Text());
  case WireControlKind::tick:
  case WireControlKind::button:
    break;
  }
  return {};
}

double ZanDlgWireSelectCtrlMgr::numberOf(WireControl control) const {
  return toDouble(textOf(control));
}

void ZanDlgWireSelectCtrlMgr::setText(WireControl control, std::wstring_view text) {
  if (rowOf(control).kind == WireControlKind::edit)
    form().edit(control).SetText(text);
  else
    form().list(control).SetText(text);
}

void ZanDlgWireSelectCtrlMgr::setNumber(WireControl control, double value) {
  setText(control, formatTrimmed(value));
}

bool ZanDlgWireSelectCtrlMgr::isGood(WireControl control) const {
  const WireNumberRule* rule = findNumberRule(control);
  return rule ? rule->allows(numberOf(control)) : isGiven(numberOf(control));
}

void ZanDlgWireSelectCtrlMgr::keepGood(WireControl control) {
  if (isGood(control)) lastGood_[control] = numberOf(control);
}

std::wstring ZanDlgWireSelectCtrlMgr::insulationDescription() const {
  const std::wstring label = textOf(WireControl::insulation);
  return trim(label.substr(0, label.find(L'/')));
}

std::wstring ZanDlgWireSelectCtrlMgr::temperature() const {
  const std::wstring label = textOf(WireControl::insulation);
  const std::size_t slash = label.find(L'/');
  return slash == std::wstring::npos ? std::wstring() : trim(label.substr(slash + 1));
}

CurrentTexts ZanDlgWireSelectCtrlMgr::currentTexts() const {
  return {
      textOf(WireControl::current), textOf(WireControl::multiplier), textOf(WireControl::extraCurrent),
      textOf(WireControl::total)};
}

void ZanDlgWireSelectCtrlMgr::showCurrents(const CurrentTexts& texts) {
  setText(WireControl::current, texts.current);
  setText(WireControl::multiplier, texts.multiplier);
  setText(WireControl::extraCurrent, texts.extra);
  setText(WireControl::total, texts.total);
}

} // namespace brenvolt
