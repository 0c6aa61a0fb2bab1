// Without a mouse: every command and question has a letter of its own, all that takes the keyboard has a name, and one sees
// where the keyboard is.
#include "gui_fixture.h"
#include "simhost/gui/start_window.h"
#include "simhost/host/files.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMimeData>
#include <QTabBar>
#include <QTest>
#include <QUrl>

#include <doctest/doctest.h>

using namespace simhost;

namespace {

QChar letterOf(const QString& text) {
  for (qsizetype at = 0; at + 1 < text.size(); ++at) {
    if (text[at] != QLatin1Char('&')) continue;
    if (text[at + 1] != QLatin1Char('&')) return text[at + 1].toLower();
    ++at;
  }
  return {};
}

/// Each has one, and no two are equal.
void checkLetters(const QStringList& texts) {
  QString taken;
  for (const QString& text : texts) {
    CAPTURE(text.toStdString());
    const QChar letter = letterOf(text);
    CHECK_FALSE(letter.isNull());
    CHECK_FALSE(taken.contains(letter));
    taken += letter;
  }
}

void checkMenu(const QList<QAction*>& actions) {
  QStringList texts;
  for (const QAction* action : actions) {
    if (action->isSeparator()) continue;
    texts.append(action->text());
    if (action->menu() != nullptr) checkMenu(action->menu()->actions());
  }
  checkLetters(texts);
}

} // namespace

TEST_CASE(
    "in both languages each command and answer has a letter of its own, and what takes keys has a name") {
  using Set = std::vector<HostText>;
  const Set questions[] = {
      {HostText::openReadOnly, HostText::openAnyway, HostText::keepEditing},
      {HostText::recover, HostText::dropCopy},
      {HostText::rebuild, HostText::keepEditing, HostText::hideForGood},
      {HostText::keepEditing, HostText::configurationReplace},
      {HostText::saveAs, HostText::reload, HostText::overwrite, HostText::keepEditing},
      {HostText::save, HostText::discard, HostText::keepEditing}};
  for (const char* language : {"en", "de"}) {
    CAPTURE(language);
    GuiFixture gui({}, language);
    checkMenu(gui.window.menuBar()->actions());
    for (const Set& answers : questions) {
      QStringList texts;
      for (const HostText answer : answers)
        texts.append(gui.texts(answer));
      checkLetters(texts);
    }
    const StartWindow start(gui.texts, {});
    QStringList words;
    for (const QWidget* widget : start.findChildren<QWidget*>()) {
      if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) words.append(button->text());
      if (const auto* label = qobject_cast<const QLabel*>(widget);
          label != nullptr && label->buddy() != nullptr)
        words.append(label->text());
    }
    CHECK(words.size() >= 8);
    checkLetters(words);

    // Once around: every stop says what it is, and the way comes back.
    gui.window.view().setFocus();
    QStringList stops;
    for (int tab = 0; tab < 30; ++tab) {
      const QWidget* now = QApplication::focusWidget();
      REQUIRE(now != nullptr);
      if (tab > 0 && now == &gui.window.view()) break;
      // A tab bar has the names of its tabs.
      const bool hasName = !now->accessibleName().isEmpty() || qobject_cast<const QTabBar*>(now) != nullptr;
      CHECK_MESSAGE(hasName, std::string(now->metaObject()->className()));
      stops.append(now->objectName());
      QTest::keyClick(gui.window.windowHandle(), Qt::Key_Tab);
    }
    CHECK(stops.contains(QStringLiteral("circuitTable")));
    CHECK(stops.contains(QStringLiteral("properties")));
    CHECK(QApplication::focusWidget() == &gui.window.view());
  }
}

TEST_CASE("one sees in both themes where the keyboard is") {
  GuiFixture gui;
  for (const Paper paper : {Paper::light, Paper::dark}) {
    gui.window.setPaper(paper);
    for (const char* name : {"drawing", "circuitTable", "properties", "circuitSearch"}) {
      CAPTURE(name);
      auto* widget = gui.window.findChild<QWidget*>(QLatin1String(name));
      REQUIRE(widget != nullptr);
      const auto picture = [&](bool hasFocus) {
        QWidget* other = gui.window.findChild<QWidget*>(
            QLatin1String(QLatin1String(name) == QLatin1String("drawing") ? "circuitTable" : "drawing"));
        (hasFocus ? widget : other)->setFocus(Qt::TabFocusReason);
        QCoreApplication::processEvents();
        return widget->grab().toImage();
      };
      const QImage without = picture(false);
      const QImage with = picture(true);
      int changed = 0;
      for (int x = 0; x < with.width(); ++x)
        for (const int y : {0, 1, with.height() - 2, with.height() - 1})
          if (without.pixel(x, y) != with.pixel(x, y)) ++changed;
      CHECK_GT(changed, with.width()); // a whole line above or below at least
    }
  }
}

TEST_CASE("a drawing that is dropped on the window is opened") {
  const GuiFolder folder;
  GuiFixture gui;
  gui.run(L"(draw-line '(0 0) '(9 0))");
  const QString file = QString::fromStdString(folder.path("plan.json"));
  REQUIRE(gui.window.files().saveTo(file));
  gui.window.action(HostText::newDrawing).trigger();
  CHECK(gui.window.view().scene().items().empty());
  const auto drop = [&](const QString& name) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(name)});
    QDragEnterEvent enters({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&gui.window, &enters);
    QDropEvent drops({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    if (enters.isAccepted()) QApplication::sendEvent(&gui.window, &drops);
  };
  drop(QString::fromStdString(folder.path("notes.txt")));
  CHECK(gui.window.view().scene().items().empty());
  drop(file);
  CHECK(gui.window.view().scene().items().size() == 1);
}
