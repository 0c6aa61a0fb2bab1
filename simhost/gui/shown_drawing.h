// Keeps what the view shows equal to the drawing.
#pragma once

#include "simhost/gui/window_services.h"

namespace simhost {

class DrawingView;

class ShownDrawing final {
public:
  /// The view must outlive it.
  ShownDrawing(const WindowServices& services, DrawingView& view) : services_(services), view_(view) {}
  ShownDrawing(const ShownDrawing&) = delete;
  ShownDrawing& operator=(const ShownDrawing&) = delete;

  /// Shows what has changed since the last time; nothing is done without a change.
  void refresh();
  /// The next refresh shows the drawing in any case: it is another one, or shown with other words.
  void invalidate() { shownChange_.reset(); }

  /// Another state is shown.
  std::function<void()> onChanged;

private:
  WindowServices services_;
  DrawingView& view_;
  std::optional<std::uint64_t> shownChange_;
};

} // namespace simhost
