// Sending events, and looking at what came of them.
#include "screen_session.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QStandardPaths>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <doctest/doctest.h>

#include <algorithm>
#include <cstdio>

namespace simhost {
namespace {

constexpr int lookMilliseconds = 40;
constexpr int patienceMilliseconds = 60'000; // a slow machine is not a fault of a window
const QString pointerTool = QStringLiteral("xdotool");

QStringList pixelOf(const QWidget& widget, const QPoint& place) {
  const QPointF pixel = QPointF(widget.mapToGlobal(place)) * widget.devicePixelRatioF();
  return {QString::number(qRound(pixel.x())), QString::number(qRound(pixel.y()))};
}

/// After a lost step: what is open keeps the test from its end. Yes to leaving, where that is asked; Escape where the main
/// window waits for a pick.
void leaveDialogs() {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (!window->isVisible() || !window->inherits("QDialog")) continue;
    auto* leaves = window->findChild<QAbstractButton*>(QStringLiteral("6"));
    if (leaves != nullptr) return leaves->click();
    if (window->isModal() || QApplication::activeModalWidget() == nullptr)
      return static_cast<void>(window->close());
  }
  if (QWidget* const focus = QApplication::focusWidget()) {
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(focus, &escape);
  }
}

} // namespace

bool hasScreen() {
  const bool isThere = QGuiApplication::platformName() == QStringLiteral("xcb") &&
                       !QStandardPaths::findExecutable(pointerTool).isEmpty();
  if (!isThere) std::printf("skipped: tests/simhost_gui/screen_sessions.sh runs this on a screen\n");
  return isThere;
}

QWidget* activeWindowNamed(const QString& name) {
  QWidget* const window = QApplication::activeWindow();
  const bool isIt = window != nullptr && window->isVisible() &&
                    (window->objectName() == name || window->inherits(name.toLatin1().constData()));
  return isIt ? window : nullptr;
}

void checkWhole(const QWidget& window) {
  const std::string name = (window.objectName() + QLatin1Char('/') + window.windowTitle()).toStdString();
  CAPTURE(name);
  // Where windows are at twice their size, a frame is not a whole number of pixels.
  constexpr int tolerance = 2;
  const QRect screen = window.screen()->geometry().adjusted(-tolerance, -tolerance, tolerance, tolerance);
  const QRect place = window.isMaximized() ? window.geometry() : window.frameGeometry();
  if (place.isEmpty()) return; // it is just being closed
  CHECK_MESSAGE(
      screen.contains(place), "partly beside the screen: ", place.left(), ", ", place.top(), " to ",
      place.right(), ", ", place.bottom());
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    if (!widget->isVisible() || widget->window() != &window) continue;
    const auto* label = qobject_cast<const QLabel*>(widget);
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    const QString text = label != nullptr ? label->text() : button != nullptr ? button->text() : QString();
    if (text.isEmpty() || (label != nullptr && label->wordWrap())) continue;
    const int needed =
        widget->minimumWidth() > 0 ? widget->minimumWidth() : widget->minimumSizeHint().width();
    CHECK_MESSAGE(widget->width() >= needed, "cut off: ", text.toStdString());
  }
}

void ScreenSession::step(
    const QString& what, const std::function<bool()>& isReady, const std::function<void()>& action) {
  steps_.push_back({what, isReady, action});
}

void ScreenSession::inWindow(
    const QString& name, const QString& what, const std::function<void(QWidget&)>& action) {
  step(
      what, [name] { return activeWindowNamed(name) != nullptr; },
      [name, action] { action(*activeWindowNamed(name)); });
}

