// Measuring the captions.
#include "simhost/gui/fitting_tool_bar.h"

#include <QEvent>
#include <QTimer>

namespace simhost {

void FittingToolBar::resizeEvent(QResizeEvent* event) {
  QToolBar::resizeEvent(event);
  fit();
}

void FittingToolBar::changeEvent(QEvent* event) {
  QToolBar::changeEvent(event);
  if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange) return;
  wholeWidth_ = 0;
  QTimer::singleShot(0, this, [this] { fit(); });
}

void FittingToolBar::fit() {
  if (wholeWidth_ == 0) {
    setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    wholeWidth_ = sizeHint().width();
  }
  const auto wanted = wholeWidth_ <= width() ? Qt::ToolButtonTextUnderIcon : Qt::ToolButtonIconOnly;
  if (toolButtonStyle() != wanted) setToolButtonStyle(wanted);
}

} // namespace simhost
