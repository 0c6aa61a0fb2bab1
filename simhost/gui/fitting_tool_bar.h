// A tool bar that never hides a command: where the captions do not fit, only the icons are shown.
#pragma once

#include <QToolBar>

namespace simhost {

class FittingToolBar final : public QToolBar {
public:
  using QToolBar::QToolBar;

protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

private:
  void fit();
  /// Of all buttons with captions.
  int wholeWidth_ = 0;
};

} // namespace simhost