bool ScreenSession::run() {
  std::size_t next = 0;
  bool isLost = false;
  QElapsedTimer waiting;
  waiting.start();
  // A timer also runs in the event loops of dialogs and picks that the steps open.
  QTimer look;
  int rounds = 0;
  look.callOnTimeout([&] {
    // From another timer: this one rests while the question that a dialog asks is open.
    if (isLost) return QTimer::singleShot(0, leaveDialogs);
    if (next == steps_.size()) return;
    const Step& now = steps_[next];
    // Two looks apart: what is shown has been painted by then.
    rounds = now.isReady() ? rounds + 1 : 0;
    if (rounds < 3) {
      isLost = waiting.elapsed() > patienceMilliseconds;
      if (!isLost) return;
      keepPicture(QStringLiteral("lost"), next);
      const QWidget* active = QApplication::activeWindow();
      FAIL_CHECK(
          "step \"", now.what.toStdString(), "\" does not get ready; active is ",
          active == nullptr ? std::string("no window") : active->objectName().toStdString());
      return;
    }
    for (const QWidget* window : QApplication::topLevelWidgets())
      if (window->windowHandle() != nullptr && window->windowHandle()->isExposed() &&
          window->windowType() != Qt::ToolTip && window->windowType() != Qt::Popup)
        checkWhole(*window);
    keepPicture(now.what, next);
    rounds = 0;
    ++next;
    waiting.restart();
    now.action();
  });
  look.start(lookMilliseconds);
  while (next < steps_.size() && !isLost)
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, lookMilliseconds);
  // The events of the last step.
  for (waiting.restart(); waiting.elapsed() < 10 * lookMilliseconds;)
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, lookMilliseconds);
  return !isLost;
}

void ScreenSession::click(const QWidget& widget, const QPoint& place, int times) {
  QStringList arguments{QStringLiteral("mousemove")};
  arguments += pixelOf(widget, place);
  arguments += {QStringLiteral("click"),   QStringLiteral("--repeat"), QString::number(times),
                QStringLiteral("--delay"), QStringLiteral("60"),       QStringLiteral("1")};
  QProcess::execute(pointerTool, arguments);
}

void ScreenSession::click(const QWidget& widget) {
  click(widget, widget.rect().center());
}

void ScreenSession::move(const QWidget& widget, const QPoint& place) {
  QProcess::execute(pointerTool, QStringList{QStringLiteral("mousemove")} + pixelOf(widget, place));
}

void ScreenSession::keys(const QStringList& names) {
  if (names.isEmpty()) return; // where the keyboard already is
  QProcess::execute(
      pointerTool,
      QStringList{QStringLiteral("key"), QStringLiteral("--delay"), QStringLiteral("40")} + names);
}

void ScreenSession::type(const QString& text) {
  QProcess::execute(
      pointerTool, {QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("40"), text});
}

bool ScreenSession::hasWindow(const QString& title) {
  QProcess search;
  search.start(
      pointerTool,
      {QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"), title});
  search.waitForFinished();
  return !search.readAllStandardOutput().trimmed().isEmpty();
}

void ScreenSession::keepPicture(const QString& what, std::size_t number) const {
  const QString folder = qEnvironmentVariable("SESSION_PICTURES");
  if (folder.isEmpty()) return;
  QDir().mkpath(folder);
  QString file = QStringLiteral("%1_%2_%3.png").arg(name_).arg(number + 1, 2, 10, QLatin1Char('0')).arg(what);
  // Window by window, the main window first: a window manager's frames hide their windows from a copy of the screen.
  QWidgetList windows;
  QRect place;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (!window->isVisible()) continue;
    place |= window->frameGeometry();
    windows.append(window);
  }
  const auto depth = [](const QWidget* window) {
    return window->windowType() == Qt::Window ? 0 : window->windowType() == Qt::Dialog ? 1 : 2;
  };
  std::stable_sort(windows.begin(), windows.end(), [&depth](const QWidget* one, const QWidget* other) {
    return depth(one) < depth(other);
  });
  QScreen& screen = *QGuiApplication::primaryScreen();
  place &= screen.geometry();
  QPixmap picture = screen.grabWindow(0, place.x(), place.y(), place.width(), place.height());
  QPainter painter(&picture);
  for (const QWidget* window : windows)
    painter.drawPixmap(
        window->geometry().topLeft() - place.topLeft(), screen.grabWindow(window->internalWinId()));
  painter.end();
  picture.save(QDir(folder).filePath(file.replace(QLatin1Char(' '), QLatin1Char('_'))));
}

} // namespace simhost
