// Questions, messages and picks on a screen.
#include "simhost/qt/qt_windows.h"

#include "simhost/qt/qt_text.h"
#include "simhost/qt/task_box.h"
#include "simhost/ui/answers.h"
#include "text/encoding.h"

#include <QApplication>
#include <QGuiApplication>
#include <QMessageBox>

#include <cstdio>

namespace simhost {

using brenvolt::toUtf8;
using Json = nlohmann::ordered_json;

namespace {

/// Counts a window as open for a scope.
class OpenScope final {
public:
  explicit OpenScope(int& count) : count_(count) { ++count_; }
  OpenScope(const OpenScope&) = delete;
  OpenScope& operator=(const OpenScope&) = delete;
  ~OpenScope() { --count_; }

private:
  int& count_;
};

std::string handleText(KvDbHandle handle) {
  char digits[17] = {};
  std::snprintf(digits, sizeof digits, "%llX", static_cast<unsigned long long>(handle.value()));
  return digits;
}

} // namespace

DrawingPicker::~DrawingPicker() = default;

QtWindows::QtWindows() = default;
QtWindows::~QtWindows() = default;

void QtWindows::setMainWindow(QWidget* window) {
  mainWindow_ = window;
  mainFace_ = window == nullptr ? nullptr : std::make_unique<KvWindow>();
}

void QtWindows::beginRun() {
  failure_.clear();
  quitPosted_ = false;
  isPumped_ = false;
}

TaskAnswer QtWindows::askTask(const TaskQuestion& question) {
  Json shown = {
      {"title", toUtf8(question.title)}, {"text", toUtf8(question.text)}, {"buttons", Json::array()}};
  for (const TaskButton& button : question.buttons)
    shown["buttons"].push_back({{"id", button.id}, {"label", toUtf8(button.label)}});
  if (question.isHideable) shown["hideable"] = true;
  const std::size_t step = recorder_.begin(toUtf8(question.key), std::move(shown));
  if (!failure_.empty()) return {};

  const OpenScope open(openWindows_);
  TaskBox box(
      question,
      QApplication::activeModalWidget() != nullptr ? QApplication::activeModalWidget() : mainWindow_.data());
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
    const OpenScope open(openWindows_);
    pick = picker_->pickEntity(prompt, emptyIsAllowed);
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

FileAnswer QtWindows::askFile(const FileQuestion&, const FileEvents&) {
  return {};
}

std::unique_ptr<DialogWindow> QtWindows::openDialog(const std::wstring& form, CKvUiDialog&) {
  failure_ = L"the form \"" + form + L"\" cannot be shown";
  return nullptr;
}

bool QtWindows::showMessage(const std::wstring& text) {
  recorder_.note(messageDialog, {{"text", toUtf8(text)}});
  const OpenScope open(openWindows_);
  QMessageBox box(
      QMessageBox::Information, QCoreApplication::applicationName(), toQt(text), QMessageBox::Ok,
      mainWindow_.data());
  box.setTextFormat(Qt::PlainText);
  box.exec();
  return true;
}

bool QtWindows::showHelp(const std::wstring& topic) {
  recorder_.note(helpDialog, {{"topic", toUtf8(topic)}});
  return false;
}

KvWindow* QtWindows::mainWindow() {
  return mainWindow_ == nullptr ? nullptr : mainFace_.get();
}

KvWindow* QtWindows::foregroundWindow() {
  return mainWindow();
}

KvWindow* QtWindows::promptFrame() {
  return picker_ == nullptr ? nullptr : mainWindow();
}

void QtWindows::showWaitCursor(bool isShown) {
  if (isShown)
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  else
    QGuiApplication::restoreOverrideCursor();
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
