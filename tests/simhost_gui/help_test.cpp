// Help in both languages, the words on each control, and a change of the language while the program runs.
#include "gui_fixture.h"
#include "simhost/gui/command_table.h"
#include "simhost/gui/start_window.h"
#include "simhost/qt/context_help.h"
#include "simhost/qt/help_window.h"
#include "simhost/ui/forms.h"

#include <QAbstractButton>
#include <QAction>
#include <QFileInfo>
#include <QLineEdit>
#include <QMenuBar>
#include <QRegularExpression>
#include <QTest>
#include <QTextBrowser>
#include <QToolBar>
#include <QTreeWidget>

#include <doctest/doctest.h>

using namespace simhost;

namespace {

QString textOfFile(const QString& name) {
  QFile file(name);
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QList<QAction*> commandsOf(const QList<QAction*>& menu) {
  QList<QAction*> commands;
  for (QAction* action : menu)
    if (action->menu() != nullptr)
      commands += commandsOf(action->menu()->actions());
    else if (!action->isSeparator())
      commands.append(action);
  return commands;
}

} // namespace

TEST_CASE("the manual has every topic in both languages, and its links and pictures lead somewhere") {
  for (const char* language : {"en", "de"}) {
    CAPTURE(language);
    const Manual manual("docs", QString::fromLatin1(language));
    CHECK(manual.pages().front().name == QStringLiteral("first-circuit.md"));
    for (const HelpTopic& topic : helpTopics) {
      const QString page = QLatin1String(topic.page);
      CAPTURE(topic.page);
      const QString file = manual.file(page);
      REQUIRE_FALSE(file.isEmpty());
      CHECK(file.contains(QStringLiteral("/de/")) == (std::string(language) == "de"));
    }
    for (const char* page : {"set.md", "check.md", "tables.md", "lisp.md"})
      CHECK(
          manual.file(QLatin1String(page)).contains(QStringLiteral("/de/")) ==
          (std::string(language) == "de"));
    CHECK_FALSE(
        manual.anchorOf(QStringLiteral("pickers.md"), QStringLiteral("select_load_dialog")).isEmpty());
    for (const ManualPage& page : manual.pages()) {
      const QString file = manual.file(page.name);
      static const QRegularExpression target(QStringLiteral("\\]\\(([^):# ]+)(#[^) ]*)?\\)"));
      for (auto link = target.globalMatch(textOfFile(file)); link.hasNext();) {
        const QString to = link.next().captured(1);
        const bool isThere = QFileInfo::exists(QFileInfo(file).path() + QLatin1Char('/') + to);
        CHECK_MESSAGE(isThere, page.name.toStdString(), ": ", to.toStdString());
      }
    }
  }
  const Manual manual("docs", QStringLiteral("de"));
  const std::vector<ManualHit> hits = manual.search(QStringLiteral("gesamtstrom volllaststrom"));
  REQUIRE_FALSE(hits.empty());
  CHECK(hits.front().page == QStringLiteral("pickers.md"));
  CHECK(manual.search(QStringLiteral("volllaststrom qwertz")).empty());
}

TEST_CASE("in both languages each command, panel and control explains itself") {
  for (const char* language : {"en", "de"}) {
    CAPTURE(language);
    GuiFixture gui({}, language);
    for (const QAction* command : commandsOf(gui.window.menuBar()->actions())) {
      if (command->text().contains(QStringLiteral("nglish")) ||
          command->text().contains(QStringLiteral("eutsch")))
        continue;
      const QString text = command->whatsThis();
      CHECK_MESSAGE((text.size() > 20 && text.endsWith(QLatin1Char('.'))), command->text().toStdString());
    }
    const QString view = ContextHelp::textOf(*gui.window.findChild<QWidget*>(QStringLiteral("circuitTable")));
    CHECK_FALSE(view.isEmpty());
    for (const char* form :
         {"ZanAttrSelDlg", "ZanDlgAnnotation", "ZanDlgCircuit", "ZanDlgConfig", "ZanDlgExistCircuits",
          "ZanDlgMotorSelect", "ZanDlgPowerFeed", "ZanDlgWireSelect"}) {
      const Form loaded = loadForm("resources/forms", std::wstring(form, form + std::strlen(form)), language);
      for (const FormControl& control : loaded.controls) {
        const bool isClosing = control.role == L"ok" || control.role == L"cancel" || control.role == L"help";
        const std::string role(control.role.begin(), control.role.end());
        CHECK_MESSAGE((isClosing || !control.tooltip.empty()), form, ": ", role);
      }
    }
  }
}

TEST_CASE("the language of the windows changes at once, and work in progress stays") {
  GuiFixture gui({}, "en", "site");
  gui.run(L"(draw-line '(0 0) '(9 0))");
  gui.window.findChild<QLineEdit*>(QStringLiteral("circuitSearch"))->setText(QStringLiteral("P-1"));
  gui.window.action(HostText::grid).trigger();
  gui.window.action(HostText::promptPanel).trigger();
  struct Row {
    const char* language;
    const char* code;
    const char* words;
  };
  for (const auto& [language, code, words] :
       {Row{"Deutsch", "de", "Neuer Stromkreis"}, Row{"English", "en", "New circuit"}}) {
    for (QAction* command : commandsOf(gui.window.menuBar()->actions()))
      if (command->text().contains(QLatin1String(language))) {
        command->trigger();
        break;
      }
    QTest::qWait(1);
    CHECK(gui.window.action(HostText::newCircuit).iconText() == QLatin1String(words));
    CHECK(gui.window.findChild<QLineEdit*>(QStringLiteral("circuitSearch"))->text() == QStringLiteral("P-1"));
    CHECK_FALSE(gui.window.action(HostText::grid).isChecked());
    CHECK(gui.window.action(HostText::undo).isEnabled());
    CHECK(gui.window.panels().prompt().isVisible());
    CHECK(gui.windows.language() == code);
  }
  gui.window.action(HostText::undo).trigger();
  CHECK(gui.window.view().scene().items().empty());
}

TEST_CASE("on a small screen nothing of the main window is cut off, and no command is out of sight") {
  constexpr QSize room(1024, 672); // 700, less a title bar
  for (const char* language : {"en", "de"})
    for (const Paper paper : {Paper::light, Paper::dark}) {
      CAPTURE(language);
      GuiFixture gui({}, language, "site");
      gui.window.setPaper(paper);
      gui.window.resize(room);
      QTest::qWait(1);
      CHECK(gui.window.size() == room);
      CHECK(gui.window.minimumSizeHint().width() <= room.width());
      CHECK(gui.window.minimumSizeHint().height() <= room.height());
      const auto* bar = gui.window.findChild<QToolBar*>(QStringLiteral("commands"));
      for (QAction* action : bar->actions()) {
        const QWidget* button = bar->widgetForAction(action);
        CHECK_MESSAGE(
            (button->isVisible() && bar->rect().contains(button->geometry())), action->text().toStdString());
      }
      StartWindow start(gui.texts, {});
      CHECK(start.minimumSizeHint().width() <= room.width());
      CHECK(start.minimumSizeHint().height() <= room.height());
    }
}
