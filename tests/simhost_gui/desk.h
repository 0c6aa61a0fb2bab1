// A designer at a screen: the main window over a copy of the sample site, and the ways of a user through it.
#pragma once

#include "gui_fixture.h"
#include "screen_session.h"
#include "tests/site/site_tool.h"

#include <QAbstractButton>
#include <QApplication>
#include <QProcess>
#include <QToolBar>
#include <QTreeWidget>

#include <doctest/doctest.h>

namespace simhost {

inline std::string languageOfSession() {
  return qEnvironmentVariable("SESSION_LANGUAGE", QStringLiteral("en")).toStdString();
}

/// The main window over a copy of the sample site, as large as the screen.
struct Desk {
  explicit Desk(const QString& session) : gui({}, languageOfSession(), site.site()), steps(session) {
    gui.windows.setHelpFolder("docs");
    gui.window.showMaximized();
  }

  /// When no command runs and no other window is open.
  void atMain(const QString& what, const std::function<void()>& action) {
    steps.step(
        what,
        [this] {
          return QApplication::activeWindow() == &gui.window && !gui.window.runner().isBusy() &&
                 gui.window.picks().prompt().isEmpty();
        },
        action);
  }
  void atPick(const QString& what, const std::function<void()>& action) {
    steps.step(
        what, [this] { return !gui.window.picks().prompt().isEmpty(); }, action);
  }
  void press(const QString& window, const QString& button, const QString& what) {
    steps.inWindow(window, what, [button](QWidget& open) {
      auto* found = open.findChild<QAbstractButton*>(button);
      REQUIRE(found != nullptr);
      ScreenSession::click(*found);
    });
  }
  /// "Insert everything", used by `start`, until nothing waits; then `finish` uses OK.
  void insertEverything(
      const std::function<void(QWidget& all)>& start, const std::function<void(QWidget& ok)>& finish) {
    const QString dialog = QStringLiteral("ZanDlgConfig");
    const auto button = [](const QWidget& window, const char* name) {
      return window.findChild<QAbstractButton*>(QLatin1String(name));
    };
    steps.inWindow(dialog, QStringLiteral("units"), [button, start](QWidget& window) {
      REQUIRE(button(window, "repeat") != nullptr);
      start(*button(window, "repeat"));
    });
    steps.step(
        QStringLiteral("inserted"),
        [button, dialog] {
          const QWidget* window = activeWindowNamed(dialog);
          const auto* all = window == nullptr ? nullptr : button(*window, "repeat");
          return all != nullptr && !all->isEnabled();
        },
        [button, dialog, finish] { finish(*button(*activeWindowNamed(dialog), "ok")); });
  }
  void buildPump(const std::wstring& place = L"0 0 0", const std::wstring& configuration = L"Pump 10 HP") {
    gui.buildPump(place, configuration);
    gui.window.view().port().fit();
  }
  [[nodiscard]] QTreeWidget& table() {
    return *gui.window.findChild<QTreeWidget*>(QStringLiteral("circuitTable"));
  }
  [[nodiscard]] int circuits() { return table().topLevelItemCount(); }
  /// The program itself with a drawing, as a second one on this screen.
  void startOther(const QString& drawing, const GuiFolder& folder) {
    other.start(
        QCoreApplication::applicationDirPath() + QStringLiteral("/brenvolt-gui"),
        {QStringLiteral("--site"), QString::fromStdString(site.site()), QStringLiteral("--drawing"), drawing,
         QStringLiteral("--language"), QString::fromStdString(languageOfSession()),
         QStringLiteral("--settings"), QString::fromStdString(folder.path("other_settings.json"))});
  }
  /// As kill -9 does.
  void killOther() {
    other.kill();
    other.waitForFinished();
  }
  void atTitle(const QString& what, const QString& title, const std::function<void()>& action) {
    steps.step(
        what, [title] { return ScreenSession::hasWindow(QLatin1Char('^') + title); }, action);
  }
  /// Builds the first saved configuration in the other program, whose window has the keyboard, by keys.
  void buildInOther(const QString& what, const QString& title, const std::function<void()>& action) {
    atTitle(what, title, action);
    const QString table = QLatin1Char('^') + gui.texts(HostText::configurationsTitle);
    for (const bool isOpen : {true, false})
      steps.step(
          isOpen ? QStringLiteral("history") : QStringLiteral("place"),
          [table, isOpen] { return ScreenSession::hasWindow(table) == isOpen; },
          [] { ScreenSession::keys({QStringLiteral("Return")}); });
  }
  [[nodiscard]] QWidget& buttonOf(HostText command) {
    return *gui.window.findChild<QToolBar*>(QStringLiteral("commands"))
                ->widgetForAction(&gui.window.action(command));
  }

  const brenvolt::SiteCopy site;
  GuiFixture gui;
  ScreenSession steps;
  QProcess other;
};

/// The Tab keys that lead from the control with the keyboard to this one.
inline QStringList tabsTo(const QWidget& target) {
  QStringList way;
  for (const QWidget* at = QApplication::focusWidget(); at != &target && way.size() < 40;) {
    do
      at = at->nextInFocusChain();
    while (!(at->focusPolicy() & Qt::TabFocus) || !at->isVisible() || !at->isEnabled());
    way.append(QStringLiteral("Tab"));
  }
  return way;
}

/// Alt and the letter of a caption.
inline QString letterKeys(const QString& caption) {
  return QStringLiteral("alt+") + caption[caption.indexOf(QLatin1Char('&')) + 1].toLower();
}

template <class View>
QPoint cellOf(View& view, const QModelIndex& index) {
  return view.viewport()->mapTo(&view, view.visualRect(index).center());
}

} // namespace simhost
