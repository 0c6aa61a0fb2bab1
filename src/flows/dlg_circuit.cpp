#include "flows/dlg_circuit.h"

#include "flows/circuit_memory.h"
#include "flows/circuit_workbook.h"
#include "flows/dlg_annotation.h"
#include "flows/dlg_exist_circuits.h"
#include "host/alerts.h"
#include "host/host_api_lisp.h"
#include "host/lisp_calls.h"
#include "host/resources.h"
#include "text/numbers.h"
#include "widgets/common_roles.h"
#include "widgets/numeric_edit.h"
#include "widgets/roles_circuit.h"

#include <string_view>
#include <utility>

namespace brenvolt {

namespace {

constexpr wchar_t circuitForm[] = L"ZanDlgCircuit";
constexpr wchar_t circuitHelpTopic[] = L"circuit_selection_dialog";
constexpr wchar_t deleteHistoryKey[] = L"ZanBrenvolt.DeleteHistory";

/// The summary's columns follow the row head.
constexpr int nameColumn = 1;
constexpr int valueColumn = 2;
constexpr int summaryColumns = 3;

/// A scale's field, and the text that a history keeps of it, if it keeps one.
struct ScaleField {
  std::wstring_view role;
  double BuildData::*scale;
  std::wstring HistorySummary::*saved;
};
constexpr ScaleField scaleFields[] = {
    {role::circuitScale, &BuildData::scaleA, &HistorySummary::circuitScale},
    {role::componentScale, &BuildData::scaleB, &HistorySummary::componentScale},
    {role::spacing, &BuildData::scaleC, nullptr},
    {role::rungSpacing, &BuildData::scaleD, nullptr},
};

} // namespace

ZanDlgCircuit::ZanDlgCircuit(
    BuildData data, ExistingCircuit& existing, TableObserver* observer, KvWindow* parent)
    : CKvUiDialog(circuitForm, parent), data_(std::move(data)), existing_(existing), observer_(observer) {}

bool ZanDlgCircuit::OnInitDialog() {
  SetDialogName(circuitDialogName);
  showScales();
  restorePanes();
  selection_.workbookPath = findWorkbook(data_.workbook, window());
  if (selection_.workbookPath.empty()) return false;
  Text(role::workbook).SetText(selection_.workbookPath);
  Text(role::workbook).SetTooltip(selection_.workbookPath);
  catalog_.workbook = selection_.workbookPath;
  if (!readCircuitList(catalog_, window())) return false;
  catalog_.readAnnotationCodes();
  history_.context = selection_.workbookPath;
  // A file that is not accepted cannot be written either: what it lists could be neither used nor deleted.
  hasHistories_ = history_.Reload();

  tree_.emplace(Tree(role::circuitTree), catalog_);
  if (const std::optional<LastCircuit> last = readLastCircuit()) tree_->select(last->circuit, last->type);
  Tick(role::newConfiguration).SetChecked(true);
  fillHistories();
  OnCircuitChanged();
  readProject();
  UpdateExistingButton();
  SetTooltips(tooltipResource, tooltipPrefix, tooltipsBelow);
  return true;
}

void ZanDlgCircuit::restorePanes() {
  if (const std::optional<ZanSplitterState> state = readSplitterState()) {
    SetSplit(state->split);
    showsPreview_ = state->showsPreview;
  }
  KvUiGrid& summary = Grid(role::summary);
  summary.SetEditable(false, false);
  summary.SetSize(0, summaryColumns);
  summary.SetCell(0, nameColumn, loadText(TextId::summaryName));
  summary.SetCell(0, valueColumn, loadText(TextId::summaryValue));
}

/// The circuits of the project, for the dialog that picks one.
void ZanDlgCircuit::readProject() {
  const KvWaitCursor waiting;
  if (const std::optional<std::wstring> database = getProjectDatabase()) {
    readCircuitRows(*database, observer_, circuitRows_);
    readCircuitSummaries(*database, observer_, circuitRows_, circuitSummaries_);
  }
  existing_ = refreshedCircuit(existing_, circuitRows_);
}

void ZanDlgCircuit::OnEvent(const KvUiEvent& event) {
  const auto isClicked = [&event](std::wstring_view role) {
    return event.kind == KvUiEventKind::clicked && event.role == role;
  };
  const auto isChanged = [&event](std::wstring_view role) {
    return event.kind == KvUiEventKind::changed && event.role == role;
  };
  if (event.role == role::circuitTree && event.kind == KvUiEventKind::selected) OnCircuitChanged();
  if (event.role == role::history && event.kind == KvUiEventKind::deleteKey) OnDeleteHistory();
  if (isChanged(role::history)) OnHistoryChanged();
  for (const std::wstring_view radio : {role::newConfiguration, role::usePresets, role::useExisting})
    if (isChanged(radio)) enableControls();
  if (isClicked(role::deleteHistory)) OnDeleteHistory();
  if (isClicked(role::previewToggle)) onPreviewToggled();
  if (isClicked(role::choosePresets)) onChoosePresets();
  if (isClicked(role::chooseExisting)) onChooseExisting();
  if (isClicked(role::configure)) close(Insertion::configured);
}

void ZanDlgCircuit::OnCircuitChanged() {
  // The tree selects while the dialog is being set up.
  if (!tree_) return;
  if (std::optional<CircuitChoice> choice = tree_->choice(); choice != shown_) {
    shown_ = std::move(choice);
    fillHistories();
    if (presets() == nullptr && Tick(role::usePresets).IsChecked())
      Tick(role::newConfiguration).SetChecked(true);
  }
  showPreview();
  enableControls();
}

/// The entry for a new configuration, then the saved ones of the shown type.
void ZanDlgCircuit::fillHistories() {
  KvUiList& list = List(role::history);
  list.Clear();
  list.Insert(-1, loadText(TextId::newConfiguration), 0);
  list.Select(0);
  const CircuitChoice shown = shown_.value_or(CircuitChoice());
  std::vector<std::wstring> names;
  if (shown_ && hasHistories_) history_.GetHistoryNames(shown.circuit, shown.type, names);
  for (const std::wstring& name : names)
    if (!name.empty()) list.Insert(-1, name, 0);
  OnHistoryChanged();
}

std::optional<std::wstring> ZanDlgCircuit::selectedHistory() const {
  // By place: nothing keeps a user from naming a history like the first entry.
  const KvUiList& list = List(role::history);
  if (list.Selected() <= 0) return std::nullopt;
  return list.TextAt(list.Selected());
}

HistoryKey ZanDlgCircuit::keyOf(const std::wstring& historyName) const {
  const CircuitChoice shown = shown_.value_or(CircuitChoice());
  return {shown.circuit, shown.type, historyName};
}

void ZanDlgCircuit::OnHistoryChanged() {
  HistorySummary saved;
  const std::optional<std::wstring> name = selectedHistory();
  if (name) history_.ReadHistory(keyOf(*name), saved);
  KvUiGrid& summary = Grid(role::summary);
  summary.LockDrawing();
  summary.SetSize(static_cast<int>(saved.pairs.size()), summaryColumns);
  int row = 0;
  for (const auto& [label, value] : saved.pairs) {
    summary.SetCell(++row, nameColumn, label);
    summary.SetCell(row, valueColumn, value);
  }
  summary.UnlockDrawing();

  showScales();
  if (name) {
    for (const ScaleField& field : scaleFields)
      if (field.saved != nullptr && !(saved.*field.saved).empty())
        ZanNumericEdit(Text(field.role)).setValue(toDouble(saved.*field.saved));
    if (Tick(role::useExisting).IsChecked()) Tick(role::newConfiguration).SetChecked(true);
  }
  enableControls();
}

void ZanDlgCircuit::OnDeleteHistory() {
  const std::optional<std::wstring> name = selectedHistory();
  // Without the question's text the user has still pressed the button.
  if (!name || showTaskDialog(deleteHistoryKey, {}, window()).value_or(kvui::yes) != kvui::yes) return;
  if (!history_.DeleteHistory(keyOf(*name))) return;
  KvUiList& list = List(role::history);
  list.Remove(list.Selected());
  list.Select(0);
  historyDirty_ = true;
  OnHistoryChanged();
}

void ZanDlgCircuit::enableControls() {
  const bool hasType = shown_.has_value();
  const bool hasHistory = selectedHistory().has_value();
  const bool isExisting = Tick(role::useExisting).IsChecked();
  const bool hasPresets = presets() != nullptr;
  Button(role::ok).Enable(hasType);
  Button(role::configure).Enable(hasType);
  List(role::history).Enable(hasType && !isExisting);
  Button(role::deleteHistory).Enable(hasHistory);
  Grid(role::summary).Enable(hasHistory);
  for (const ScaleField& field : scaleFields)
    Text(field.role).Enable(!hasHistory);
  // A saved configuration has its own values and replaces an existing circuit. Presets that were switched on before
  // stay on, and cannot be changed while it is chosen.
  Tick(role::usePresets).Enable(hasPresets && !hasHistory);
  Button(role::choosePresets).Enable(hasPresets && !hasHistory);
  Tick(role::useExisting).Enable(!hasHistory);
  Button(role::chooseExisting).Enable(isExisting);
  Tick(role::takeComponents).Enable(isExisting && isPicked(existing_));
}

/// The presets of the shown type; null when there are none.
ZanAnnotationExList::Presets* ZanDlgCircuit::presets() {
  ZanAnnotationExList::Presets* found = shown_ ? catalog_.annotationCodes().Find(shown_->presetKey) : nullptr;
  return found == nullptr || found->empty() ? nullptr : found;
}

void ZanDlgCircuit::showPreview() {
  const TextId caption = textAt(TextId::previewShow, showsPreview_ ? 1 : 0);
  Button(role::previewToggle).SetLabel(loadText(caption));
  Text(role::preview).Show(showsPreview_);
  if (!showsPreview_) return;
  const std::wstring path = shown_ && !shown_->drawingTemplate.empty()
                                ? findFile(shown_->drawingTemplate).value_or(std::wstring())
                                : std::wstring();
  Text(role::preview).SetText(path);
  Text(role::preview).SetTooltip(path);
}

void ZanDlgCircuit::onPreviewToggled() {
  showsPreview_ = !showsPreview_;
  showPreview();
}

void ZanDlgCircuit::onChoosePresets() {
  ZanAnnotationExList::Presets* const offered = presets();
  if (offered == nullptr) return;
  ZanDlgAnnotation dialog(*offered, shown_->presetKey, selection_.workbookPath, observer_, window());
  if (dialog.DoModal() != kvui::ok) return;
  Tick(role::usePresets).SetChecked(true);
  enableControls();
}

void ZanDlgCircuit::onChooseExisting() {
  ZanDlgExistCircuits dialog(circuitRows_, circuitSummaries_, existing_, window());
  if (dialog.DoModal() != kvui::ok) return;
  if (!isPicked(dialog.GetSelection())) return;
  existing_ = dialog.GetSelection();
  Tick(role::useExisting).SetChecked(true);
  UpdateExistingButton();
}

void ZanDlgCircuit::UpdateExistingButton() {
  const TextId caption = isPicked(existing_) ? TextId::existingChosen : TextId::existingNone;
  Button(role::chooseExisting).SetLabel(loadText(caption));
  enableControls();
}

void ZanDlgCircuit::showScales() {
  for (const ScaleField& field : scaleFields)
    ZanNumericEdit(Text(field.role)).setValue(data_.*field.scale);
}

void ZanDlgCircuit::readScales() {
  for (const ScaleField& field : scaleFields)
    data_.*field.scale = ZanNumericEdit(Text(field.role)).value();
}

bool ZanDlgCircuit::Confirm(Insertion insertion) {
  const std::optional<CircuitChoice> choice = tree_->choice();
  if (!choice) return false;
  selection_.circuit = *choice;
  selection_.insertNow = insertion == Insertion::now;
  readScales();
  selection_.historyName = selectedHistory().value_or(std::wstring());
  keepLastCircuit({choice->circuit, choice->type});
  return true;
}

void ZanDlgCircuit::close(Insertion insertion) {
  if (!Confirm(insertion)) return;
  saveHistories();
  selection_.useAnnotation = Tick(role::usePresets).IsChecked();
  selection_.useExisting = Tick(role::useExisting).IsChecked();
  selection_.useComponents = Tick(role::takeComponents).IsChecked();
  keepSplitterState({Split(), showsPreview_});
  EndDialog(kvui::ok);
}

void ZanDlgCircuit::OnOK() {
  close(Insertion::now);
}

void ZanDlgCircuit::OnCancel() {
  saveHistories();
  EndDialog(kvui::cancel);
}

/// A deleted configuration is gone however the dialog is closed: the user was asked.
void ZanDlgCircuit::saveHistories() {
  if (std::exchange(historyDirty_, false)) history_.SaveFile();
}

void ZanDlgCircuit::OnHelp() {
  kvedHelp(circuitHelpTopic);
}

std::vector<AnnotationRow> ZanDlgCircuit::annotationRows() {
  if (!selection_.useAnnotation || presets() == nullptr) return {};
  return enabledRows(*presets());
}

std::vector<AnnotationRow> ZanDlgCircuit::existingComponentRows() const {
  return selection_.useExisting ? readComponentRows(existing_, observer_) : std::vector<AnnotationRow>();
}

} // namespace brenvolt
