// The views of a dialog's controls, in the order of the controls.
#pragma once

#include "simhost/qt/control_view.h"

#include <map>
#include <memory>
#include <set>
#include <vector>

namespace simhost {

class ViewSet final {
public:
  ViewSet() = default;
  ViewSet(const ViewSet&) = delete;
  ViewSet& operator=(const ViewSet&) = delete;

  [[nodiscard]] auto begin() const { return views_.begin(); }
  [[nodiscard]] auto end() const { return views_.end(); }
  /// The view of a control, of a grid also that of its group; null for none.
  [[nodiscard]] ControlView* of(const ControlModel& model) const;
  /// The control of a window that has the focus first; null for none.
  [[nodiscard]] ControlView* first(const QWidget& window) const;

  ControlView& add(std::unique_ptr<ControlView> view);
  /// Hides a view; it lives until `dropRemoved`, since a gesture on it may still be on its way back.
  void remove(ControlView& view);
  void dropRemoved() { removed_.clear(); }

  /// The next `refresh` shows it again.
  void markChanged(ControlModel& model) { changed_.insert(&model); }
  void refresh();

private:
  std::vector<std::unique_ptr<ControlView>> views_;
  std::vector<std::unique_ptr<ControlView>> removed_;
  std::map<const ControlModel*, ControlView*> viewOf_;
  std::set<ControlModel*> changed_;
};

} // namespace simhost
