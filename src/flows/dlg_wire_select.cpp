#include "flows/dlg_wire_select.h"

#include "flows/save_as_file_dlg.h"
#include "flows/wire_report.h"
#include "host/host_api_lisp.h"
#include "host/lisp_symbols.h"
#include "host/resources.h"
#include "text/encoding.h"
#include "text/format.h"
#include "text/split.h"
#include "widgets/roles_wire_lookup.h"

#include <filesystem>
#include <utility>

namespace brenvolt {

namespace {

constexpr wchar_t wireSelectForm[] = L"ZanDlgWireSelect";
constexpr wchar_t wireSelectDialog[] = L"ZanBrenvolt::ZanDlgWireSelect";
constexpr wchar_t wireSelectHelpTopic[] = L"wire_size_lookup_dialog";
constexpr wchar_t ampacityExceededKey[] = L"ZanBrenvolt.WirAmpacityExceeded";
constexpr wchar_t ampacityParameter[] = L"ampacityratio";
constexpr int heldBackTimer = 1;
constexpr int doubleClickTimer = 2;
// Time enough for the click that moved the focus to arrive as a selection.
constexpr int soonMilliseconds = 250;
constexpr int doubleClickMilliseconds = 1000; // longer than any desktop sets

} // namespace

ZanDlgWireSelect::ZanDlgWireSelect(
    ZanDlgWireSelectBaseCtrlMgr& manager, KvWindow* parent, const LentTables& tables,
    std::optional<std::wstring> circuit)
    : ZanDlgDatabase(wireSelectForm, parent, tables), manager_(manager), circuitName_(std::move(circuit)) {}

bool ZanDlgWireSelect::OnInitDialog() {
  SetDialogName(wireSelectDialog);
  if (!Connect()) return false;
  grid().SetEditable(false, false);
  // Without a code the lookup has none, and the tables without a code in their names serve.
  const std::wstring code = getCodeStandard().value_or(std::wstring());
  tables_.emplace(connection());
  if (!tables_->hasOptions(code)) return false;
  SetTooltips(tooltipResource, tooltipPrefix, tooltipsBelow);
  lookup_.emplace(*tables_, code);
  if (!begin()) return false;
  WireLookupForm& controls = *this;
  view_.emplace(*lookup_, controls);
  view_->showAll();
  openSpareInputs();
  return true;
}

bool ZanDlgWireSelect::begin() {
  const WireStart start = manager_.Start();
  if (const std::optional<MissingTables> missing = lookup_->begin(start, WithoutTables::stop)) {
    if (!goesOnWithout(*missing)) return false;
    static_cast<void>(lookup_->begin(start, WithoutTables::goOn));
  }
  manager_.Begun(*lookup_);
  return true;
}

bool ZanDlgWireSelect::goesOnWithout(const MissingTables& missing) {
  std::wstring source;
  connection().GetDatasource(source);
  return alertTables(source, missing.forCode, missing.everywhere, AlertKind::table, acceptedTables());
}

void ZanDlgWireSelect::OnControlEvent(const KvUiEvent& event) {
  if (const std::optional<LookupField> field = changedField(event)) return view_->changed(*field);
  if (event.role == role::spare && event.kind == KvUiEventKind::changed) openSpareInputs();
  if (event.role == role::report && event.kind == KvUiEventKind::clicked) exportReport();
}

void ZanDlgWireSelect::openSpareInputs() {
  const bool isOpen = Tick(role::spare).IsChecked();
  Text(role::spareInput1).Enable(isOpen);
  Text(role::spareInput2).Enable(isOpen);
}

void ZanDlgWireSelect::OnHelp() {
  kvedHelp(wireSelectHelpTopic);
}

void ZanDlgWireSelect::OnRowSelected(int, int) {
  view_->rowSelected();
}

// The first click of the two may have changed the table: the user has not seen the row of the second one then.
void ZanDlgWireSelect::OnRowDoubleClicked(int) {
  view_->showHeldBack();
  if (view_->isTableSeen()) OnOK();
}

void ZanDlgWireSelect::showHeldBackSoon() {
  StartTimer(heldBackTimer, soonMilliseconds);
  StartTimer(doubleClickTimer, doubleClickMilliseconds);
}

void ZanDlgWireSelect::OnTimer(int timer) {
  KillTimer(timer);
  if (timer == heldBackTimer)
    view_->showHeldBack();
  else
    view_->markSeen();
}

bool ZanDlgWireSelect::isOverloadAccepted() const {
  const std::optional<std::wstring> percent = lookup_->overload();
  if (!percent) return true;
  const std::optional<int> answer =
      showTaskDialog(ampacityExceededKey, {{ampacityParameter, *percent}}, window());
  return !answer || *answer == kvui::firstCommand;
}

void ZanDlgWireSelect::OnOK() {
  view_->showHeldBack();
  if (!isOverloadAccepted()) return;
  manager_.Store(*lookup_);
  const WireCandidate* chosen = lookup_->chosen();
  size_ = chosen != nullptr ? removeBlanks(chosen->size) : std::wstring();
  // The highest count that the lookup allows and not the count of the chosen row, as is intended.
  if (!size_.empty() && lookup_->input().isTicked(LookupField::parallelTick))
    parallelNote_ = L'(' + lookup_->input().text(LookupField::parallelCount) + L')';
  EndDialog(kvui::ok);
}

void ZanDlgWireSelect::exportReport() {
  view_->showHeldBack();
  ZanBVSaveAsFileDlg dialog(lastReport_, window());
  if (dialog.DoModal() != kvui::ok) return;
  const std::filesystem::path path(toUtf8(dialog.path()));
  lastReport_ = {fromUtf8(path.parent_path().string()), fromUtf8(path.filename().string())};
  const WireReportTexts texts{Text(role::reportTitle).Text(), circuitName_, [this](LookupField field) {
                                return Tick(roleOf(field)).Label();
                              }};
  const std::optional<std::wstring> failure =
      writeReport(dialog.path(), dialog.mode(), wireReportRows(*lookup_, texts));
  // No task dialog is prescribed for this: the command line reports the place and the reason.
  if (failure) kvutPrintf(formatText(loadText(TextId::reportNotWritten), {dialog.path(), *failure}).c_str());
}

std::optional<WireLookupAnswer> runWireLookup(
    ZanDlgWireSelectBaseCtrlMgr& manager, KvWindow* parent, const LentTables& tables,
    const std::optional<std::wstring>& circuit) {
  ZanDlgWireSelect dialog(manager, parent, tables, circuit);
  if (dialog.DoModal() != kvui::ok) return std::nullopt;
  return WireLookupAnswer{dialog.size(), dialog.parallelNote()};
}

} // namespace brenvolt
