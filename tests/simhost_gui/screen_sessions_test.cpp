// A designer's work at a screen, one session for each thing that a user comes for. On a machine without a screen these say
// "skipped"; screen_sessions.sh makes one.
#include "desk.h"
#include "simhost/gui/circuit_panel.h"
#include "simhost/gui/start_window.h"
#include "simhost/host/files.h"
#include "simhost/qt/help_window.h"

#include <QClipboard>
#include <QComboBox>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QStatusBar>
#include <QTableView>
#include <QTextBrowser>
#include <QToolBar>
#include <QToolTip>
#include <QTreeWidget>
#include <QWhatsThis>

#include <doctest/doctest.h>

using namespace simhost;

TEST_SUITE("screen") {
  TEST_CASE("the start page opens a site with a new drawing, and a command that is disabled says why") {
    needApplication();
    if (!hasScreen()) return;
    const HostTexts texts("resources", languageOfSession());
    const brenvolt::SiteCopy site;
    {
      StartWindow start(texts, {{QString::fromStdString(site.site())}, {}, {}});
      ScreenSession steps(QStringLiteral("start"));
      steps.inWindow(QStringLiteral("start"), QStringLiteral("page"), [&](QWidget& window) {
        for (auto* button : window.findChildren<QPushButton*>())
          if (button->text() == texts(HostText::startNew)) ScreenSession::click(*button);
      });
      start.open();
      CHECK(steps.run());
      CHECK(start.result() == QDialog::Accepted);
      CHECK(start.choice().site.toStdString() == site.site());
    }
    GuiFixture gui({}, languageOfSession());
    gui.window.showMaximized();
    ScreenSession steps(QStringLiteral("nothing_open"));
    auto* bar = gui.window.findChild<QToolBar*>(QStringLiteral("commands"));
    QWidget* button = bar->widgetForAction(&gui.window.action(HostText::newCircuit));
    steps.step(
        QStringLiteral("window"), [&] { return QApplication::activeWindow() == &gui.window; }, [] {});
    QElapsedTimer rest;
    steps.step(
        QStringLiteral("reason"),
        [&] {
          constexpr int longest = 3000;
          const bool isShown = QToolTip::text().contains(gui.texts(HostText::noSite));
          if (isShown || (rest.isValid() && rest.elapsed() < longest)) return isShown;
          // A window that has just grown has its buttons elsewhere: the pointer comes again.
          ScreenSession::move(*button, {6, 6});
          ScreenSession::move(*button, button->rect().center());
          rest.start();
          return false;
        },
        [] {});
    CHECK(steps.run());
  }

  TEST_CASE("a circuit is chosen, placed, configured beside the drawing and found again, with the mouse") {
    needApplication();
    if (!hasScreen()) return;
    Desk desk(QStringLiteral("mouse"));
    desk.atMain(QStringLiteral("new"), [&] { ScreenSession::click(desk.buttonOf(HostText::newCircuit)); });
    desk.steps.inWindow(QStringLiteral("ZanDlgCircuit"), QStringLiteral("circuits"), [](QWidget& window) {
      auto* tree = window.findChild<QTreeWidget*>();
      tree->expandAll();
      const QList<QTreeWidgetItem*> types =
          tree->findItems(QStringLiteral("Direct on line"), Qt::MatchExactly | Qt::MatchRecursive);
      REQUIRE_FALSE(types.isEmpty());
      tree->scrollToItem(types.front());
      ScreenSession::click(*tree, cellOf(*tree, tree->indexFromItem(types.front())));
    });
    desk.press(QStringLiteral("ZanDlgCircuit"), QStringLiteral("configure"), QStringLiteral("configure"));
    desk.atPick(QStringLiteral("place"), [&] {
      ScreenSession::move(desk.gui.window.view(), {180, 180});
      ScreenSession::move(desk.gui.window.view(), {200, 200});
    });
    desk.atPick(QStringLiteral("outline"), [&] {
      ScreenSession::click(desk.gui.window.view(), desk.gui.window.view().rect().center());
    });
    const auto press = [](QWidget& button) { ScreenSession::click(button); };
    desk.insertEverything(press, press);
    desk.atMain(QStringLiteral("built"), [&] {
      auto* table = desk.gui.window.findChild<QTreeWidget*>(QStringLiteral("circuitTable"));
      ScreenSession::click(*table, cellOf(*table, table->model()->index(0, 1)));
    });
    desk.atMain(QStringLiteral("selected"), [] {});
    CHECK(desk.steps.run());
    CHECK(desk.circuits() == 1);
    CHECK_FALSE(desk.gui.window.circuits().id().empty());
  }

  TEST_CASE("a circuit is chosen, placed and configured, and a motor is found, by keys alone") {
    needApplication();
    if (!hasScreen()) return;
    Desk desk(QStringLiteral("keys"));
    desk.atMain(QStringLiteral("new"), [] { ScreenSession::keys({QStringLiteral("ctrl+t")}); });
    desk.steps.inWindow(QStringLiteral("ZanDlgCircuit"), QStringLiteral("circuits"), [](QWidget& window) {
      auto* tree = window.findChild<QTreeWidget*>();
      ScreenSession::keys(
          tabsTo(*tree) +
          QStringList{QStringLiteral("Home"), QStringLiteral("Right"), QStringLiteral("Down")});
    });
    desk.steps.inWindow(QStringLiteral("ZanDlgCircuit"), QStringLiteral("chosen"), [](QWidget& window) {
      auto* configure = window.findChild<QAbstractButton*>(QStringLiteral("configure"));
      REQUIRE(configure != nullptr);
      ScreenSession::keys({letterKeys(configure->text())});
    });
    desk.atPick(QStringLiteral("place"), [] {
      ScreenSession::type(QStringLiteral("20,-5"));
      ScreenSession::keys({QStringLiteral("Return")});
    });
    const auto press = [](QWidget& button) {
      ScreenSession::keys(tabsTo(button) + QStringList{QStringLiteral("space")});
    };
    desk.insertEverything(press, press);
    desk.atMain(QStringLiteral("built"), [] { ScreenSession::keys({QStringLiteral("ctrl+m")}); });
    desk.steps.inWindow(QStringLiteral("ZanDlgMotorSelect"), QStringLiteral("motors"), [](QWidget& window) {
      const QLineEdit* search = nullptr;
      for (const auto* field : window.findChildren<QLineEdit*>())
        if (!field->placeholderText().isEmpty()) search = field;
      REQUIRE(search != nullptr);
      ScreenSession::keys(tabsTo(*search));
      ScreenSession::type(QStringLiteral("15 460"));
      ScreenSession::keys({QStringLiteral("Return")});
    });
    desk.steps.step(
        QStringLiteral("found"),
        [] {
          const QWidget* window = activeWindowNamed(QStringLiteral("ZanDlgMotorSelect"));
          return window != nullptr && window->findChild<QTableView*>()->hasFocus();
        },
        [] {
          const QWidget* window = activeWindowNamed(QStringLiteral("ZanDlgMotorSelect"));
          ScreenSession::keys(
              tabsTo(*window->findChild<QAbstractButton*>(QStringLiteral("ok"))) +
              QStringList{QStringLiteral("space")});
        });
    desk.atMain(QStringLiteral("motor"), [] {});
    CHECK(desk.steps.run());
    CHECK(desk.circuits() == 1);
    CHECK_MESSAGE(
        desk.gui.window.status().text().contains(QStringLiteral("15")),
        desk.gui.window.status().text().toStdString());
  }

  TEST_CASE("another wire size is applied, and what is selected is described in the user's words") {
    needApplication();
    if (!hasScreen()) return;
    Desk desk(QStringLiteral("wire"));
    desk.buildPump();
    desk.atMain(QStringLiteral("circuit"), [&] {
      auto* table = desk.gui.window.findChild<QTreeWidget*>(QStringLiteral("circuitTable"));
      ScreenSession::click(*table, cellOf(*table, table->model()->index(0, 1)));
    });
    desk.atMain(QStringLiteral("selected"), [] { ScreenSession::keys({QStringLiteral("ctrl+i")}); });
    desk.steps.inWindow(QStringLiteral("ZanDlgWireSelect"), QStringLiteral("sizes"), [](QWidget& window) {
      auto* table = window.findChild<QTableView*>();
      REQUIRE(table != nullptr);
      const int row = table->currentIndex().row() + 1;
      ScreenSession::click(*table, cellOf(*table, table->model()->index(row, 1)), 2);
    });
    desk.atMain(QStringLiteral("applied"), [&] {
      CHECK_MESSAGE(
          desk.gui.window.status().text().contains(QStringLiteral("AWG -> ")),
          desk.gui.window.status().text().toStdString());
      ScreenSession::keys({QStringLiteral("ctrl+z")});
    });
    desk.atMain(QStringLiteral("undone"), [&] {
      ScreenSession::move(desk.gui.window.view(), desk.gui.pixel(165, -10) - QPoint(3, 3));
      ScreenSession::click(desk.gui.window.view(), desk.gui.pixel(165, -10));
    });
    desk.atMain(QStringLiteral("properties"), [&] {
      CHECK_FALSE(desk.gui.window.status().hoverText().contains(QStringLiteral("block-reference")));
      CHECK(desk.gui.window.findChild<QTreeWidget*>(QStringLiteral("properties"))->topLevelItemCount() > 2);
      ScreenSession::keys({QStringLiteral("Escape"), QStringLiteral("ctrl+i")});
    });
    // Without a selection it asks; what does not fit says why, and what fits is taken.
    desk.atPick(QStringLiteral("pick"), [&] {
      ScreenSession::click(desk.gui.window.view(), desk.gui.pixel(50, 18)); // the motor's data, a text
    });
    desk.steps.step(
        QStringLiteral("refused"),
        [&] { return desk.gui.window.status().text() == desk.gui.texts(HostText::onlyComponentFits); },
        [&] { ScreenSession::click(desk.gui.window.view(), desk.gui.pixel(165, -10)); });
    desk.steps.inWindow(QStringLiteral("ZanDlgWireSelect"), QStringLiteral("again"), [](QWidget&) {
      ScreenSession::keys({QStringLiteral("Escape")});
    });
    // The result of a lookup is a line that can be copied.
    desk.atMain(QStringLiteral("left"), [] { ScreenSession::keys({QStringLiteral("ctrl+m")}); });
    desk.press(QStringLiteral("ZanDlgMotorSelect"), QStringLiteral("ok"), QStringLiteral("motors"));
    desk.atMain(QStringLiteral("line"), [&] {
      for (const auto* button : desk.gui.window.findChildren<QAbstractButton*>())
        if (button->isVisible() && button->text() == desk.gui.texts(HostText::copyResult))
          ScreenSession::click(*button);
    });
    CHECK(desk.steps.run());
    const QString copied = QGuiApplication::clipboard()->text();
    CHECK_MESSAGE(copied == desk.gui.window.status().text(), copied.toStdString());
    CHECK(copied.startsWith(desk.gui.texts(HostText::motorResult, {QString()})));
  }

  TEST_CASE("a second window on a drawing says so, and none of the two overwrites the other in silence") {
    needApplication();
    if (!hasScreen()) return;
    Desk desk(QStringLiteral("two"));
    const GuiFolder folder;
    const QString file = QString::fromStdString(folder.path("plan.json"));
    desk.gui.run(L"(draw-line '(0 0) '(100 50))");
    REQUIRE(desk.gui.window.files().saveTo(file));
    const auto saved = [&] { return readFile(file.toStdString()).value_or(""); };
    std::string before;
    const auto title = [&desk](HostText text) { return desk.gui.texts(text); };
    desk.atMain(QStringLiteral("first"), [&] { desk.startOther(file, folder); });
    desk.atTitle(QStringLiteral("asked"), title(HostText::openElsewhereTitle), [&] {
      ScreenSession::keys({letterKeys(title(HostText::openAnyway))});
    });
    desk.steps.step(
        QStringLiteral("answered"),
        [&] { return !ScreenSession::hasWindow(title(HostText::openElsewhereTitle)); }, [] {});
    desk.buildInOther(QStringLiteral("both"), QStringLiteral("plan.json"), [&] {
      // This one draws on and saves; then the other one does.
      desk.gui.run(L"(draw-line '(0 0) '(50 100))");
      CHECK(desk.gui.window.files().saveTo(file));
      before = saved();
      ScreenSession::keys({QStringLiteral("ctrl+b")});
    });
    desk.atTitle(QStringLiteral("drawn"), QStringLiteral("plan.json\\*"), [] {});
    desk.steps.step(
        QStringLiteral("changed"),
        [&] {
          if (ScreenSession::hasWindow(title(HostText::changedElsewhereTitle))) return true;
          ScreenSession::keys({QStringLiteral("ctrl+s")}); // refused while the circuit is still being built
          return false;
        },
        [] { ScreenSession::keys({QStringLiteral("Escape")}); });
    desk.steps.step(
        QStringLiteral("kept"),
        [&] { return !ScreenSession::hasWindow(title(HostText::changedElsewhereTitle)); }, [] {});
    CHECK(desk.steps.run());
    CHECK(saved() == before);
    desk.killOther();
  }

  TEST_CASE("the page has the frame of the site, and the preview shows it") {
    needApplication();
    if (!hasScreen()) return;
    Desk desk(QStringLiteral("paper"));
    desk.buildPump();
    desk.atMain(QStringLiteral("drawing"), [&] {
      QTimer::singleShot(0, [&] { desk.gui.window.action(HostText::pageSetup).trigger(); });
    });
    desk.steps.inWindow(QStringLiteral("pageSetup"), QStringLiteral("setup"), [](QWidget& window) {
      ScreenSession::keys(tabsTo(*window.findChild<QComboBox*>(QStringLiteral("frame"))));
      ScreenSession::type(QStringLiteral("A3"));
    });
    desk.steps.step(
        QStringLiteral("chosen"),
        [] {
          const QWidget* window = activeWindowNamed(QStringLiteral("pageSetup"));
          return window != nullptr && window->findChild<QComboBox*>(QStringLiteral("frame"))->currentText() ==
                                          QStringLiteral("A3");
        },
        [] {
          const QWidget* window = activeWindowNamed(QStringLiteral("pageSetup"));
          ScreenSession::keys(tabsTo(*window->findChild<QLineEdit*>(QStringLiteral("project"))));
          ScreenSession::type(QStringLiteral("PUMP STATION"));
        });
    desk.steps.step(
        QStringLiteral("frame"),
        [] {
          const QWidget* window = activeWindowNamed(QStringLiteral("pageSetup"));
          return window != nullptr &&
                 window->findChild<QLineEdit*>(QStringLiteral("project"))->text().size() == 12;
        },
        [] { ScreenSession::keys({QStringLiteral("Return")}); });
    desk.atMain(QStringLiteral("set"), [&] {
      QTimer::singleShot(0, [&] { desk.gui.window.action(HostText::printPreview).trigger(); });
    });
    desk.steps.inWindow(QStringLiteral("printPreview"), QStringLiteral("preview"), [](QWidget&) {
      ScreenSession::keys({QStringLiteral("Escape")});
    });
    desk.atMain(QStringLiteral("end"), [] {});
    CHECK(desk.steps.run());
  }

  TEST_CASE(
      "help has contents, search and a way back; a control explains itself; the language changes at once") {
    needApplication();
    if (!hasScreen()) return;
    Desk desk(QStringLiteral("help"));
    const QString helpName = QLatin1String(helpWindowName);
    desk.atMain(QStringLiteral("window"), [] { ScreenSession::keys({QStringLiteral("F1")}); });
    desk.steps.inWindow(helpName, QStringLiteral("page"), [](QWidget& window) {
      ScreenSession::click(*window.findChild<QLineEdit*>(QStringLiteral("helpSearch")));
      ScreenSession::type(QStringLiteral("Multiplier"));
      ScreenSession::keys({QStringLiteral("Return")});
    });
    QString found;
    desk.steps.step(
        QStringLiteral("found"),
        [&] {
          auto* help = dynamic_cast<HelpWindow*>(activeWindowNamed(QLatin1String(helpWindowName)));
          return help != nullptr && help->page() != QStringLiteral("main-window.md");
        },
        [&] {
          found = dynamic_cast<HelpWindow*>(activeWindowNamed(helpName))->page();
          ScreenSession::keys({QStringLiteral("alt+Left")});
        });
    desk.steps.step(
        QStringLiteral("back"),
        [&] {
          auto* help = dynamic_cast<HelpWindow*>(activeWindowNamed(helpName));
          return help != nullptr && help->page() == QStringLiteral("main-window.md");
        },
        [] { ScreenSession::keys({QStringLiteral("Escape")}); });
    desk.atMain(QStringLiteral("pointer"), [&] {
      ScreenSession::move(desk.buttonOf(HostText::motor), {6, 6});
      ScreenSession::keys({QStringLiteral("shift+F1")});
    });
    desk.steps.step(
        QStringLiteral("explained"), [] { return QApplication::activePopupWidget() != nullptr; },
        [] { ScreenSession::keys({QStringLiteral("Escape")}); });
    desk.atMain(QStringLiteral("what"), [&] {
      QTimer::singleShot(0, [&] { desk.gui.window.action(HostText::whatsThis).trigger(); });
    });
    desk.steps.step(
        QStringLiteral("next click"), [] { return QWhatsThis::inWhatsThisMode(); },
        [&] { ScreenSession::click(desk.buttonOf(HostText::motor)); });
    desk.steps.step(
        QStringLiteral("this"), [] { return QApplication::activePopupWidget() != nullptr; },
        [] { ScreenSession::keys({QStringLiteral("Escape")}); });
    const QString before = desk.gui.texts(HostText::newCircuit);
    desk.atMain(QStringLiteral("language"), [&] {
      const QString other =
          languageOfSession() == "de" ? QStringLiteral("English") : QStringLiteral("Deutsch");
      for (const QMenu* menu : desk.gui.window.findChildren<QMenu*>())
        for (QAction* action : menu->actions())
          if (action->text().contains(other)) return action->trigger();
    });
    desk.steps.step(
        QStringLiteral("changed"),
        [&] { return desk.gui.window.action(HostText::newCircuit).text() != before; }, [] {});
    CHECK(desk.steps.run());
    CHECK_FALSE(found.isEmpty());
  }
}
