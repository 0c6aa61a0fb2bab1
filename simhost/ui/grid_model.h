// The model of a grid: cells, selection, and the row that is being edited.
#pragma once

#include "simhost/ui/control_model.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace simhost {

class GridModel final : public ModelOf<KvUiGrid> {
public:
  GridModel(DialogModel& dialog, FormControl form);
  /// The grid of a group, which is recorded and found as part of it.
  GridModel(DialogModel& dialog, FormControl form, ControlModel& owner);

  /// What fits into the new size is kept.
  void SetSize(int rows, int columns) override;
  [[nodiscard]] int RowCount() const override { return static_cast<int>(rows_.size()) - 1; }
  [[nodiscard]] int ColumnCount() const override { return columns_; }
  void SetCell(int row, int column, std::wstring_view text) override;
  /// Empty outside of the grid.
  [[nodiscard]] std::wstring Cell(int row, int column) const override;
  void SetCellKind(int row, int column, KvUiCellKind kind) override;
  void SetCellChoices(int row, int column, const std::vector<std::wstring>& choices) override;
  void SetCellTone(int row, int column, KvUiCellTone tone) override;
  void RemoveRow(int row) override;
  void SetEditable(bool editable, bool withNewRow) override;
  [[nodiscard]] bool IsEditable() const override { return isEditable_; }
  void SelectRow(int row) override;
  [[nodiscard]] int SelectedRow() const override { return selectedRow_; }
  void ScrollTo(int row) override;
  void HideColumn(int column, bool hidden) override;
  void SetColumnWidths(const std::vector<int>& parts) override;
  void LockDrawing() override { ++drawingLocks_; }
  void UnlockDrawing() override;

  [[nodiscard]] bool has(int row, int column) const;
  [[nodiscard]] bool isHidden(int column) const;
  [[nodiscard]] bool hasNewRow() const { return isEditable_ && withNewRow_; }
  [[nodiscard]] KvUiCellKind cellKind(int row, int column) const;
  [[nodiscard]] KvUiCellTone cellTone(int row, int column) const;
  [[nodiscard]] const std::vector<std::wstring>& cellChoices(int row, int column) const;
  [[nodiscard]] std::vector<std::wstring> rowTexts(int row) const;
  /// Relative widths; empty fits each column to its texts.
  [[nodiscard]] const std::vector<int>& columnWidths() const { return columnWidths_; }
  [[nodiscard]] bool isDrawingLocked() const { return drawingLocks_ > 0; }
  /// The row that the flow scrolls to, returned once; 0 for none.
  [[nodiscard]] int takeScrollTarget() { return std::exchange(scrollTarget_, 0); }
  /// The control that contains the grid: its group, else itself.
  [[nodiscard]] ControlModel& owner() const { return *owner_; }

  /// The column of the cell that the user touched last.
  [[nodiscard]] int clickedColumn() const { return clickedColumn_; }
  void setClickedColumn(int column) { clickedColumn_ = column; }

  /// The row that the user is editing, from the first touch of a cell until another row or control is touched.
  struct Edit {
    int row = 0;
    bool isNew = false;
    bool isChanged = false;
  };
  [[nodiscard]] std::optional<Edit>& edit() { return edit_; }
  void describe(nlohmann::ordered_json& shown) const override;

private:
  struct CellState {
    std::wstring text;
    std::vector<std::wstring> choices;
    KvUiCellKind kind = KvUiCellKind::text;
    KvUiCellTone tone = KvUiCellTone::normal;
  };
  CellState& cell(int row, int column);
  [[nodiscard]] const CellState* find(int row, int column) const;
  void touchGrid();

  ControlModel* owner_;
  std::vector<std::vector<CellState>> rows_; ///< the header first
  int columns_ = 0;
  std::vector<bool> hidden_;
  bool isEditable_;
  bool withNewRow_ = false;
  int selectedRow_ = 0;
  int clickedColumn_ = 0;
  int drawingLocks_ = 0;
  int scrollTarget_ = 0;
  std::vector<int> columnWidths_;
  std::optional<Edit> edit_;
};

} // namespace simhost
