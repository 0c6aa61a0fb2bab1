// Defines what a user can reach, and which event each gesture raises.
#include "simhost/ui/gestures.h"

#include "simhost/ui/grid_model.h"
#include "simhost/ui/pages_model.h"
#include "simhost/ui/tree_model.h"
#include "text/encoding.h"

#include <algorithm>

namespace simhost {

using brenvolt::toUtf8;

namespace {

constexpr std::wstring_view okRole = L"ok";
constexpr std::wstring_view cancelRole = L"cancel";
constexpr std::wstring_view helpRole = L"help";

bool isField(const ControlModel& control) {
  return control.kind() == ControlKind::text || control.kind() == ControlKind::editableList;
}

std::wstring textIn(ControlModel& control) {
  if (auto* text = dynamic_cast<TextModel*>(&control)) return text->Text();
  if (auto* list = dynamic_cast<ListModel*>(&control)) return list->Text();
  return {};
}

} // namespace

Gestures::~Gestures() = default;

Refusal Gestures::reach(const ControlModel& control) const {
  if (dialog_.hasGivenEditor()) return "the dialog is hidden, the host has the editor";
  if (const PagesModel* pages = control.pages()) {
    if (Refusal refusal = reach(*pages)) return refusal;
    if (pages->ShownPage() != control.page())
      return "it is on page " + std::to_string(control.page()) + ", which is not shown";
  }
  if (!control.isVisible()) return "it is hidden";
  if (!control.isEnabled()) return "it is disabled";
  return std::nullopt;
}

Refusal Gestures::reachForChange(const ControlModel& control) const {
  if (Refusal refusal = reach(control)) return refusal;
  if (control.pages() != nullptr && control.pages()->IsLocked(control.page())) return "its page is locked";
  return std::nullopt;
}

Refusal Gestures::focus(ControlModel& control) {
  return takeFocus(control);
}

Refusal Gestures::takeFocus(ControlModel& control) {
  if (Refusal refusal = reach(control)) return refusal;
  ControlModel* left = dialog_.focus();
  if (left == &control) return std::nullopt;
  dialog_.setFocus(&control);
  if (left == nullptr) return std::nullopt;
  leaveControl(*left);
  // What the flow did about the commit may have taken the control away.
  return dialog_.isEnded() ? std::nullopt : reach(control);
}

void Gestures::leave() {
  ControlModel* left = dialog_.focus();
  dialog_.setFocus(nullptr);
  if (left != nullptr) leaveControl(*left);
}

void Gestures::leaveControl(ControlModel& control) {
  if (isField(control)) dialog_.raise({control.role(), KvUiEventKind::committed, 0, 0, textIn(control)});
  if (auto* grid = dynamic_cast<GridModel*>(&control)) commitRow(*grid);
}

void Gestures::commitRow(GridModel& grid) {
  if (!grid.edit()) return;
  const GridModel::Edit edit = *grid.edit();
  grid.edit().reset();
  dialog_.raise({grid.role(), KvUiEventKind::rowCommitted, edit.row, edit.isChanged ? 1 : 0, {}});
  // A new row in which nothing was typed is the empty row again.
  if (edit.isNew && !edit.isChanged && edit.row == grid.RowCount()) grid.RemoveRow(edit.row);
}

Refusal Gestures::press(ControlModel& control) {
  if (control.kind() != ControlKind::button) return "it is not a button";
  if (Refusal refusal = takeFocus(control)) return refusal;
  if (dialog_.isEnded()) return std::nullopt;
  if (control.role() == okRole)
    dialog_.access().ok();
  else if (control.role() == cancelRole)
    dialog_.access().cancel();
  else if (control.role() == helpRole)
    dialog_.access().help();
  else
    dialog_.raise({control.role(), KvUiEventKind::clicked, 0, 0, {}});
  return std::nullopt;
}

Refusal Gestures::pressInGroup(GroupModel& group, int button) {
  if (button < 0 || static_cast<std::size_t>(button) >= group.buttons().size())
    return "it has no button " + std::to_string(button);
  if (Refusal refusal = reachForChange(group)) return refusal;
  if (Refusal refusal = takeFocus(group)) return refusal;
  if (dialog_.isEnded()) return std::nullopt;
  const std::wstring role = group.role() + L".button." + std::to_wstring(button);
  dialog_.raise({role, KvUiEventKind::clicked, 0, 0, {}});
  return std::nullopt;
}

Refusal Gestures::tick(ControlModel& control, bool isOn) {
  auto* tick = dynamic_cast<TickModel*>(&control);
  if (tick == nullptr) return "it has no tick";
  if (Refusal refusal = takeFocus(control)) return refusal;
  if (dialog_.isEnded() || tick->IsChecked() == isOn) return std::nullopt;
  if (control.kind() == ControlKind::radio && !isOn) return "a radio button is left by ticking another one";
  tick->SetChecked(isOn);
  dialog_.raise({control.role(), KvUiEventKind::changed, 0, 0, {}});
  return std::nullopt;
}

Refusal Gestures::type(ControlModel& control, std::wstring_view text) {
  if (!isField(control)) return "it has no field to type in";
  if (Refusal refusal = reachForChange(control)) return refusal;
  const auto* shown = dynamic_cast<TextModel*>(&control);
  if (shown != nullptr && shown->isReadOnly()) return "it is read-only";
  if (Refusal refusal = takeFocus(control)) return refusal;
  if (dialog_.isEnded()) return std::nullopt;
  if (auto* field = dynamic_cast<TextModel*>(&control)) field->SetText(text);
  if (auto* list = dynamic_cast<ListModel*>(&control)) list->SetText(text);
  return std::nullopt;
}

Refusal Gestures::choose(ControlModel& control, int index) {
  auto* list = dynamic_cast<ListModel*>(&control);
  if (list == nullptr) return "it is not a list";
  if (Refusal refusal = reachForChange(control)) return refusal;
  if (Refusal refusal = takeFocus(control)) return refusal;
  if (dialog_.isEnded()) return std::nullopt;
  if (index < 0 || index >= list->Count()) return "it has no entry " + std::to_string(index);
  if (list->Selected() == index) return std::nullopt;
  list->Select(index);
  dialog_.raise({control.role(), KvUiEventKind::changed, index, 0, {}});
  return std::nullopt;
}

Refusal Gestures::enter() {
  ControlModel* control = dialog_.focus();
  if (control != nullptr) {
    if (Refusal refusal = reach(*control)) return refusal;
    if (isField(*control)) {
      dialog_.raise({control->role(), KvUiEventKind::committed, 0, 0, textIn(*control)});
      return std::nullopt;
    }
    // Of a table to choose from, the row is accepted; where cells are edited, Enter is theirs.
    const auto* grid = dynamic_cast<const GridModel*>(control);
    if (grid != nullptr && grid->IsEditable()) return std::nullopt;
    if (control->kind() == ControlKind::button) return press(*control);
  }
  for (ControlModel* button : dialog_.controls())
    if (button->form().isDefault) return press(*button);
  return "no default button is there for Enter";
}

Refusal Gestures::deleteKey() {
  ControlModel* control = dialog_.focus();
  int chosen = -1;
  if (auto* grid = dynamic_cast<GridModel*>(control)) return emptyCell(*grid);
  if (auto* tree = dynamic_cast<TreeModel*>(control)) chosen = tree->Selected() == 0 ? -1 : tree->Selected();
  if (auto* list = dynamic_cast<ListModel*>(control)) chosen = list->Selected();
  if (chosen < 0) return "nothing is selected that the key could mean";
  if (Refusal refusal = reachForChange(*control)) return refusal;
  dialog_.raise({control->role(), KvUiEventKind::deleteKey, chosen, 0, {}});
  return std::nullopt;
}

Refusal Gestures::emptyCell(GridModel& grid) {
  if (Refusal refusal = reachForChange(grid.owner())) return refusal;
  const int row = grid.SelectedRow();
  const int column = grid.clickedColumn();
  if (row == 0) return "nothing is selected that the key could mean";
  const KvUiCellKind kind = grid.cellKind(row, column);
  if (!grid.IsEditable() || kind == KvUiCellKind::fixed || kind == KvUiCellKind::dropDown)
    return std::nullopt;
  CellAnswer answer = CellAnswer::taken;
  return editCell(grid, row, column, kind == KvUiCellKind::tick ? L"0" : L"", answer);
}

Refusal Gestures::help() {
  if (dialog_.hasGivenEditor()) return "the dialog is hidden, the host has the editor";
  dialog_.access().help();
  return std::nullopt;
}

Refusal Gestures::close() {
  if (dialog_.hasGivenEditor()) return "the dialog is hidden, the host has the editor";
  dialog_.access().cancel();
  return std::nullopt;
}

Refusal Gestures::selectItem(TreeModel& tree, int item) {
  if (Refusal refusal = takeFocus(tree)) return refusal;
  if (!dialog_.isEnded()) tree.Select(item);
  return std::nullopt;
}

Refusal Gestures::doubleClickItem(TreeModel& tree, int item) {
  if (Refusal refusal = selectItem(tree, item)) return refusal;
  if (!dialog_.isEnded()) dialog_.raise({tree.role(), KvUiEventKind::doubleClicked, item, 0, {}});
  return std::nullopt;
}

Refusal Gestures::selectRow(GridModel& grid, int row, int column) {
  if (Refusal refusal = reach(grid.owner())) return refusal;
  if (row < 1 || row > grid.RowCount()) return "it has no row " + std::to_string(row);
  if (Refusal refusal = takeFocus(grid)) return refusal;
  if (dialog_.isEnded()) return std::nullopt;
  if (grid.edit() && grid.edit()->row != row) commitRow(grid);
  // The commit may have put the rows in another order, or ended the dialog.
  if (dialog_.isEnded()) return std::nullopt;
  if (row > grid.RowCount()) return "row " + std::to_string(row) + " went away when the row in work was left";
  grid.setClickedColumn(column);
  if (grid.SelectedRow() == row) return std::nullopt;
  grid.SelectRow(row);
  dialog_.raise({grid.role(), KvUiEventKind::selected, row, column, {}});
  return std::nullopt;
}

Refusal Gestures::doubleClickRow(GridModel& grid, int row, int column) {
  if (Refusal refusal = selectRow(grid, row, column)) return refusal;
  if (!dialog_.isEnded()) dialog_.raise({grid.role(), KvUiEventKind::doubleClicked, row, column, {}});
  return std::nullopt;
}

Refusal Gestures::checkEdit(GridModel& grid, int row, int column, std::wstring_view text, bool isNewRow) {
  if (Refusal refusal = reachForChange(grid.owner())) return refusal;
  if (!grid.IsEditable()) return "its cells cannot be edited";
  if (!isNewRow && (row < 1 || row > grid.RowCount())) return "it has no row " + std::to_string(row);
  if (!grid.has(0, column)) return "it has no column " + std::to_string(column);
  if (grid.isHidden(column)) return "column " + std::to_string(column) + " is hidden";
  switch (grid.cellKind(row, column)) {
  case KvUiCellKind::fixed:
    return "the cell cannot be edited";
  case KvUiCellKind::tick:
    if (text != L"0" && text != L"1") return "the cell is a check box: use true or false";
    return std::nullopt;
  case KvUiCellKind::text:
  case KvUiCellKind::dropDown:
    return std::nullopt;
  }
  return std::nullopt;
}

Refusal Gestures::editCell(GridModel& grid, int row, int column, std::wstring_view text, CellAnswer& answer) {
  const bool isNewRow = grid.hasNewRow() && row == grid.RowCount() + 1;
  if (Refusal refusal = checkEdit(grid, row, column, text, isNewRow)) return refusal;
  if (isNewRow) {
    // The row in work is left before there is a new one: its flow may still count the rows.
    if (Refusal refusal = takeFocus(grid)) return refusal;
    commitRow(grid);
    if (dialog_.isEnded()) return std::nullopt;
    row = grid.RowCount() + 1;
    grid.SetSize(row, grid.ColumnCount());
  }
  if (Refusal refusal = selectRow(grid, row, column)) return refusal;
  if (dialog_.isEnded()) return std::nullopt;
  if (!grid.edit()) {
    grid.edit() = GridModel::Edit{row, isNewRow, false};
    dialog_.raise({grid.role(), KvUiEventKind::editBegun, row, column, {}});
    if (dialog_.isEnded()) return std::nullopt;
  }
  if (grid.cellKind(row, column) == KvUiCellKind::dropDown) {
    const std::vector<std::wstring> choices = cellChoices(grid, row, column);
    if (choices.empty()) return "the list of the cell is empty";
    if (std::find(choices.begin(), choices.end(), text) == choices.end())
      return "the list of the cell has no \"" + toUtf8(text) + "\"";
  }
  if (!dialog_.access().validateCell(grid.role(), row, column, text)) {
    answer = CellAnswer::refused;
    return std::nullopt;
  }
  answer = CellAnswer::taken;
  if (grid.Cell(row, column) == text || !grid.has(row, column)) return std::nullopt;
  if (grid.edit()) grid.edit()->isChanged = true;
  grid.SetCell(row, column, text);
  dialog_.raise({grid.role(), KvUiEventKind::cellEdited, row, column, text});
  return std::nullopt;
}

std::vector<std::wstring> Gestures::cellChoices(GridModel& grid, int row, int column) {
  std::vector<std::wstring> choices = grid.cellChoices(row, column);
  if (!choices.empty()) return choices;
  if (!dialog_.access().cellChoices(grid.role(), row, column, choices)) choices.clear();
  return choices;
}

} // namespace simhost
