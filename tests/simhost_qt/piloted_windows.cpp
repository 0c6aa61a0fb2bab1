// Steps on their way into the widgets of windows.
#include "tests/simhost_qt/piloted_windows.h"

#include "simhost/json/json_text.h"
#include "simhost/qt/file_window.h"
#include "simhost/qt/qt_text.h"
#include "simhost/qt/task_box.h"
#include "simhost/ui/dialog_script.h"
#include "tests/simhost_qt/widget_gestures.h"
#include "tests/support/answer_steps.h"
#include "text/encoding.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QStyleFactory>
#include <QTest>

#include <nlohmann/json.hpp>

#include <charconv>
#include <cstdio>
#include <cstdlib>

namespace simhost::test {

using brenvolt::toUtf8;
using Json = nlohmann::ordered_json;

namespace {

/// The offscreen platform reports for each window what it cannot do; any other warning is a fault of ours, and ends
/// the
/// test.
void failAtWarnings(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  if (message.startsWith("This plugin does not support") || message.startsWith("QStandardPaths:")) return;
  std::fprintf(stderr, "%s\n", qFormatLogMessage(type, context, message).toUtf8().constData());
  if (type != QtDebugMsg && type != QtInfoMsg) std::abort();
}

} // namespace

void startApplication() {
  if (QCoreApplication::instance() != nullptr) return;
  qInstallMessageHandler(failAtWarnings);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  static int count = 1;
  static char name[] = "windows_test";
  static char* arguments[] = {name, nullptr};
  // Lives to the end of the process: its plug-ins must not be unloaded before what they registered.
  static auto& application = *new QApplication(count, arguments);
  static_cast<void>(application);
  // The same on every machine.
  QApplication::setStyle(QStyleFactory::create("Fusion"));
  QApplication::setFont(QFont("DejaVu Sans", 9));
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setEffectEnabled(Qt::UI_AnimateCombo, false);
}

StepPilot::StepPilot(QtWindows& windows, std::vector<AnswerStep> steps, std::string source, RecordOf record)
    : windows_(windows), steps_(std::move(steps), std::move(source)), record_(record) {
  windows_.dialogs().setPilot(this);
  windows_.dialogs().setRecordsPerson(record == RecordOf::person);
}

StepPilot::StepPilot(QtWindows& windows, std::string_view steps)
    : StepPilot(windows, brenvolt::test::answerSteps(steps), "the test", RecordOf::person) {}

PilotedWindows::PilotedWindows(std::vector<AnswerStep> steps, std::string source, RecordOf record)
    : windows_((startApplication(), std::make_unique<QtWindows>())),
      pilot_(*windows_, std::move(steps), std::move(source), record) {
  windows_->setPicker(&picker_);
}

PilotedWindows::~PilotedWindows() = default;

const std::wstring& PilotedWindows::failure() const {
  return pilot_.steps().hasFailed() ? pilot_.steps().failure() : windows_->failure();
}

TaskAnswer PilotedWindows::askTask(const TaskQuestion& question) {
  return windows_->askTask(question);
}

EntityPick PilotedWindows::pickEntity(const std::wstring& prompt, bool emptyIsAllowed) {
  return windows_->pickEntity(prompt, emptyIsAllowed);
}

FileAnswer PilotedWindows::askFile(const FileQuestion& question, const FileEvents& events) {
  return windows_->askFile(question, events);
}

std::unique_ptr<DialogWindow> PilotedWindows::openDialog(const std::wstring& form, CKvUiDialog& dialog) {
  if (pilot_.steps().hasFailed()) return nullptr;
  windows_->setFormFolder(formFolder());
  return windows_->openDialog(form, dialog);
}

bool PilotedWindows::showMessage(const std::wstring& text) {
  windows_->showMessage(text);
  // Sessions expect it on the command line, where it is printed without a screen.
  return false;
}

bool PilotedWindows::showHelp(const std::wstring& topic) {
  windows_->showHelp(topic);
  return false;
}

void StepPilot::drive(QtDialog& dialog) {
  WidgetGestures gestures(dialog);
  Recorder unused;
  Recorder& recorder = record_ == RecordOf::pilot ? windows_.recorder() : unused;
  DialogScript script(dialog, gestures, dialog.clock().timers(), steps_, recorder);
  script.setWatcher([&dialog]() -> std::string {
    QWidget& frame = dialog.frame();
    if (frame.isVisible() && !frame.isActiveWindow()) {
      frame.activateWindow();
      if (!QTest::qWaitForWindowActive(&frame)) return "the window does not come to the front";
    }
    return unlikeShown(dialog);
  });
  script.run();
}

void StepPilot::drive(TaskBox& box, const TaskQuestion& question) {
  const AnswerStep* step = steps_.take(toUtf8(question.key), toUtf8(question.text));
  if (step == nullptr) return box.reject();
  Json& record = windows_.recorder().step(windows_.recorder().count() - 1);
  for (const AnswerAction& action : step->actions) {
    if (action.verb == "expect") {
      record["do"].push_back(parseJson(action.written));
      for (const Expectation& expected : action.expected) {
        const QString shown =
            expected.what == "title" ? box.windowTitle() : box.findChild<QLabel*>("text")->text();
        if (shown.toStdString() == expected.text) continue;
        steps_.failAt(*step, "\"" + expected.what + "\" reads \"" + shown.toStdString() + "\"");
        return box.reject();
      }
      continue;
    }
    if (action.verb == "close") return static_cast<void>(box.close());
    const bool isTick = action.verb == "tick";
    const int button = pressedButton(action);
    const QString name = isTick ? QStringLiteral("hide") : QString::number(button);
    if (auto* widget = box.findChild<QAbstractButton*>(name)) {
      if (!isTick || widget->isChecked() != action.isOn)
        QTest::mouseClick(widget, Qt::LeftButton, {}, QPoint(10, 10));
      if (isTick) continue;
      return;
    }
    // A question without a button for it is left by its frame.
    if (!isTick && button == kvui::cancel) return static_cast<void>(box.close());
    steps_.failAt(*step, "the question has no \"" + action.subject + "\"");
    return box.reject();
  }
  steps_.failAt(*step, "no button is pressed");
  box.reject();
}

void StepPilot::drive(FileWindow& window, DialogRecord& record) {
  const std::string dialog(fileDialog);
  for (const AnswerStep* step = steps_.takeNext(dialog, nullptr); step != nullptr;
       step = steps_.takeNext(dialog, step)) {
    for (const AnswerAction& action : step->actions) {
      if (action.verb == "set" && action.subject == "path") {
        window.nameField().setFocus();
        window.nameField().selectAll();
        // Pasted: letter by letter the field would complete names of files that happen to be there.
        window.nameField().insert(QString::fromStdString(action.text));
      } else if (action.verb == "set" && action.subject == "type") {
        auto* types = window.findChild<QComboBox*>("fileTypeCombo");
        types->setFocus();
        types->setCurrentIndex(action.number - 1);
        emit types->activated(action.number - 1);
        emit types->textActivated(types->currentText());
      } else if (action.verb == "expect") {
        record.addAction(parseJson(action.written));
        if (window.nameField().text().toStdString() != action.expected.front().text)
          steps_.failAt(*step, "the field reads \"" + window.nameField().text().toStdString() + "\"");
      } else if (action.verb == "press" && pressedButton(action) == kvui::ok) {
        auto* buttons = window.findChild<QDialogButtonBox*>("buttonBox");
        QTest::mouseClick(
            buttons->button(
                window.acceptMode() == QFileDialog::AcceptSave ? QDialogButtonBox::Save
                                                               : QDialogButtonBox::Open),
            Qt::LeftButton);
      } else {
        return static_cast<void>(window.close());
      }
      if (steps_.hasFailed()) return static_cast<void>(window.close());
    }
    if (!window.isVisible()) return;
  }
  window.close();
}

void StepPilot::drive(QMessageBox& box) {
  QTest::keyClick(&box, Qt::Key_Return);
}

EntityPick StepPilot::pick(bool emptyIsAllowed) {
  const AnswerStep* step = steps_.take(pickDialog);
  if (step == nullptr) return {};
  const AnswerAction& action = step->actions.front();
  EntityPick pick;
  if (action.verb != "pick") return pick;
  pick.point = {action.point[0], action.point[1], action.point[2]};
  if (action.subject.empty()) {
    if (emptyIsAllowed)
      pick.kind = EntityPick::Kind::nothing;
    else
      steps_.failAt(*step, "the prompt does not allow an empty pick");
    return pick;
  }
  std::uint64_t handle = 0;
  std::from_chars(action.subject.data(), action.subject.data() + action.subject.size(), handle, 16);
  pick.kind = EntityPick::Kind::entity;
  pick.handle = KvDbHandle(handle);
  return pick;
}

} // namespace simhost::test
