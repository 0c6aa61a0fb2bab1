// The prompt: what is kept of the lines, and what completion offers.
#include "gui_fixture.h"
#include "simhost/gui/prompt_pane.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>

#include <doctest/doctest.h>

using namespace simhost;

namespace {

QLineEdit& lineOf(PromptPane& pane) {
  return *pane.findChild<QLineEdit*>(QStringLiteral("prompt"));
}

void enter(PromptPane& pane, const char* text) {
  lineOf(pane).setText(QString::fromUtf8(text));
  QTest::keyClick(&lineOf(pane), Qt::Key_Return);
}

} // namespace

TEST_CASE("lines come back with the arrow keys, and in the next window") {
  const GuiFolder folder;
  const std::string settings = folder.path("settings.json");
  {
    GuiFixture gui(settings);
    PromptPane& pane = gui.window.panels().prompt();
    CHECK_FALSE(pane.isVisible());
    gui.window.action(HostText::promptPanel).trigger();
    enter(pane, "(+ 1 2)");
    enter(pane, "(+ 1 2)"); // the same again is one line of the history
    enter(pane, "(list \"a\\nb\")");
    CHECK(pane.history().size() == 2);
    const QString output = pane.findChild<QPlainTextEdit*>(QStringLiteral("output"))->toPlainText();
    CHECK(output.contains(QStringLiteral("> (+ 1 2)\n3\n")));
    lineOf(pane).setText(QStringLiteral("(new"));
    QTest::keyClick(&lineOf(pane), Qt::Key_Up);
    QTest::keyClick(&lineOf(pane), Qt::Key_Up);
    QTest::keyClick(&lineOf(pane), Qt::Key_Up); // stays at the oldest
    CHECK(lineOf(pane).text() == QStringLiteral("(+ 1 2)"));
    QTest::keyClick(&lineOf(pane), Qt::Key_Down);
    QTest::keyClick(&lineOf(pane), Qt::Key_Down);
    CHECK(lineOf(pane).text() == QStringLiteral("(new"));
    gui.window.close();
  }
  GuiFixture next(settings);
  CHECK(next.window.panels().prompt().isVisible());
  CHECK(next.window.panels().prompt().history().last() == QStringLiteral("(list \"a\\nb\")"));
}

TEST_CASE("a form is run when its last parenthesis closes") {
  needApplication();
  PromptPane pane(QStringLiteral("hint"));
  QStringList forms;
  pane.onForm = [&forms](const QString& form) { forms.append(form); };
  enter(pane, "(list 1 ; not closed: (");
  enter(pane, "");
  CHECK(forms.isEmpty());
  enter(pane, "2)");
  REQUIRE(forms.size() == 1);
  CHECK(forms.first().simplified() == QStringLiteral("(list 1 ; not closed: ( 2)"));
  enter(pane, "  ");
  CHECK(forms.size() == 1);
}

TEST_CASE("completion offers names that begin with the word, without case") {
  GuiFixture gui;
  gui.run(L"(defun my-special-function (x) x)");
  PromptPane& pane = gui.window.panels().prompt();
  lineOf(pane).setText(QStringLiteral("(list (MY-spec"));
  CHECK(pane.candidates() == QStringList{QStringLiteral("my-special-function")});
  QTest::keyClick(&lineOf(pane), Qt::Key_Tab);
  CHECK(lineOf(pane).text() == QStringLiteral("(list (my-special-function"));
  lineOf(pane).setText(QStringLiteral("(list ("));
  CHECK(pane.candidates().isEmpty());
  lineOf(pane).setText(QStringLiteral("(zan_bv_"));
  CHECK(pane.candidates().size() == 10);
}
