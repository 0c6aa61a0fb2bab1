// Questions, messages and picks on a screen.
#include "simhost/qt/qt_windows.h"

#include "simhost/qt/circuit_facts.h"
#include "simhost/qt/file_window.h"
#include "simhost/qt/help_window.h"
#include "simhost/qt/qt_text.h"
#include "simhost/qt/task_box.h"
#include "simhost/qt/window_pilot.h"
#include "simhost/qt/window_places.h"
#include "simhost/ui/answers.h"
#include "text/encoding.h"

#include <QApplication>
#include <QGuiApplication>
#include <QMessageBox>
#include <QTimer>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace simhost {

using brenvolt::toUtf8;
using Json = nlohmann::ordered_json;

namespace {

std::string handleText(KvDbHandle handle) {
  char digits[17] = {};
  std::snprintf(digits, sizeof digits, "%llX", static_cast<unsigned long long>(handle.value()));
  return digits;
}

} // namespace

class QtWindows::OpenScope final {
public:
  explicit OpenScope(QtWindows& windows) : windows_(windows) {
    ++windows_.openWindows_;
    windows_.suspendWaitCursor();
  }
  OpenScope(const OpenScope&) = delete;
  OpenScope& operator=(const OpenScope&) = delete;
  ~OpenScope() {
    --windows_.openWindows_;
    windows_.resumeWaitCursor();
  }

private:
  QtWindows& windows_;
};

DrawingPicker::~DrawingPicker() = default;
CircuitFacts::~CircuitFacts() = default;
WindowPilot::~WindowPilot() = default;

QtWindows::QtWindows() = default;
QtWindows::~QtWindows() = default;

void QtWindows::setMainWindow(QWidget* window) {
  mainWindow_ = window;
  mainFace_ = window == nullptr ? nullptr : std::make_unique<KvWindow>();
}

bool QtWindows::isDialogSeen() const {
  return std::any_of(
      dialogs_.begin(), dialogs_.end(), [](const QtDialog* dialog) { return dialog->frame().isVisible(); });
}

QtDialog* QtWindows::dialogBeside() const {
  QtDialog* const top = dialogs_.empty() ? nullptr : dialogs_.back();
  const bool isBeside = top != nullptr && top->frame().isVisible() && !top->frame().isModal();
  return isBeside ? top : nullptr;
}

QString QtWindows::topForm() const {
  return dialogs_.empty() ? QString() : dialogs_.back()->frame().objectName();
}

void QtWindows::beginRun() {
  failure_.clear();
  quitPosted_ = false;
  isPumped_ = false;
}

TaskAnswer QtWindows::askTask(const TaskQuestion& question) {
  const std::size_t step = recorder_.begin(toUtf8(question.key), shownOf(question));
  if (!failure_.empty()) return {};

  const OpenScope open(*this);
  TaskBox box(question, words_, parentOfNext());
  if (pilot_ != nullptr) QTimer::singleShot(0, &box, [&] { pilot_->drive(box, question); });
  box.exec();
  const TaskAnswer answer = box.answer();
  Json& actions = recorder_.step(step)["do"];
  if (answer.hideForGood) actions.push_back({{"tick", "hide"}, {"to", true}});
  actions.push_back({{"press", answer.button}});
  return answer;
}

EntityPick QtWindows::pickEntity(const std::wstring& prompt, bool emptyIsAllowed) {
  const std::size_t step = recorder_.begin(pickDialog, {{"prompt", toUtf8(prompt)}});
  EntityPick pick;
  if (picker_ != nullptr && failure_.empty()) {
    const OpenScope open(*this);
    // A dialog that asks without lending the editor must not cover the drawing either.
    const std::vector<QtDialog*> aside = putDialogsAside();
    pick = picker_->pickEntity(prompt, emptyIsAllowed);
    showAgain(aside);
  }
  Json action = {{"press", "cancel"}};
  if (pick.kind == EntityPick::Kind::nothing) action = {{"pick", nullptr}};
  if (pick.kind == EntityPick::Kind::entity)
    action = {
        {"pick", handleText(pick.handle)},
        {"point", Json::array({pick.point.x, pick.point.y, pick.point.z})}};
  recorder_.step(step)["do"].push_back(std::move(action));
  return pick;
}

FileAnswer QtWindows::askFile(const FileQuestion& question, const FileEvents& events) {
  DialogRecord record(recorder_, std::string(fileDialog));
  record.open(shownOf(question));
  if (!failure_.empty()) return {};

  const OpenScope open(*this);
  const FileWindow* asked = nullptr;
  const auto path = [&] { return toUtf8(asked->answer().path); };
  FileWindow window(
      question, events,
      {[&] {
         record.addAction({{"set", "path"}, {"to", path()}});
       },
       [&] {
         record.addAction({{"set", "type"}, {"to", asked->answer().type}});
       },
       [&] {
         record.addToLast("then", {{"name", path()}});
       },
       [&] {
         record.addAction({{"press", "ok"}});
       }},
      parentOfNext());
  asked = &window;
  if (pilot_ != nullptr) QTimer::singleShot(0, &window, [&] { pilot_->drive(window, record); });
  window.exec();
  window.throwOn();
  if (!window.answer().isOk) record.addAction({{"press", "cancel"}});
  return window.answer();
}

