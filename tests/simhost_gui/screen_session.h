// What a user does at a screen, step by step: real mouse and key events, sent through the X server to windows that a
// window manager holds. After each step the whole screen is kept as a picture, and every window on it must be whole.
#pragma once

#include <QPoint>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

class QWidget;

namespace simhost {

/// Whether there is such a screen; else the reason goes to standard output, and a session says "skipped".
[[nodiscard]] bool hasScreen();

class ScreenSession final {
public:
  /// `name` begins the names of the pictures.
  explicit ScreenSession(QString name) : name_(std::move(name)) {}

  /// When `isReady`, a picture of the screen is taken, and then `action` sends its events.
  void step(const QString& what, const std::function<bool()>& isReady, const std::function<void()>& action);
  /// The same as soon as the window of this object name is active.
  void inWindow(const QString& name, const QString& what, const std::function<void(QWidget& window)>& action);
  /// Runs to the end of the last step; false, with the step in a message, when one does not get ready.
  [[nodiscard]] bool run();

  /// Presses the left button there; twice for a double click.
  static void click(const QWidget& widget, const QPoint& place, int times = 1);
  static void click(const QWidget& widget);
  static void move(const QWidget& widget, const QPoint& place);
  /// Names as xdotool writes them: "ctrl+t", "Return".
  static void keys(const QStringList& names);
  static void type(const QString& text);
  /// The titles of all windows on the screen, those of other programs too.
  [[nodiscard]] static bool hasWindow(const QString& title);

private:
  struct Step {
    QString what;
    std::function<bool()> isReady;
    std::function<void()> action;
  };

  void keepPicture(const QString& what, std::size_t number) const;

  QString name_;
  std::vector<Step> steps_;
};

/// The window of this object name that is active; null for none.
[[nodiscard]] QWidget* activeWindowNamed(const QString& name);
/// Each label and button of the window shows its whole text, and the window is on the screen.
void checkWhole(const QWidget& window);

} // namespace simhost
