// Steps become gestures on the models of the widgets, which show the effects.
#include "simhost/qt/session_player.h"

#include "simhost/qt/circuit_facts.h"
#include "simhost/qt/file_window.h"
#include "simhost/qt/help_window.h"
#include "simhost/qt/picture_file.h"
#include "simhost/qt/task_box.h"
#include "simhost/ui/dialog_script.h"
#include "text/encoding.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLineEdit>
#include <QMessageBox>
#include <QPainter>
#include <QTimer>

#include <charconv>

namespace simhost {

using brenvolt::toUtf8;

namespace {

/// The content of the window with a thin border, visible also on a page of the same colour.
[[nodiscard]] std::string savePicture(QWidget& window, const std::filesystem::path& file) {
  QImage picture = window.grab().toImage().convertToFormat(QImage::Format_RGB888);
  {
    QPainter painter(&picture);
    painter.setPen(window.palette().color(QPalette::Mid));
    painter.drawRect(QRect(QPoint(), window.size()).adjusted(0, 0, -1, -1));
  }
  return writePicture(picture, file);
}

} // namespace

SessionPlayer::SessionPlayer(
    QtWindows& windows, std::vector<AnswerStep> steps, std::string source, Options options)
    : windows_(windows), steps_(std::move(steps), std::move(source)), options_(std::move(options)) {
  windows_.dialogs().setPilot(this);
  windows_.setPicker(this);
}

SessionPlayer::~SessionPlayer() {
  windows_.dialogs().setPilot(nullptr);
  windows_.setPicker(nullptr);
}

void SessionPlayer::show(QWidget& window, const std::string& name) {
  if (!window.isVisible()) return;
  QEventLoop loop;
  QTimer::singleShot(options_.pause, &loop, [&loop] { loop.quit(); });
  loop.exec();
  if (options_.pictures.empty()) return;
  waitForPreview();
  const auto take = [this](QWidget& shown, const std::string& as) {
    const std::filesystem::path file = options_.pictures / (as + ".png");
    if (const std::string reason = savePicture(shown, file); !reason.empty()) steps_.fail(reason);
  };
  take(window, name);
  for (QWidget* other : QApplication::topLevelWidgets())
    if (other->isVisible() && other->objectName() == QLatin1String(helpWindowName))
      take(*other, helpWindowName);
}

// A preview is drawn by a process in the background: a picture shows it, and not the note in its place.
void SessionPlayer::waitForPreview() {
  constexpr int longestMilliseconds = 60'000;
  constexpr int stepMilliseconds = 20;
  const CircuitFacts* facts = windows_.dialogs().circuitFacts();
  QElapsedTimer waited;
  waited.start();
  while (facts != nullptr && facts->isMaking()) {
    if (waited.hasExpired(longestMilliseconds))
      return steps_.fail("the picture of the finished circuit was not made");
    QEventLoop loop;
    QTimer::singleShot(stepMilliseconds, &loop, [&loop] { loop.quit(); });
    loop.exec();
  }
}

std::string SessionPlayer::nameOfNext(const std::string& kind) {
  const int number = ++opened_[kind];
  return number == 1 ? kind : kind + "_" + std::to_string(number);
}

void SessionPlayer::tellFailure() {
  if (steps_.hasFailed()) windows_.fail(steps_.failure());
}

void SessionPlayer::drive(QtDialog& dialog) {
  DialogScript script(dialog, dialog.gestures(), dialog.clock().timers(), steps_, windows_.recorder());
  const std::string name = nameOfNext(toUtf8(dialog.name()));
  script.setWatcher([this, &dialog, &name]() -> std::string {
    dialog.refresh();
    show(dialog.frame(), name);
    return {};
  });
  script.run();
  tellFailure();
}

void SessionPlayer::drive(TaskBox& box, const TaskQuestion& question) {
  const std::string key = toUtf8(question.key);
  const AnswerStep* step = steps_.take(key, toUtf8(question.text));
  const std::string name = nameOfNext(key);
  if (step != nullptr) {
    for (const AnswerAction& action : step->actions) {
      const bool isTick = action.verb == "tick";
      const int button = pressedButton(action);
      if (!isTick && button == 0) continue;
      show(box, name);
      const QString subject = isTick ? QStringLiteral("hide") : QString::number(button);
      if (auto* widget = box.findChild<QAbstractButton*>(subject)) {
        if (!isTick || widget->isChecked() != action.isOn) widget->click();
        if (isTick) continue;
        return;
      }
      // A question without a button for it is left by its frame.
      if (button == kvui::cancel) return box.reject();
      break;
    }
    steps_.failAt(*step, "does not answer the question \"" + key + "\"");
  }
  box.reject();
  tellFailure();
}

void SessionPlayer::drive(FileWindow& window, DialogRecord&) {
  const std::string dialog(fileDialog);
  const std::string name = nameOfNext(dialog);
  const AnswerStep* step = nullptr;
  while (window.isVisible() && (step = steps_.takeNext(dialog, step)) != nullptr) {
    for (const AnswerAction& action : step->actions) {
      show(window, name);
      if (action.verb == "set" && action.subject == "path") {
        window.nameField().setText(QString::fromStdString(action.text));
      } else if (action.verb == "set" && action.subject == "type") {
        auto* types = window.findChild<QComboBox*>("fileTypeCombo");
        types->setCurrentIndex(action.number - 1);
        emit types->textActivated(types->currentText());
      } else if (pressedButton(action) == kvui::ok) {
        window.accept();
      } else if (action.verb != "expect") {
        window.reject();
      }
    }
  }
  window.reject();
  tellFailure();
}

void SessionPlayer::drive(QMessageBox& box) {
  show(box, nameOfNext(std::string(messageDialog)));
  box.accept();
}

EntityPick SessionPlayer::pickEntity(const std::wstring& prompt, bool emptyIsAllowed) {
  const AnswerStep* step = steps_.take(pickDialog, toUtf8(prompt));
  EntityPick pick;
  if (step != nullptr && !step->actions.empty() && step->actions.front().verb == "pick") {
    const AnswerAction& action = step->actions.front();
    pick.point = {action.point[0], action.point[1], action.point[2]};
    std::uint64_t handle = 0;
    std::from_chars(action.subject.data(), action.subject.data() + action.subject.size(), handle, 16);
    pick.handle = KvDbHandle(handle);
    if (handle != 0)
      pick.kind = EntityPick::Kind::entity;
    else if (emptyIsAllowed && action.subject.empty())
      pick.kind = EntityPick::Kind::nothing;
    else
      steps_.failAt(*step, "the prompt does not take this pick");
  }
  tellFailure();
  return pick;
}

} // namespace simhost
