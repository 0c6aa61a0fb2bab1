// Finding what an action names: a control by role or by its label on a page, a row, a column, a tree item. Where
// nothing or more than one thing is found, the reason is thrown as AnswerError.
#pragma once

#include "simhost/ui/answers.h"
#include "simhost/ui/dialog_model.h"
#include "simhost/ui/grid_model.h"
#include "simhost/ui/tree_model.h"

#include <string>
#include <vector>

namespace simhost {

/// A role, or "<role of pages>/<label>" for a control on the page that is shown.
[[nodiscard]] ControlModel& findControl(const DialogModel& dialog, const std::string& subject);
/// The grid of the control, also a group's. Null when it has none.
[[nodiscard]] GridModel* gridOf(ControlModel& control);
[[nodiscard]] int findColumn(const GridModel& grid, const ColumnChoice& column);
/// A text finds the row that begins with it, in the row head or, when no row head has it, in the next column.
[[nodiscard]] int findRow(const GridModel& grid, const RowChoice& row);
[[nodiscard]] int findItem(const TreeModel& tree, const std::vector<PathPart>& path);

} // namespace simhost
