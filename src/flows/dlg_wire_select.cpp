#include "flows/dlg_wire_select.h"

#include "host/lisp_symbols.h"
#include "host/resources.h"
#include "text/assertion.h"
#include "text/split.h"

namespace brenvolt {

namespace {

constexpr wchar_t formName[] = L"ZanDlgWireSelect";
constexpr wchar_t dialogName[] = L"ZanBrenvolt::ZanDlgWireSelect";
constexpr int tooltipsBelow = 2;
constexpr int sizeColumn = 1;
constexpr int heldBackTimer = 1;
constexpr int doubleClickTimer = 2;
// Time enough for the click that moved the focus to arrive as a selection.
constexpr int soonMilliseconds = 250;
constexpr int doubleClickMilliseconds = 1000; // longer than any desktop sets

} // namespace

ZanDlgWireSelect::ZanDlgWireSelect(ZanDlgWireSelectBaseCtrlMgr& manager, KvWindow* parent)
    : ZanDlgDatabase(formName, parent), manager_(manager), code_(defaultCode) {
  manager_.attach(*this);
}

bool ZanDlgWireSelect::OnInitDialog() {
  SetDialogName(dialogName);
  if (!Connect()) return false;
  grid().SetEditable(false, false);
  reader_.emplace(&connection());
  // Without a standard the form has none, and the reader keeps its own.
  const std::optional<std::wstring> code = getCodeStandard();
  code_ = code.value_or(std::wstring());
  if (code) reader_->SetCode(code_);
  if (!manager_.CheckAtStart({{}, {}, code_}) || !reader_->GetOptions()) return false;
  SetTooltips(tooltipResource, tooltipPrefix, tooltipsBelow);
  manager_.Init();
  return true;
}

void ZanDlgWireSelect::OnControlEvent(const KvUiEvent& event) {
  if (const std::optional<WireControl> changed = changedControl(event)) manager_.OnChanged(*changed);
}

void ZanDlgWireSelect::OnHelp() {
  manager_.ShowHelp();
}

void ZanDlgWireSelect::OnRowSelected(int, int) {
  manager_.ShowHeldBack();
}

// The first click of the two may have brought a new table: the second one then hit what the user has not seen.
void ZanDlgWireSelect::OnRowDoubleClicked(int) {
  manager_.ShowHeldBack();
  if (manager_.IsTableSeen()) OnOK();
}

void ZanDlgWireSelect::showHeldBackSoon() {
  StartTimer(heldBackTimer, soonMilliseconds);
  StartTimer(doubleClickTimer, doubleClickMilliseconds);
}

void ZanDlgWireSelect::OnTimer(int timer) {
  KillTimer(timer);
  if (timer == heldBackTimer)
    manager_.ShowHeldBack();
  else
    manager_.MarkSeen();
}

void ZanDlgWireSelect::OnOK() {
  if (!manager_.CheckOnOk()) return;
  manager_.StoreToCircuitData();
  circuitData().wireChosen = true;
  const int row = grid().SelectedRow();
  size_ = row > 0 ? removeBlanks(grid().Cell(row, sizeColumn)) : std::wstring();
  // The highest count that the form allows and not the count of the chosen row: kept as it stands.
  if (!size_.empty() && circuitData().useParallel) parallelNote_ = L'(' + circuitData().parallelCount + L')';
  EndDialog(kvui::ok);
}

KvUiControl& ZanDlgWireSelect::control(WireControl control) const {
  switch (rowOf(control).kind) {
  case WireControlKind::edit:
    return edit(control);
  case WireControlKind::list:
  case WireControlKind::editableList:
    return list(control);
  case WireControlKind::tick:
    return tick(control);
  case WireControlKind::button:
    break;
  }
  return Button(roleOf(control));
}

KvUiText& ZanDlgWireSelect::edit(WireControl control) const {
  return Text(roleOf(control));
}

KvUiList& ZanDlgWireSelect::list(WireControl control) const {
  return List(roleOf(control));
}

KvUiTick& ZanDlgWireSelect::tick(WireControl control) const {
  return Tick(roleOf(control));
}

KvUiText& ZanDlgWireSelect::text(std::wstring_view role) const {
  return Text(role);
}

KvUiGrid& ZanDlgWireSelect::results() const {
  return grid();
}

ZanWireTableReader& ZanDlgWireSelect::reader() {
  BRENVOLT_ASSERT(reader_.has_value(), "the wire tables are asked for before they are open");
  return *reader_;
}

std::optional<WireLookupAnswer> runWireLookup(ZanDlgWireSelectBaseCtrlMgr& manager, KvWindow* parent) {
  ZanDlgWireSelect dialog(manager, parent);
  if (dialog.DoModal() != kvui::ok) return std::nullopt;
  return WireLookupAnswer{dialog.size(), dialog.parallelNote()};
}

} // namespace brenvolt
