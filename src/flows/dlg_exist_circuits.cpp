#include "flows/dlg_exist_circuits.h"

#include "host/resources.h"
#include "widgets/common_roles.h"
#include "widgets/roles_circuit.h"

#include <algorithm>
#include <string>
#include <utility>

namespace brenvolt {

namespace {

constexpr wchar_t existCircuitsForm[] = L"ZanDlgExistCircuits";
constexpr wchar_t existCircuitsDialog[] = L"ZanBrenvolt::ZanDlgExistCircuits";

/// A displayed row has nine texts, its circuit's key last. The grid shows the key first, after the row head.
constexpr std::size_t displayColumns = 9;
constexpr std::size_t displayKey = 8;
constexpr int keyColumn = 1;
constexpr int gridColumns = 1 + static_cast<int>(displayColumns);

/// The position in a displayed row that a grid column shows.
constexpr std::size_t shownIn(int column) {
  return column == keyColumn ? displayKey : static_cast<std::size_t>(column - keyColumn - 1);
}

std::wstring titleOf(int column) {
  if (column == keyColumn) return loadText(TextId::existingKeyColumn);
  return loadText(textAt(TextId::existingFirstColumn, static_cast<unsigned>(column - keyColumn - 1)));
}

/// Shares of the grid's width: row head, key, tag, installation, location, three descriptions, circuit, type.
const std::vector<int> columnWidths = {1, 2, 4, 3, 3, 4, 4, 4, 4, 4};

} // namespace

ZanDlgExistCircuits::ZanDlgExistCircuits(
    std::vector<TextRow> rows, std::vector<TextRow> display, TextRow selection, KvWindow* parent)
    : CKvUiDialog(existCircuitsForm, parent), selection_(std::move(selection)), rows_(std::move(rows)),
      display_(std::move(display)) {}

bool ZanDlgExistCircuits::OnInitDialog() {
  SetDialogName(existCircuitsDialog);
  fillGrid();
  const int row = rowOfSelection();
  Grid(role::existingGrid).SelectRow(row);
  if (row > 0) Grid(role::existingGrid).ScrollTo(row);
  enableOk();
  return true;
}

void ZanDlgExistCircuits::fillGrid() {
  KvUiGrid& grid = Grid(role::existingGrid);
  grid.LockDrawing();
  grid.SetEditable(false, false);
  grid.SetSize(static_cast<int>(display_.size()), gridColumns);
  for (int column = keyColumn; column < gridColumns; ++column) {
    grid.SetCell(0, column, titleOf(column));
    for (std::size_t row = 0; row < display_.size(); ++row)
      if (shownIn(column) < display_[row].size())
        grid.SetCell(static_cast<int>(row) + 1, column, display_[row][shownIn(column)]);
  }
  grid.SetColumnWidths(columnWidths);
  grid.UnlockDrawing();
}

int ZanDlgExistCircuits::rowOfSelection() const {
  if (selection_.size() != circuitrow::columns) return 0;
  const auto isSelected = [this](const TextRow& row) {
    return row.size() == displayColumns && row[displayKey] == selection_[circuitrow::key];
  };
  const auto found = std::find_if(display_.begin(), display_.end(), isSelected);
  return found == display_.end() ? 0 : static_cast<int>(found - display_.begin()) + 1;
}

void ZanDlgExistCircuits::enableOk() {
  const KvUiGrid& grid = Grid(role::existingGrid);
  Button(role::ok).Enable(grid.SelectedRow() > 0 && grid.RowCount() > 0);
}

void ZanDlgExistCircuits::OnEvent(const KvUiEvent& event) {
  if (event.role != role::existingGrid) return;
  if (event.kind == KvUiEventKind::selected) enableOk();
  if (event.kind == KvUiEventKind::doubleClicked) OnOK();
}

void ZanDlgExistCircuits::OnOK() {
  const KvUiGrid& grid = Grid(role::existingGrid);
  const int row = grid.SelectedRow();
  if (row == 0) return;
  const std::wstring key = grid.Cell(row, keyColumn);
  const auto found = std::find_if(rows_.begin(), rows_.end(), [&key](const TextRow& each) {
    return each.size() == circuitrow::columns && each[circuitrow::key] == key;
  });
  if (found == rows_.end()) return;
  selection_ = *found;
  EndDialog(kvui::ok);
}

} // namespace brenvolt
