// Pages on the screen: the lists and groups that a flow makes while the dialog runs.
#pragma once

#include "simhost/qt/control_view.h"
#include "simhost/ui/pages_model.h"

#include <QStringList>

namespace simhost {

/// Shows the page that is to be seen; controls of pages are put on them as they are made.
class PagesView : public ControlView {
public:
  using ControlView::ControlView;
  virtual void addControl(ControlView& view) = 0;
};

/// A group of cells.
class CellGroupView : public ControlView {
public:
  using ControlView::ControlView;
  /// What the build has found for its rows, shown in cells that are empty while the group is locked. The cells themselves
  /// stay empty: it is not part of the configuration.
  virtual void showDrawn(const QStringList& texts) = 0;
};

[[nodiscard]] std::unique_ptr<PagesView> makePagesView(QtDialog& dialog, PagesModel& model);
[[nodiscard]] std::unique_ptr<ControlView> makeGroupView(QtDialog& dialog, GroupModel& model);

} // namespace simhost
