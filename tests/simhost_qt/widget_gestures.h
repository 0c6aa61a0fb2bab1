// Gestures made on the widgets themselves: clicks, keys and typed letters at the position where a user would make
// them. The effects come from the window; here only the possibility is checked.
#pragma once

#include "simhost/qt/qt_dialog.h"

class QTableView;

namespace simhost::test {

class WidgetGestures final : public Gestures {
public:
  explicit WidgetGestures(QtDialog& dialog) : Gestures(dialog), dialog_(dialog) {}

  [[nodiscard]] Refusal focus(ControlModel& control) override;
  void leave() override;
  [[nodiscard]] Refusal press(ControlModel& control) override;
  [[nodiscard]] Refusal pressInGroup(GroupModel& group, int button) override;
  [[nodiscard]] Refusal tick(ControlModel& control, bool isOn) override;
  [[nodiscard]] Refusal type(ControlModel& control, std::wstring_view text) override;
  [[nodiscard]] Refusal choose(ControlModel& control, int index) override;
  [[nodiscard]] Refusal enter() override;
  [[nodiscard]] Refusal deleteKey() override;
  [[nodiscard]] Refusal help() override;
  [[nodiscard]] Refusal close() override;
  [[nodiscard]] Refusal selectItem(TreeModel& tree, int item) override;
  [[nodiscard]] Refusal doubleClickItem(TreeModel& tree, int item) override;
  [[nodiscard]] Refusal selectRow(GridModel& grid, int row, int column) override;
  [[nodiscard]] Refusal doubleClickRow(GridModel& grid, int row, int column) override;
  [[nodiscard]] Refusal editCell(
      GridModel& grid, int row, int column, std::wstring_view text, CellAnswer& answer) override;

private:
  /// The view, or why it cannot be reached: the rules and the widget must agree.
  [[nodiscard]] Refusal find(ControlModel& control, bool isForChange, ControlView*& view);
  [[nodiscard]] Refusal findCell(GridModel& grid, int row, int column, QTableView*& table);
  void key(int key);

  QtDialog& dialog_;
};

/// What the widgets of the dialog do not show as they should: "<role>: <member> ...", empty when all is well.
[[nodiscard]] std::string unlikeShown(QtDialog& dialog);

} // namespace simhost::test
