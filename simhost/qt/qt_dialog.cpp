// Passes the user's gestures to the flow, and their effects to the screen.
#include "simhost/qt/qt_dialog.h"

#include "simhost/qt/circuit_facts.h"
#include "simhost/qt/dialog_frame.h"
#include "simhost/qt/pages_view.h"
#include "simhost/qt/qt_text.h"
#include "simhost/qt/window_places.h"
#include "simhost/ui/tree_model.h"
#include "text/encoding.h"

#include <QAbstractButton>
#include <QEventLoop>
#include <QSplitter>
#include <QTimer>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <numeric>
#include <string>
#include <utility>

namespace simhost {

using brenvolt::toUtf8;

namespace {

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

/// Whether two successive actions are one for the user: focusing a control and using it, or the letters of a
/// text.
bool isPartOf(const nlohmann::ordered_json& before, const nlohmann::ordered_json& now) {
  if (!before.is_object() || before.empty()) return false;
  const auto first = before.begin();
  const auto next = now.begin();
  if (first.value() != next.value()) return false;
  if (first.key() == "focus") return next.key() != "key" && next.key() != "expect";
  return first.key() == "type" && next.key() == "type";
}

} // namespace

DialogSurroundings::~DialogSurroundings() = default;

QtDialog::QtDialog(
    const Form& form, const FormLayout& layout, CKvUiDialog& dialog, DialogSurroundings& around,
    Recorder& recorder, QWidget* parent)
    : DialogModel(form, dialog), around_(around), gestures_(*this), record_(recorder, toUtf8(form.name)),
      clock_([this] {
        passTime();
        settle();
      }),
      layout_(layout), frame_(std::make_unique<DialogFrame>(*this, parent)),
      lastAction_(std::make_unique<Json>()) {
  frame_->setObjectName(toQt(form.name));
  frame_->setWindowTitle(toQt(title()));
  for (ControlModel* control : controls()) {
    views_.push_back(makeView(*this, *control, layout_.looks[control->role()]));
    viewOf_[control] = views_.back().get();
  }
  frame_->build(layout_);
  changed_.insert(controls().begin(), controls().end());
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
  if (split.bar > 0) wantedBar_ = split.bar;
  if (frame_->isVisible()) showSplit();
}

/// Before the window is laid out, a splitter would divide what it is given in proportion to a size that it never has.
void QtDialog::showSplit() {
  QSplitter* const bar = frame_->splitter();
  const int wanted = std::exchange(wantedBar_, 0);
  if (bar == nullptr || wanted == 0) return;
  QList<int> sizes = bar->sizes();
  const int sum = std::accumulate(sizes.begin(), sizes.end(), 0);
  sizes[0] = std::min(wanted, sum - 1);
  for (qsizetype pane = 1; pane < sizes.size(); ++pane)
    sizes[pane] = std::max((sum - sizes[0]) / static_cast<int>(sizes.size() - 1), 1);
  bar->setSizes(sizes);
}

KvUiSplit QtDialog::split() const {
  const QSplitter* const bar = frame_->splitter();
  if (bar == nullptr || around_.isPiloted()) return DialogModel::split();
  return {bar->sizes().value(0), frame_->width(), frame_->height()};
}

bool QtDialog::beginEditorCommand() {
  if (!DialogModel::beginEditorCommand()) return false;
  // Out of the way: the drawing is picked from, and is seen to grow.
  putAside();
  around_.dialogLends(*this);
  return true;
}

void QtDialog::completeEditorCommand() {
  if (!hasGivenEditor()) return;
  DialogModel::completeEditorCommand();
  around_.dialogTakesBack(*this);
  showAgain();
}

void QtDialog::putAside() {
  frame_->hide();
}

void QtDialog::showAgain() {
  if (loop_ == nullptr || isEnded()) return;
  {
    const FlagScope showing(isShowing_);
    frame_->show();
  }
  frame_->raise();
  frame_->activateWindow();
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
    showSplit();
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
  views_.push_back(makeView(*this, added, {}));
  ControlView& view = *views_.back();
  viewOf_[&added] = &view;
  auto* pages = added.pages() == nullptr ? nullptr : dynamic_cast<PagesView*>(viewOf(*added.pages()));
  if (pages != nullptr) pages->addControl(view);
  frame_->watch(view);
  changed_.insert(&added);
}

void QtDialog::forget(ControlModel& control) {
  if (ControlView* view = viewOf(control)) {
    frame_->unwatch(*view);
    // A gesture on it may still be on its way back.
    view->widget().hide();
    view->widget().deleteLater();
    forgotten_.push_back(std::move(*std::find_if(
        views_.begin(), views_.end(), [view](const auto& owned) { return owned.get() == view; })));
    std::erase(views_, nullptr);
    viewOf_.erase(&control);
  }
  changed_.erase(&control);
  DialogModel::forget(control);
}

void QtDialog::touched(ControlModel& control) {
  DialogModel::touched(control);
  changed_.insert(&control);
  if (loop_ == nullptr || isRefreshPosted_) return;
  isRefreshPosted_ = true;
  QTimer::singleShot(0, frame_.get(), [this] { refresh(); });
}

ControlView* QtDialog::viewOf(const ControlModel& model) const {
  const auto found = viewOf_.find(&model);
  if (found != viewOf_.end()) return found->second;
  const auto* grid = dynamic_cast<const GridModel*>(&model);
  const auto owner = grid == nullptr ? viewOf_.end() : viewOf_.find(&grid->owner());
  return owner == viewOf_.end() ? nullptr : owner->second;
}

ControlView* QtDialog::focusedView() const {
  for (const QWidget* widget = frame_->focusWidget(); widget != nullptr; widget = widget->parentWidget())
    if (ControlView* view = frame_->watched(widget)) return view;
  return nullptr;
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

void QtDialog::note(Json action) {
  const std::optional<std::int64_t> wait = clock_.waitToTell();
  if (wait) {
    record_.addAction({{"wait", *wait}});
    action["quick"] = true;
  } else if (isPartOf(*lastAction_, action) && record_.replaceLast(action)) {
    *lastAction_ = std::move(action);
    return;
  }
  *lastAction_ = action;
  record_.addAction(std::move(action));
}

void QtDialog::act(Json action, const Gesture& gesture) {
  if (isShowing_) return;
  if (isActing_ || isEnded() || hasGivenEditor()) {
    // What the widget shows already was not done.
    for (ControlModel* control : controls())
      changed_.insert(control);
    QTimer::singleShot(0, frame_.get(), [this] { refresh(); });
    return;
  }
  passTime();
  if (isEnded()) return settle();
  const bool keepsRecord = around_.keepsRecord();
  const ControlModel* const focusBefore = focus();
  if (keepsRecord) note(action);
  Refusal refusal;
  {
    const FlagScope acting(isActing_);
    if (!work([&] { refusal = gesture(gestures_, action); })) return settle();
  }
  lastRefusal_ = refusal;
  if (keepsRecord && refusal) {
    *lastAction_ = Json();
    // Leaving the control before may have had its own consequences.
    const bool moved = focus() != focusBefore && focus() != nullptr;
    if (!moved || !record_.replaceLast({{"focus", toUtf8(focus()->role())}})) record_.dropLast();
  }
  if (keepsRecord) {
    if (!refusal && action.contains("refused")) record_.addToLast("refused", true);
    record_.addChanges(changes());
  }
  forgotten_.clear();
  clock_.markAction();
  clock_.skip();
  if (ControlView* view = focusedView()) changed_.insert(&view->model());
  refresh();
  showFocus();
  clock_.arm();
  settle();
}

void QtDialog::prepareOk() {
  if (!around_.insertsBeforeOk()) return;
  for (const auto& view : views_)
    if (QAbstractButton* rest = view->companion();
        rest != nullptr && view->model().kind() == ControlKind::button)
      if (rest->isEnabled()) return rest->click();
}

OfferedCircuit QtDialog::offeredCircuit() const {
  OfferedCircuit offered;
  for (const auto& view : views_) {
    const ControlModel& model = view->model();
    if (const auto* tree = dynamic_cast<const TreeModel*>(&model); tree != nullptr) {
      const std::vector<std::wstring> path = tree->path(tree->Selected());
      if (model.role() == L"circuits" && path.size() > 1) {
        offered.circuit = path[0];
        offered.type = path[1];
      }
    } else if (const auto* text = dynamic_cast<const TextModel*>(&model); text != nullptr) {
      if (model.role() == L"circuit") offered.circuit = text->Text();
      if (model.role() == L"type") offered.type = text->Text();
    } else if (const auto* list = dynamic_cast<const ListModel*>(&model); list != nullptr) {
      // The first entry stands for the default choices.
      if (model.role() == L"history" && list->Selected() > 0)
        offered.configuration = list->TextAt(list->Selected());
    }
  }
  return offered;
}

QStringList QtDialog::missingFor(const ListModel& list) const {
  QString unit;
  for (const auto& view : views_)
    if (const auto* tree = dynamic_cast<const TreeModel*>(&view->model()); tree != nullptr)
      unit = toQt(tree->TextOf(tree->Selected()));
  if (circuitFacts() == nullptr || list.pages() == nullptr || unit.isEmpty()) return {};
  const QStringList wanted = circuitFacts()->onlyWith(offeredCircuit(), unit, toQt(list.label()));
  if (wanted.isEmpty()) return {};
  for (const auto& view : views_) {
    const auto* other = dynamic_cast<const ListModel*>(&view->model());
    if (other == nullptr || other == &list || other->pages() != list.pages() || other->page() != list.page())
      continue;
    if (other->Selected() >= 0 &&
        wanted.contains(toQt(other->TextAt(other->Selected())), Qt::CaseInsensitive))
      return {};
  }
  return wanted;
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

void QtDialog::keyBy(const char* key) {
  const std::string name = key;
  Json action = {{"key", name}};
  ControlView* const view = focusedView();
  const bool isForControl = name == "Enter" || name == "Delete";
  // Enter beside fields and buttons is the default button's.
  if (name == "Enter" && (focus() == nullptr || focus()->kind() == ControlKind::tree)) prepareOk();
  if (isForControl && view != nullptr) action["in"] = toUtf8(view->model().role());
  act(std::move(action), [&](Gestures& gestures, Json&) -> Refusal {
    if (name == "F1") return gestures.help();
    if (name == "Escape") return gestures.close();
    if (view != nullptr)
      if (Refusal refusal = gestures.focus(view->focusModel())) return refusal;
    if (isEnded()) return std::nullopt;
    return name == "Enter" ? gestures.enter() : gestures.deleteKey();
  });
}

void QtDialog::closeBy() {
  act({{"close", "frame"}}, [](Gestures& gestures, Json&) { return gestures.close(); });
}

void QtDialog::noteLeft() {
  if (around_.keepsRecord()) record_.addAction({{"close", "program"}});
}

void QtDialog::refresh() {
  isRefreshPosted_ = false;
  const FlagScope showing(isShowing_);
  const std::set<ControlModel*> changed = std::exchange(changed_, {});
  for (const auto& view : views_)
    if (changed.contains(&view->model())) view->refresh();
  if (changed.empty()) return;
  for (const auto& view : views_)
    view->refreshLinked();
}

ControlView* QtDialog::firstView() const {
  for (const auto& view : views_) {
    const auto* text = dynamic_cast<const TextModel*>(&view->model());
    const bool isToRead = text != nullptr && text->isReadOnly();
    const QWidget& widget = view->focusWidget();
    if (!isToRead && widget.isEnabledTo(frame_.get()) && widget.focusPolicy() & Qt::TabFocus)
      return view.get();
  }
  return nullptr;
}

void QtDialog::showFocus() {
  ControlModel* const wanted = focus();
  ControlView* const view = wanted != nullptr ? viewOf(*wanted) : loop_ == nullptr ? firstView() : nullptr;
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
