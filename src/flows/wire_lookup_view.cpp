#include "flows/wire_lookup_view.h"

#include "flows/wire_report.h"
#include "host/resources.h"
#include "text/split.h"
#include "widgets/roles_wire_lookup.h"

#include <algorithm>

namespace brenvolt {

namespace {

bool offers(const KvUiList& list, const std::vector<std::wstring>& choices) {
  if (list.Count() != static_cast<int>(choices.size())) return false;
  for (int index = 0; index < list.Count(); ++index)
    if (list.TextAt(index) != choices[static_cast<std::size_t>(index)]) return false;
  return true;
}

} // namespace

void WireLookupView::showAll() {
  for (const WireControlRow& row : wireControls)
    show(row.field);
  showEnergyNote();
  showTable();
}

void WireLookupView::changed(LookupField field) {
  const WireChange change{field, textOf(field)};
  WireEffects effects = lookup_.apply(change);
  if (effects.missing && form_.goesOnWithout(*effects.missing))
    effects = lookup_.apply(change, WithoutTables::goOn);
  for (const WireControlRow& row : wireControls)
    if (effects.has(row.field)) show(row.field);
  if (effects.has(LookupField::dropTick)) showEnergyNote();
  if (effects.table) showTable();
}

void WireLookupView::rowSelected() {
  if (heldBackFrom_) return showHeldBack();
  const int row = form_.results().SelectedRow();
  lookup_.select(row > 0 ? std::optional<std::size_t>(row - 1) : std::nullopt);
}

std::wstring WireLookupView::textOf(LookupField field) const {
  const WireControlRow& row = rowOf(field);
  switch (row.kind) {
  case WireControlKind::edit:
    return form_.text(row.role).Text();
  case WireControlKind::list:
  case WireControlKind::editableList:
    return form_.list(row.role).Text();
  case WireControlKind::tick:
    return form_.tick(row.role).IsChecked() ? L"1" : L"";
  }
  return {};
}

void WireLookupView::show(LookupField field) {
  const WireControlRow& row = rowOf(field);
  switch (row.kind) {
  case WireControlKind::edit:
    form_.text(row.role).SetText(lookup_.input().text(field));
    form_.text(row.role).Enable(lookup_.isOpen(field));
    break;
  case WireControlKind::list:
  case WireControlKind::editableList:
    showList(field);
    form_.list(row.role).Enable(lookup_.isOpen(field));
    break;
  case WireControlKind::tick:
    form_.tick(row.role).SetChecked(lookup_.input().isTicked(field));
    form_.tick(row.role).Enable(lookup_.isOpen(field));
    break;
  }
}

void WireLookupView::showList(LookupField field) {
  KvUiList& list = form_.list(roleOf(field));
  const std::vector<std::wstring>& choices = lookup_.input()[field].choices;
  if (!offers(list, choices)) {
    list.Clear();
    for (const std::wstring& choice : choices)
      list.Insert(-1, choice, 0);
  }
  const std::wstring& text = lookup_.input().text(field);
  const auto chosen = std::find(choices.begin(), choices.end(), text);
  if (chosen != choices.end())
    list.Select(static_cast<int>(chosen - choices.begin()));
  else if (rowOf(field).kind == WireControlKind::editableList)
    list.SetText(text); // typed
  else
    list.Select(-1);
}

void WireLookupView::showEnergyNote() {
  KvUiText& note = form_.text(role::energyNote);
  const bool isShown = lookup_.input().isTicked(LookupField::dropTick);
  std::wstring text = isShown ? loadText(TextId::energyCostNote) : std::wstring();
  if (isShown && !sizesWithoutDrop(lookup_.rows()).empty())
    text.append(L" ").append(loadText(TextId::wireDropUnknown));
  if (note.Text() != text) note.SetText(text);
  note.Show(isShown);
}

// A click into the grid leaves the field first, and the click is meant for the rows that are still shown: the new ones
// wait until it has taken effect. The figures themselves are those of the fields at once.
void WireLookupView::showTable() {
  if (form_.results().HasFocus()) {
    if (!heldBackFrom_) heldBackFrom_ = painted_;
    form_.showHeldBackSoon();
    return;
  }
  heldBackFrom_.reset();
  isTableSeen_ = true;
  paintTable();
}

void WireLookupView::showHeldBack() {
  if (!heldBackFrom_) return;
  const std::vector<WireCandidate> shown = std::move(*heldBackFrom_);
  heldBackFrom_.reset();
  isTableSeen_ = false;
  const int row = form_.results().SelectedRow();
  lookup_.select(std::nullopt);
  if (row >= 1 && static_cast<std::size_t>(row) <= shown.size())
    lookup_.selectLike(shown[static_cast<std::size_t>(row) - 1]);
  paintTable();
}

void WireLookupView::paintTable() {
  const std::vector<WireColumn> columns = lookup_.columns();
  painted_ = lookup_.rows();
  KvUiGrid& grid = form_.results();
  grid.LockDrawing();
  grid.SetSize(0, 0);
  // Column 0 is the row head; it has neither title nor texts.
  grid.SetSize(static_cast<int>(painted_.size()), static_cast<int>(columns.size()) + 1);
  for (std::size_t place = 0; place < columns.size(); ++place) {
    const int gridColumn = static_cast<int>(place) + 1;
    grid.SetCell(0, gridColumn, wireColumnTitle(columns[place]));
    for (std::size_t index = 0; index < painted_.size(); ++index) {
      const int gridRow = static_cast<int>(index) + 1;
      grid.SetCell(gridRow, gridColumn, cellOf(painted_[index], columns[place]));
      if (columns[place] == WireColumn::loadPercent && painted_[index].isOverloaded)
        grid.SetCellTone(gridRow, gridColumn, KvUiCellTone::alert);
    }
  }
  grid.SetColumnWidths({});
  showEnergyNote();
  showSelection();
  grid.UnlockDrawing();
}

void WireLookupView::showSelection() {
  KvUiGrid& grid = form_.results();
  const std::optional<std::size_t> selected = lookup_.selected();
  const int row = selected ? static_cast<int>(*selected) + 1 : 0;
  grid.SelectRow(row);
  if (row > 0) grid.ScrollTo(row);
}

} // namespace brenvolt
