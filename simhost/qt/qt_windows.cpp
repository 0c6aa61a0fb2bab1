// Questions, messages and picks on a screen.
#include "simhost/qt/qt_windows.h"

#include "simhost/qt/circuit_facts.h"
#include "simhost/qt/file_window.h"
#include "simhost/qt/help_window.h"
#include "simhost/qt/qt_text.h"
#include "simhost/qt/task_box.h"
#include "simhost/qt/window_pilot.h"
#include "simhost/ui/answers.h"
#include "text/encoding.h"

#include <QApplication>
#include <QMessageBox>
#include <QTimer>

#include <nlohmann/json.hpp>

#include <cstdio>

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

DrawingPicker::~DrawingPicker() = default;
CircuitFacts::~CircuitFacts() = default;
WindowPilot::~WindowPilot() = default;

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
  const std::size_t step = recorder_.begin(toUtf8(question.key), shownOf(question));
  if (!failure_.empty()) return {};

  const DialogStack::QuestionScope open(dialogs_);
  TaskBox box(question, dialogs_.words(), parentOfNext());
  if (WindowPilot* const pilot = dialogs_.pilot())
    QTimer::singleShot(0, &box, [&, pilot] { pilot->drive(box, question); });
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
    const DialogStack::QuestionScope open(dialogs_);
    // A dialog that asks without lending the editor must not cover the drawing either.
    const std::vector<QtDialog*> aside = dialogs_.putAside();
    pick = picker_->pickEntity(prompt, emptyIsAllowed);
    dialogs_.showAgain(aside);
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

  const DialogStack::QuestionScope open(dialogs_);
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
  if (WindowPilot* const pilot = dialogs_.pilot())
    QTimer::singleShot(0, &window, [&, pilot] { pilot->drive(window, record); });
  window.exec();
  window.throwOn();
  if (!window.answer().isOk) record.addAction({{"press", "cancel"}});
  return window.answer();
}

std::unique_ptr<DialogWindow> QtWindows::openDialog(const std::wstring& form, CKvUiDialog& dialog) {
  if (!failure_.empty()) return nullptr;
  try {
    const Form loaded = loadForm(formFolder(), form, language());
    return std::make_unique<QtDialog>(
        loaded, readLayout(loaded), dialog, dialogs_, recorder_, parentOfNext());
  } catch (const FormError& error) {
    recorder_.note(toUtf8(form), {{"fault", error.what()}});
    failure_ = brenvolt::fromUtf8(error.what());
    return nullptr;
  }
}

QWidget* QtWindows::parentOfNext() const {
  QWidget* const top = dialogs_.topWidget();
  return top != nullptr ? top : mainWindow_.data();
}

bool QtWindows::showMessage(const std::wstring& text) {
  recorder_.note(messageDialog, {{"text", toUtf8(text)}});
  const DialogStack::QuestionScope open(dialogs_);
  QMessageBox box(
      QMessageBox::Information, QCoreApplication::applicationName(), toQt(text), QMessageBox::Ok,
      parentOfNext());
  box.setTextFormat(Qt::PlainText);
  if (WindowPilot* const pilot = dialogs_.pilot())
    QTimer::singleShot(0, &box, [&, pilot] { pilot->drive(box); });
  box.exec();
  return true;
}

bool QtWindows::showHelp(const std::wstring& topic) {
  recorder_.note(helpDialog, {{"topic", toUtf8(topic)}});
  return showHelpTopic(helpFolder_, language(), topic, dialogs_.words(), parentOfNext());
}

bool QtWindows::openManual(std::wstring_view topic, QWidget* window) {
  return showHelpTopic(helpFolder_, language(), topic, dialogs_.words(), window);
}

KvWindow* QtWindows::mainWindow() {
  return mainWindow_ == nullptr ? nullptr : mainFace_.get();
}

KvWindow* QtWindows::foregroundWindow() {
  return dialogs_.top() == nullptr ? mainWindow() : dialogs_.top();
}

KvWindow* QtWindows::promptFrame() {
  return picker_ == nullptr ? nullptr : mainWindow();
}

void QtWindows::showWaitCursor(bool isShown) {
  dialogs_.cursor().show(isShown);
}

void QtWindows::postQuit() {
  if (!quitPosted_ && dialogs_.top() != nullptr) dialogs_.top()->noteLeft();
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
