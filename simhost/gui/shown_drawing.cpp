// Loading the scene.
#include "simhost/gui/shown_drawing.h"

#include "simhost/gui/drawing_view.h"

namespace simhost {

void ShownDrawing::refresh() {
  const DrawingDatabase& drawing = services_.drawing();
  const std::uint64_t change = drawing.undoLog().changeCount();
  if (change == shownChange_) return;
  shownChange_ = change;
  if (!view_.scene().load(drawing, drawing.currentSpace()))
    services_.status.say(services_.texts(HostText::tooManyShapes));
  if (view_.marks().selected() && drawing.find(*view_.marks().selected()) == nullptr)
    view_.marks().select(std::nullopt);
  view_.sceneChanged();
  if (onChanged) onChanged();
}

} // namespace simhost
