// Finding and refreshing views.
#include "simhost/qt/view_set.h"

#include "simhost/ui/grid_model.h"

#include <algorithm>
#include <utility>

namespace simhost {

ControlView* ViewSet::of(const ControlModel& model) const {
  const auto found = viewOf_.find(&model);
  if (found != viewOf_.end()) return found->second;
  const auto* grid = dynamic_cast<const GridModel*>(&model);
  const auto owner = grid == nullptr ? viewOf_.end() : viewOf_.find(&grid->owner());
  return owner == viewOf_.end() ? nullptr : owner->second;
}

ControlView* ViewSet::first(const QWidget& window) const {
  for (const auto& view : views_) {
    const auto* text = dynamic_cast<const TextModel*>(&view->model());
    const bool isToRead = text != nullptr && text->isReadOnly();
    const QWidget& widget = view->focusWidget();
    if (!isToRead && widget.isEnabledTo(&window) && widget.focusPolicy() & Qt::TabFocus) return view.get();
  }
  return nullptr;
}

ControlView& ViewSet::add(std::unique_ptr<ControlView> view) {
  views_.push_back(std::move(view));
  ControlView& added = *views_.back();
  viewOf_[&added.model()] = &added;
  changed_.insert(&added.model());
  return added;
}

void ViewSet::remove(ControlView& view) {
  view.widget().hide();
  view.widget().deleteLater();
  viewOf_.erase(&view.model());
  changed_.erase(&view.model());
  removed_.push_back(std::move(*std::find_if(
      views_.begin(), views_.end(), [&view](const auto& owned) { return owned.get() == &view; })));
  std::erase(views_, nullptr);
}

void ViewSet::refresh() {
  const std::set<ControlModel*> changed = std::exchange(changed_, {});
  for (const auto& view : views_)
    if (changed.contains(&view->model())) view->refresh();
  if (changed.empty()) return;
  for (const auto& view : views_)
    view->refreshLinked();
}

} // namespace simhost
