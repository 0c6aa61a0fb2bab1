// The gestures of a user in a dialog, with their events. Each gesture returns why it cannot be done,
// or nothing when it was done; what cannot be done raises no event. Steps and screens go through the same gestures, so
// both raise the same events.
#pragma once

#include "simhost/ui/dialog_model.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace simhost {

class GridModel;
class GroupModel;
class TreeModel;

/// The reason why a gesture is refused.
using Refusal = std::optional<std::string>;

/// What became of an edit that was possible as such.
enum class CellAnswer { taken, refused };

class Gestures {
public:
  explicit Gestures(DialogModel& dialog) : dialog_(dialog) {}
  Gestures(const Gestures&) = delete;
  Gestures& operator=(const Gestures&) = delete;
  virtual ~Gestures();

  /// Moves the focus: a text field or an editable list that loses it is committed, an edited grid row too.
  [[nodiscard]] virtual Refusal focus(ControlModel& control);
  /// No control has the focus afterwards.
  virtual void leave();

  [[nodiscard]] virtual Refusal press(ControlModel& control);
  /// A button in the header of a group, from 0.
  [[nodiscard]] virtual Refusal pressInGroup(GroupModel& group, int button);
  /// Does nothing when it is in this state already.
  [[nodiscard]] virtual Refusal tick(ControlModel& control, bool isOn);
  /// Replaces the text of a field without leaving it.
  [[nodiscard]] virtual Refusal type(ControlModel& control, std::wstring_view text);
  /// Raises an event when the entry was not selected before.
  [[nodiscard]] virtual Refusal choose(ControlModel& control, int index);

  /// In a field Enter commits and does nothing else; in a grid it does nothing; elsewhere it presses the default
  /// button.
  [[nodiscard]] virtual Refusal enter();
  /// On the selected tree item or list entry; in a grid it empties the cell that was clicked last.
  [[nodiscard]] virtual Refusal deleteKey();
  /// F1.
  [[nodiscard]] virtual Refusal help();
  /// The frame's button, or Escape.
  [[nodiscard]] virtual Refusal close();

  [[nodiscard]] virtual Refusal selectItem(TreeModel& tree, int item);
  [[nodiscard]] virtual Refusal doubleClickItem(TreeModel& tree, int item);
  /// Leaves the row that is being edited, selects the other one.
  [[nodiscard]] virtual Refusal selectRow(GridModel& grid, int row, int column);
  [[nodiscard]] virtual Refusal doubleClickRow(GridModel& grid, int row, int column);
  /// Enters a text into a cell as its kind allows; the row is edited until the user leaves it. The row after the last
  /// one is the empty row for a new record. `answer` says whether the dialog accepted the text.
  [[nodiscard]] virtual Refusal editCell(
      GridModel& grid, int row, int column, std::wstring_view text, CellAnswer& answer);
  /// The present list of a drop-down cell; calls the dialog when the cell has no choices of its own.
  [[nodiscard]] std::vector<std::wstring> cellChoices(GridModel& grid, int row, int column);

  /// Returns why a user cannot reach a control, nothing if it can be reached.
  [[nodiscard]] Refusal reach(const ControlModel& control) const;
  /// The same, and its page must not be locked.
  [[nodiscard]] Refusal reachForChange(const ControlModel& control) const;

protected:
  [[nodiscard]] DialogModel& dialog() const { return dialog_; }

private:
  [[nodiscard]] Refusal takeFocus(ControlModel& control);
  void leaveControl(ControlModel& control);
  void commitRow(GridModel& grid);
  [[nodiscard]] Refusal emptyCell(GridModel& grid);
  [[nodiscard]] Refusal checkEdit(
      GridModel& grid, int row, int column, std::wstring_view text, bool isNewRow);

  DialogModel& dialog_;
};

} // namespace simhost
