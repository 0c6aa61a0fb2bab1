// Keys and focus of a dialog's window.
#include "simhost/qt/dialog_frame.h"

#include "simhost/qt/layout_builder.h"
#include "simhost/qt/qt_dialog.h"

#include <QAbstractItemView>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMouseEvent>

#include <iterator>

namespace simhost {

namespace {

struct DialogKey {
  int key;
  const char* name; ///< in answer files
};
constexpr DialogKey dialogKeys[] = {
    {Qt::Key_Return, "Enter"},
    {Qt::Key_Enter, "Enter"},
    {Qt::Key_Escape, "Escape"},
    {Qt::Key_F1, "F1"},
};

/// Where the Delete key means an entry and not a letter.
bool takesDelete(const ControlView& view) {
  switch (view.model().kind()) {
  case ControlKind::tree:
  case ControlKind::list:
  case ControlKind::grid:
    return true;
  case ControlKind::text:
  case ControlKind::editableList:
  case ControlKind::tick:
  case ControlKind::radio:
  case ControlKind::button:
  case ControlKind::pages:
    return false;
  }
  return false;
}

} // namespace

DialogFrame::DialogFrame(QtDialog& dialog, QWidget* parent) : QDialog(parent), dialog_(dialog) {
  setWindowModality(Qt::ApplicationModal);
  // A click beside all controls leaves the one with the focus.
  setFocusPolicy(Qt::ClickFocus);
}

void DialogFrame::build(const FormLayout& layout) {
  // The other windows stay closed to commands, since one runs; but the drawing is moved and looked at.
  if (layout.isBeside) setWindowModality(Qt::NonModal);
  splitter_ = LayoutBuilder(dialog_, *this).build(layout);
  QWidget* before = nullptr;
  for (const auto& view : dialog_.views()) {
    watch(*view);
    for (QWidget* widget :
         {view->searchField(), &view->focusWidget(), static_cast<QWidget*>(view->companion())}) {
      if (widget == nullptr) continue;
      if (before != nullptr) setTabOrder(before, widget);
      before = widget;
    }
  }
}

void DialogFrame::watch(ControlView& view) {
  QWidget& widget = view.focusWidget();
  widget.installEventFilter(this);
  views_[&widget] = &view;
}

void DialogFrame::unwatch(ControlView& view) {
  std::erase_if(views_, [&view](const auto& entry) { return entry.second == &view; });
}

ControlView* DialogFrame::watched(const QObject* widget) const {
  const auto found = views_.find(widget);
  return found == views_.end() ? nullptr : found->second;
}

void DialogFrame::reject() {
  dialog_.closeBy();
}

void DialogFrame::closeEvent(QCloseEvent* event) {
  // Only the flow closes it.
  event->ignore();
  dialog_.closeBy();
}

bool DialogFrame::handleKey(QKeyEvent& event, const ControlView* view) {
  if (event.modifiers() & ~Qt::KeypadModifier) return false;
  if (event.key() == Qt::Key_Delete && view != nullptr && takesDelete(*view)) {
    dialog_.keyBy("Delete");
    return true;
  }
  for (const DialogKey& row : dialogKeys)
    if (event.key() == row.key) {
      dialog_.keyBy(row.name);
      return true;
    }
  return false;
}

bool DialogFrame::eventFilter(QObject* object, QEvent* event) {
  ControlView* const view = watched(object);
  if (view == nullptr) return QDialog::eventFilter(object, event);
  if (event->type() == QEvent::FocusIn) {
    const auto reason = static_cast<QFocusEvent*>(event)->reason();
    // Only the user's own ways to a control: focus set by the window or by the program is not a gesture.
    const bool isGesture = reason == Qt::MouseFocusReason || reason == Qt::TabFocusReason ||
                           reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason;
    if (isGesture) dialog_.focusBy(*view);
  }
  // A click into the field that has had the keyboard focus since the opening is a gesture of the user.
  if (event->type() == QEvent::MouseButtonPress && view->model().kind() == ControlKind::text)
    dialog_.focusBy(*view);
  if (event->type() == QEvent::KeyPress && handleKey(*static_cast<QKeyEvent*>(event), view)) return true;
  return QDialog::eventFilter(object, event);
}

void DialogFrame::keyPressEvent(QKeyEvent* event) {
  if (!handleKey(*event, nullptr)) QDialog::keyPressEvent(event);
}

void DialogFrame::mousePressEvent(QMouseEvent* event) {
  QDialog::mousePressEvent(event);
  dialog_.leaveBy();
}

} // namespace simhost
