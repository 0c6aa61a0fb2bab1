// Keys and focus of a dialog's window.
#include "simhost/qt/dialog_frame.h"

#include "simhost/qt/layout_builder.h"
#include "simhost/qt/qt_dialog.h"
#include "text/encoding.h"

#include <QAbstractItemView>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QSplitter>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <iterator>
#include <numeric>
#include <utility>

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
  closeByFrame();
}

void DialogFrame::closeEvent(QCloseEvent* event) {
  // Only the flow closes it.
  event->ignore();
  closeByFrame();
}

bool DialogFrame::handleKey(QKeyEvent& event, const ControlView* view) {
  if (event.modifiers() & ~Qt::KeypadModifier) return false;
  if (event.key() == Qt::Key_Delete && view != nullptr && takesDelete(*view)) {
    pressKey("Delete");
    return true;
  }
  for (const DialogKey& row : dialogKeys)
    if (event.key() == row.key) {
      pressKey(row.name);
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

ControlView* DialogFrame::focusedView() const {
  for (const QWidget* widget = focusWidget(); widget != nullptr; widget = widget->parentWidget())
    if (ControlView* view = watched(widget)) return view;
  return nullptr;
}

/// Before the window is laid out, a splitter would divide what it is given in proportion to a size that it never has.
void DialogFrame::showBar() {
  const int wanted = std::exchange(wantedBar_, 0);
  if (splitter_ == nullptr || wanted == 0) return;
  QList<int> sizes = splitter_->sizes();
  const int sum = std::accumulate(sizes.begin(), sizes.end(), 0);
  sizes[0] = std::min(wanted, sum - 1);
  for (qsizetype pane = 1; pane < sizes.size(); ++pane)
    sizes[pane] = std::max((sum - sizes[0]) / static_cast<int>(sizes.size() - 1), 1);
  splitter_->setSizes(sizes);
}

void DialogFrame::setBar(int place) {
  wantedBar_ = place;
  if (isVisible()) showBar();
}

void DialogFrame::pressKey(const char* key) {
  const std::string name = key;
  nlohmann::ordered_json action = {{"key", name}};
  ControlView* const view = focusedView();
  const bool isForControl = name == "Enter" || name == "Delete";
  // Enter beside fields and buttons is the default button's.
  if (name == "Enter" && (dialog_.focus() == nullptr || dialog_.focus()->kind() == ControlKind::tree))
    dialog_.prepareOk();
  if (isForControl && view != nullptr) action["in"] = brenvolt::toUtf8(view->model().role());
  dialog_.act(std::move(action), [&](Gestures& gestures, nlohmann::ordered_json&) -> Refusal {
    if (name == "F1") return gestures.help();
    if (name == "Escape") return gestures.close();
    if (view != nullptr)
      if (Refusal refusal = gestures.focus(view->focusModel())) return refusal;
    if (dialog_.isEnded()) return std::nullopt;
    return name == "Enter" ? gestures.enter() : gestures.deleteKey();
  });
}

void DialogFrame::closeByFrame() {
  dialog_.act(
      {{"close", "frame"}}, [](Gestures& gestures, nlohmann::ordered_json&) { return gestures.close(); });
}

} // namespace simhost