std::unique_ptr<DialogWindow> QtWindows::openDialog(const std::wstring& form, CKvUiDialog& dialog) {
  if (!failure_.empty()) return nullptr;
  try {
    const Form loaded = loadForm(formFolder(), form, language());
    DialogSurroundings& around = *this;
    return std::make_unique<QtDialog>(loaded, readLayout(loaded), dialog, around, recorder_, parentOfNext());
  } catch (const FormError& error) {
    recorder_.note(toUtf8(form), {{"fault", error.what()}});
    failure_ = brenvolt::fromUtf8(error.what());
    return nullptr;
  }
}

void QtWindows::dialogOpens(QtDialog& dialog) {
  dialogs_.push_back(&dialog);
  suspendWaitCursor();
  if (settings_ != nullptr) restorePlace(*settings_, dialog);
}

void QtWindows::dialogCloses(QtDialog& dialog) {
  std::erase(dialogs_, &dialog);
  resumeWaitCursor();
  aside_.erase(&dialog);
  if (settings_ != nullptr) keepPlace(*settings_, dialog);
}

void QtWindows::dialogLends(QtDialog& dialog) {
  aside_[&dialog] = putDialogsAside();
}

void QtWindows::dialogTakesBack(QtDialog& dialog) {
  showAgain(std::exchange(aside_[&dialog], {}));
}

std::vector<QtDialog*> QtWindows::putDialogsAside() {
  std::vector<QtDialog*> aside;
  for (QtDialog* dialog : dialogs_)
    if (dialog->frame().isVisible()) aside.push_back(dialog);
  for (auto dialog = aside.rbegin(); dialog != aside.rend(); ++dialog)
    (*dialog)->putAside();
  return aside;
}

void QtWindows::showAgain(const std::vector<QtDialog*>& dialogs) {
  for (QtDialog* dialog : dialogs)
    if (std::find(dialogs_.begin(), dialogs_.end(), dialog) != dialogs_.end()) dialog->showAgain();
}

bool QtWindows::isOnTop(const QtDialog& dialog) const {
  return openWindows_ == 0 && !dialogs_.empty() && dialogs_.back() == &dialog;
}

void QtWindows::pilot(QtDialog& dialog) {
  pilot_->drive(dialog);
}

QWidget* QtWindows::parentOfNext() const {
  for (auto dialog = dialogs_.rbegin(); dialog != dialogs_.rend(); ++dialog)
    if ((*dialog)->frame().isVisible()) return &(*dialog)->frame();
  return mainWindow_.data();
}

bool QtWindows::showMessage(const std::wstring& text) {
  recorder_.note(messageDialog, {{"text", toUtf8(text)}});
  const OpenScope open(*this);
  QMessageBox box(
      QMessageBox::Information, QCoreApplication::applicationName(), toQt(text), QMessageBox::Ok,
      parentOfNext());
  box.setTextFormat(Qt::PlainText);
  if (pilot_ != nullptr) QTimer::singleShot(0, &box, [&] { pilot_->drive(box); });
  box.exec();
  return true;
}

bool QtWindows::showHelp(const std::wstring& topic) {
  recorder_.note(helpDialog, {{"topic", toUtf8(topic)}});
  return showHelpTopic(helpFolder_, language(), topic, words_, parentOfNext());
}

bool QtWindows::openManual(std::wstring_view topic, QWidget* window) {
  return showHelpTopic(helpFolder_, language(), topic, words_, window);
}

KvWindow* QtWindows::mainWindow() {
  return mainWindow_ == nullptr ? nullptr : mainFace_.get();
}

KvWindow* QtWindows::foregroundWindow() {
  return dialogs_.empty() ? mainWindow() : dialogs_.back();
}

KvWindow* QtWindows::promptFrame() {
  return picker_ == nullptr ? nullptr : mainWindow();
}

void QtWindows::showWaitCursor(bool isShown) {
  waiting_ += isShown ? 1 : -1;
  applyCursor();
}

void QtWindows::suspendWaitCursor() {
  waitingBelow_.push_back(std::exchange(waiting_, 0));
  applyCursor();
}

void QtWindows::resumeWaitCursor() {
  waiting_ += waitingBelow_.back();
  waitingBelow_.pop_back();
  applyCursor();
}

void QtWindows::applyCursor() const {
  const bool isShown = QGuiApplication::overrideCursor() != nullptr;
  if (waiting_ > 0 && !isShown) QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  if (waiting_ <= 0 && isShown) QGuiApplication::restoreOverrideCursor();
}

void QtWindows::postQuit() {
  if (!quitPosted_ && !dialogs_.empty()) dialogs_.back()->noteLeft();
  quitPosted_ = true;
}

bool QtWindows::messageWaiting() {
  if (quitPosted_) return true;
  const bool isWaiting = !isPumped_;
  isPumped_ = false;
  return isWaiting;
}

bool QtWindows::pumpMessage() {
  if (quitPosted_) return false;
  QCoreApplication::processEvents();
  isPumped_ = true;
  return !quitPosted_;
}

} // namespace simhost
