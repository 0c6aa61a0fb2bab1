// Passes the user's gestures to the flow, and their effects to the screen.
#include "simhost/qt/qt_dialog.h"

#include "simhost/qt/dialog_frame.h"
#include "simhost/qt/offered_circuit.h"
#include "simhost/qt/pages_view.h"
#include "simhost/qt/qt_text.h"
#include "simhost/qt/window_places.h"
#include "text/encoding.h"

#include <QApplication>
#include <QEventLoop>
#include <QSplitter>
#include <QTimer>

#include <nlohmann/json.hpp>

#include <string>
#include <utility>

namespace simhost {

using brenvolt::toUtf8;

namespace {

constexpr int keyboardMilliseconds = 200;
constexpr int keyboardTries = 7;

/// Sets a flag for a scope.
class FlagScope final {
public:
  explicit FlagScope(bool& flag) : flag_(flag), before_(std::exchange(flag, true)) {}
  FlagScope(const FlagScope&) = delete;
  FlagScope& operator=(const FlagScope&) = delete;
  ~FlagScope() { flag_ = before_; }

private:
  bool& flag_;
  bool before_;
};

} // namespace

DialogSurroundings::~DialogSurroundings() = default;

QtDialog::QtDialog(
    const Form& form, const FormLayout& layout, CKvUiDialog& dialog, DialogSurroundings& around,
    Recorder& recorder, QWidget* parent)
    : DialogModel(form, dialog), around_(around), gestures_(*this), clock_([this] {
        passTime();
        settle();
      }),
      record_(recorder, toUtf8(form.name), clock_), layout_(layout),
      frame_(std::make_unique<DialogFrame>(*this, parent)) {
  frame_->setObjectName(toQt(form.name));
  frame_->setWindowTitle(toQt(title()));
  for (ControlModel* control : controls())
    views_.add(makeView(*this, *control, layout_.looks[control->role()]));
  frame_->build(layout_);
  refresh();
}

QtDialog::~QtDialog() = default;

QWidget& QtDialog::frame() const {
  return *frame_;
}

void QtDialog::setTitle(std::wstring_view title) {
  DialogModel::setTitle(title);
  frame_->setWindowTitle(toQt(title));
}

void QtDialog::setSplit(const KvUiSplit& split) {
  DialogModel::setSplit(split);
  if (split.width > 0 && split.height > 0) frame_->resize(split.width, split.height);
  if (split.bar > 0) frame_->setBar(split.bar);
}

KvUiSplit QtDialog::split() const {
  const QSplitter* const bar = frame_->splitter();
  if (bar == nullptr || around_.isPiloted()) return DialogModel::split();
  return {bar->sizes().value(0), frame_->width(), frame_->height()};
}

bool QtDialog::beginEditorCommand() {
  if (!DialogModel::beginEditorCommand()) return false;
  // Out of the way: the drawing is picked from, and is seen to grow.
  frame_->hide();
  around_.dialogLends(*this);
  return true;
}

void QtDialog::completeEditorCommand() {
  if (!hasGivenEditor()) return;
  DialogModel::completeEditorCommand();
  around_.dialogTakesBack(*this);
  showAgain();
}

void QtDialog::showAgain() {
  if (loop_ == nullptr || isEnded()) return;
  {
    const FlagScope showing(isShowing_);
    frame_->show();
  }
  frame_->raise();
  frame_->activateWindow();
  takeKeyboard(keyboardTries);
}

// Hidden and shown again at once, a window may be left without the keyboard by the window manager, or be unknown to it:
// it is asked for again, and the window shown once more in between, until one of the program's windows has the keyboard.
void QtDialog::takeKeyboard(int tries) {
  QTimer::singleShot(keyboardMilliseconds, frame_.get(), [this, tries] {
    if (tries == 0 || !frame_->isVisible() || QApplication::activeWindow() != nullptr) return;
    if (tries % 2 == 0) {
      const FlagScope showing(isShowing_);
      frame_->hide();
      frame_->show();
    }
    frame_->raise();
    frame_->activateWindow();
    takeKeyboard(tries - 1);
  });
}

void QtDialog::run() {
  QEventLoop loop;
  around_.dialogOpens(*this);
  refresh();
  showFocus();
  loop_ = &loop;
  {
    // A new window focuses its first control: this is not a gesture of the user.
    const FlagScope showing(isShowing_);
    fitToScreen(*frame_);
    frame_->show();
    frame_->showBar();
  }
  clock_.markAction();
  clock_.skip();
  clock_.arm();
  if (around_.isPiloted()) {
    clock_.setByHand();
    QTimer::singleShot(0, frame_.get(), [this] {
      static_cast<void>(work([this] { around_.pilot(*this); }));
      settle();
    });
  }
  if (around_.keepsRecord()) record_.open(shown());
  if (!isEnded()) loop.exec();
  loop_ = nullptr;
  frame_->hide();
  around_.dialogCloses(*this);
  thrown_.throwOn();
  // The program ends while the dialog is open.
  if (!access().isEnded()) access().end(kvui::cancel);
}

void QtDialog::add(std::unique_ptr<ControlModel> control) {
  ControlModel& added = *control;
  DialogModel::add(std::move(control));
  ControlView& view = views_.add(makeView(*this, added, {}));
  auto* pages = added.pages() == nullptr ? nullptr : dynamic_cast<PagesView*>(views_.of(*added.pages()));
  if (pages != nullptr) pages->addControl(view);
  frame_->watch(view);
}

void QtDialog::forget(ControlModel& control) {
  if (ControlView* view = views_.of(control)) {
    frame_->unwatch(*view);
    views_.remove(*view);
  }
  DialogModel::forget(control);
}

void QtDialog::touched(ControlModel& control) {
  DialogModel::touched(control);
  views_.markChanged(control);
  if (loop_ == nullptr || isRefreshPosted_) return;
  isRefreshPosted_ = true;
  QTimer::singleShot(0, frame_.get(), [this] { refresh(); });
}

bool QtDialog::work(const std::function<void()>& body) {
  if (thrown_.guard(body)) return true;
  if (!access().isEnded()) access().end(kvui::cancel);
  return false;
}

void QtDialog::passTime() {
  if (isActing_ || isEnded() || hasGivenEditor() || !around_.isOnTop(*this)) {
    clock_.skip();
    return;
  }
  const auto fire = [this](int timer) {
    const FlagScope acting(isActing_);
    return work([&] { access().timer(timer); }) && !isEnded();
  };
  clock_.pass(fire);
  if (around_.keepsRecord()) record_.addChanges(changes());
  refresh();
  clock_.arm();
}

void QtDialog::act(Json action, const Gesture& gesture) {
  if (isShowing_) return;
  if (isActing_ || isEnded() || hasGivenEditor()) {
    // What the widget shows already was not done.
    for (ControlModel* control : controls())
      views_.markChanged(*control);
    QTimer::singleShot(0, frame_.get(), [this] { refresh(); });
    return;
  }
  passTime();
  if (isEnded()) return settle();
  const bool keepsRecord = around_.keepsRecord();
  const ControlModel* const focusBefore = focus();
  if (keepsRecord) record_.add(action);
  Refusal refusal;
  {
    const FlagScope acting(isActing_);
    if (!work([&] { refusal = gesture(gestures_, action); })) return settle();
  }
  lastRefusal_ = refusal;
  if (keepsRecord && refusal) {
    const bool moved = focus() != focusBefore && focus() != nullptr;
    record_.refuse(moved ? toUtf8(focus()->role()) : std::string());
  }
  if (keepsRecord) {
    if (!refusal && action.contains("refused")) record_.addToLast("refused", true);
    record_.addChanges(changes());
  }
  views_.dropRemoved();
  clock_.markAction();
  clock_.skip();
  if (ControlView* view = frame_->focusedView()) views_.markChanged(view->model());
  refresh();
  showFocus();
  clock_.arm();
  settle();
}

void QtDialog::prepareOk() {
  if (around_.insertsBeforeOk()) insertWhatWaits(views_);
}

void QtDialog::focusBy(ControlView& view) {
  ControlModel& control = view.focusModel();
  if (isShowing_ || isActing_ || focus() == &control) return;
  act({{"focus", toUtf8(control.role())}},
      [&control](Gestures& gestures, Json&) { return gestures.focus(control); });
}

void QtDialog::leaveBy() {
  if (isShowing_ || isActing_ || focus() == nullptr) return;
  act({{"key", "Tab"}}, [](Gestures& gestures, Json&) -> Refusal {
    gestures.leave();
    return std::nullopt;
  });
}

void QtDialog::noteLeft() {
  if (around_.keepsRecord()) record_.close();
}

void QtDialog::refresh() {
  isRefreshPosted_ = false;
  const FlagScope showing(isShowing_);
  views_.refresh();
}

void QtDialog::showFocus() {
  ControlModel* const wanted = focus();
  ControlView* const view = wanted != nullptr  ? views_.of(*wanted)
                            : loop_ == nullptr ? views_.first(*frame_)
                                               : nullptr;
  if (view == nullptr || isEnded()) return;
  QWidget& widget = view->focusWidget();
  const QWidget* now = frame_->focusWidget();
  if (now == &widget || (now != nullptr && widget.isAncestorOf(now)) || !widget.isEnabled()) return;
  const FlagScope showing(isShowing_);
  widget.setFocus(Qt::OtherFocusReason);
}

void QtDialog::settle() {
  if (loop_ != nullptr && isEnded()) loop_->quit();
}

} // namespace simhost
