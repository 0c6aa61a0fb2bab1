// The window of a dialog: its layout, its keys, its place on the screen.
#pragma once

#include "simhost/qt/form_layout.h"

#include <QDialog>

#include <map>

class QSplitter;

namespace simhost {

class ControlView;
class QtDialog;

class DialogFrame final : public QDialog {
public:
  DialogFrame(QtDialog& dialog, QWidget* parent);

  /// Puts the widgets of the views into their places.
  void build(const FormLayout& layout);
  /// Hears of the focus and the keys of a view's widgets.
  void watch(ControlView& view);
  void unwatch(ControlView& view);
  [[nodiscard]] ControlView* watched(const QObject* widget) const;
  /// The control that has the focus of this window, null for none.
  [[nodiscard]] ControlView* focusedView() const;
  [[nodiscard]] QSplitter* splitter() const { return splitter_; }
  /// Puts the divider of the window there, as soon as the window has a size.
  void setBar(int place);
  void showBar();

  void reject() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

private:
  /// True when the key means something to the dialog.
  bool handleKey(QKeyEvent& event, const ControlView* view);
  /// A key with a meaning in the dialog: one of those that an answer file knows.
  void pressKey(const char* key);
  void closeByFrame();

  QtDialog& dialog_;
  std::map<const QObject*, ControlView*> views_;
  QSplitter* splitter_ = nullptr; ///< of the layout, null without one
  int wantedBar_ = 0;             ///< position of the divider once the window has a size, 0 for none
};

} // namespace simhost
