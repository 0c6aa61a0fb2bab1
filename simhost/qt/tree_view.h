// A tree on the screen.
#pragma once

#include "simhost/qt/control_view.h"
#include "simhost/ui/tree_model.h"

class QTreeWidgetItem;

namespace simhost {

[[nodiscard]] std::unique_ptr<ControlView> makeTreeView(
    QtDialog& dialog, TreeModel& model, const ControlLook& look);

} // namespace simhost
