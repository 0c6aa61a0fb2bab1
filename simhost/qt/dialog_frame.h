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
  [[nodiscard]] QSplitter* splitter() const { return splitter_; }

  void reject() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

private:
  /// True when the key means something to the dialog.
  bool handleKey(QKeyEvent& event, const ControlView* view);

  QtDialog& dialog_;
  std::map<const QObject*, ControlView*> views_;
  QSplitter* splitter_ = nullptr; ///< of the layout, null without one
};

} // namespace simhost
