// The main window as a user meets it: what it shows, what can be started when, and how picks end.
#include "gui_fixture.h"
#include "simhost/drawing/svg.h"
#include "simhost/gui/layer_panel.h"
#include "simhost/gui/open_file.h"
#include "simhost/gui/prompt_pane.h"
#include "simhost/gui/report_window.h"
#include "simhost/gui/start_window.h"
#include "simhost/host/files.h"
#include "simhost/lisp/printer.h"
#include "simhost/qt/qt_text.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QListWidget>
#include <QMessageBox>
#include <QTest>
#include <QTreeWidget>

#include <doctest/doctest.h>

using namespace simhost;

namespace {

constexpr const wchar_t* twoLines =
    L"(progn (draw-line '(0 0) '(100 0)) (undo-count) (draw-line '(0 50) '(100 50)) 2)";

/// Stays open while the actions inside it run: the pick of a command.
struct OpenPick {
  GuiFixture& gui;
  std::function<void()> inside;

  CommandOutcome run(const std::wstring& form = L"(pick-entity \"Select a motor: \")") {
    later([this] {
      inside();
      if (!gui.window.picks().prompt().isEmpty()) gui.key(Qt::Key_Escape);
    });
    return gui.run(form);
  }
};

using Kind = CommandOutcome::Kind;

} // namespace

TEST_CASE("a command is one step of undo, however many records it made") {
  GuiFixture gui;
  REQUIRE(gui.run(twoLines).kind == Kind::done);
  gui.run(L"(draw-circle '(50 25) 10)");
  gui.run(L"(+ 1 2)"); // changes nothing, so there is nothing to undo
  MainWindow& window = gui.window;
  const auto count = [&gui] {
    return gui.drawing().store().findBlock(gui.drawing().modelSpace())->entityCount;
  };
  CHECK(count() == 3);
  CHECK(window.view().scene().items().size() == 3);
  window.action(HostText::undo).trigger();
  CHECK(count() == 2);
  window.action(HostText::undo).trigger();
  CHECK(count() == 0);
  CHECK(window.view().scene().items().empty());
  CHECK_FALSE(window.action(HostText::undo).isEnabled());
  window.action(HostText::redo).trigger();
  CHECK(count() == 2);
  // A command that takes itself back, as a cancelled circuit does: what it drew does not come back by redo, but what was
  // undone before does.
  window.action(HostText::undo).trigger();
  gui.run(L"(let ((start (undo-count))) (draw-circle '(50 25) 10) (undo (- (undo-count) start)))");
  window.action(HostText::redo).trigger();
  CHECK(count() == 2);
  window.action(HostText::redo).trigger();
  CHECK(count() == 3);
  CHECK_FALSE(window.action(HostText::redo).isEnabled());
  window.action(HostText::undo).trigger();
  gui.run(L"(draw-line '(0 1) '(1 1))");
  CHECK_FALSE(window.action(HostText::redo).isEnabled());
}

TEST_CASE("what lies under the pointer is told, and a click selects it") {
  GuiFixture gui;
  gui.run(L"(progn (draw-line '(0 0) '(100 0) \"WIRES\") (draw-line '(0 50) '(100 50)))");
  QTest::mouseMove(&gui.window.view(), gui.pixel(50, 0));
  const QString told = gui.window.status().hoverText();
  CHECK(told == QStringLiteral("Line, layer WIRES"));
  gui.click(50, 0);
  REQUIRE(gui.window.view().marks().selected());
  auto* properties = gui.window.findChild<QTreeWidget*>(QStringLiteral("properties"));
  const QString handle = QString::fromStdWString(formatHandle(*gui.window.view().marks().selected()));
  CHECK(properties->findItems(handle, Qt::MatchExactly, 1).size() == 1);
  QTest::mouseMove(&gui.window.view(), gui.pixel(50, 25));
  CHECK(gui.window.status().hoverText().isEmpty());
  gui.key(Qt::Key_Escape);
  CHECK_FALSE(gui.window.view().marks().selected());
}

TEST_CASE("a pick answers the entity and the point, nothing or a cancel") {
  GuiFixture gui;
  gui.run(L"(draw-line '(0 0) '(100 0))");
  gui.run(L"(draw-line '(0 50) '(100 50))");
  OpenPick pick{gui, [&gui] {
                  CHECK(gui.window.picks().prompt().contains(QStringLiteral("Select a motor:")));
                  gui.click(50, 50);
                }};
  const CommandOutcome picked = pick.run(
      L"(equal (entity-handle (car (pick-entity \"Select a motor: \"))) (entity-handle (entity-last)))");
  INFO(doctest::String(QString::fromStdWString(picked.message).toUtf8().constData()));
  REQUIRE(picked.kind == Kind::done);
  CHECK_FALSE(picked.value.isNil());
  CHECK(gui.window.picks().prompt().isEmpty());

  CHECK(OpenPick{gui, [&gui] { gui.key(Qt::Key_Return); }}.run().value.isNil());
  CHECK(OpenPick{gui, [&gui] { gui.key(Qt::Key_Return); }}.run().kind == Kind::done);
  CHECK(OpenPick{gui, [&gui] { gui.click(50, 25); }}.run().kind == Kind::done); // into the void
  CHECK(OpenPick{gui, [&gui] { gui.key(Qt::Key_Escape); }}.run().kind == Kind::cancelled);

  bool isAskedAgain = false;
  later([&] {
    gui.click(50, 25);
    gui.key(Qt::Key_Return);
    isAskedAgain = !gui.window.picks().prompt().isEmpty();
    gui.click(50, 0);
  });
  const EntityPick must = gui.window.picks().pickEntity(L"Which?", false);
  CHECK(isAskedAgain);
  CHECK(must.kind == EntityPick::Kind::entity);
  CHECK(must.point.x == doctest::Approx(50.0).epsilon(0.02));

  later([&gui] { gui.click(20, 30); });
  const std::optional<KvPoint3d> point = gui.window.placing().pickPlace(QStringLiteral("Where?"));
  REQUIRE(point);
  CHECK(point->y == doctest::Approx(30.0).epsilon(0.02));
}

TEST_CASE("while a command runs the others are off, and a second one is refused") {
  GuiFixture gui;
  gui.run(L"(draw-line '(0 0) '(100 0))");
  MainWindow& window = gui.window;
  const HostText idle[] = {
      HostText::open, HostText::save, HostText::undo, HostText::print, HostText::newDrawing};
  OpenPick{
      gui,
      [&] {
        for (const HostText command : idle)
          CHECK_FALSE(window.action(command).isEnabled());
        CHECK(window.action(HostText::zoomExtents).isEnabled());
        CHECK(gui.run(L"(draw-line '(0 0) '(1 1))").kind == Kind::refused);
        window.panels().prompt().onForm(QStringLiteral("(draw-line '(0 0) '(1 1))"));
        CHECK(window.status().text() == gui.texts(HostText::busy));
        CHECK_FALSE(window.files().open(QStringLiteral("other.json")));
        CHECK(window.runner().undo().isEmpty());
      }}
      .run();
  CHECK(window.action(HostText::open).isEnabled());
  CHECK(window.action(HostText::undo).isEnabled());
  CHECK(window.view().scene().items().size() == 1);
  // Without a site there is nothing to build from.
  CHECK_FALSE(window.action(HostText::newCircuit).isEnabled());
}

TEST_CASE("a window that is closed in the middle of a pick ends the run first") {
  GuiFixture gui;
  bool isShownMeanwhile = false;
  const CommandOutcome outcome = OpenPick{
      gui, [&] {
        gui.window.close();
        isShownMeanwhile = gui.window.isVisible();
      }}.run(L"(progn (pick-entity \"Which?\") (draw-line '(0 0) '(1 1)))");
  CHECK(outcome.kind == Kind::cancelled);
  CHECK(isShownMeanwhile);
  CHECK(gui.window.view().scene().items().empty());
  QTest::qWait(10);
  CHECK_FALSE(gui.window.isVisible());
}

TEST_CASE("a drawing that cannot be read leaves the open one as it is") {
  const GuiFolder folder;
  GuiFixture gui;
  const QString file = QString::fromStdString(folder.path("plan.json"));
  gui.run(twoLines);
  CHECK(gui.window.files().isChanged());
  REQUIRE(gui.window.files().saveTo(file));
  CHECK_FALSE(gui.window.files().isChanged());
  // Undo comes back to what was saved, another change that follows does not.
  gui.run(L"(draw-line '(0 5) '(9 5))");
  CHECK(gui.window.files().isChanged());
  gui.window.action(HostText::undo).trigger();
  CHECK_FALSE(gui.window.isWindowModified());
  gui.window.action(HostText::undo).trigger();
  CHECK(gui.window.isWindowModified());
  gui.run(twoLines);
  CHECK(gui.window.files().isChanged());
  REQUIRE(gui.window.files().saveTo(file));
  CHECK(replaceFile(folder.path("bad.json"), "{\"format\": 1}").empty());
  CHECK_FALSE(gui.window.files().open(QString::fromStdString(folder.path("bad.json"))));
  CHECK(gui.window.status().text().contains(QStringLiteral("bad.json")));
  CHECK(gui.window.view().scene().items().size() == 2);
  gui.run(L"(draw-line '(0 7) '(9 7))");
  REQUIRE(gui.window.files().open(file));
  CHECK(gui.window.view().scene().items().size() == 2);
  CHECK_FALSE(gui.window.action(HostText::undo).isEnabled());
  CHECK_FALSE(gui.window.files().saveTo(QString::fromStdString(folder.path("no/such/folder.json"))));
}

TEST_CASE("exports are the drawing's own picture, and the same page each time") {
  const GuiFolder folder;
  GuiFixture gui;
  gui.run(twoLines);
  REQUIRE(gui.window.paper().exportSvg(QString::fromStdString(folder.path("a.svg"))));
  CHECK(readFile(folder.path("a.svg")) == renderSvg(gui.drawing(), gui.drawing().modelSpace()).svg);
  REQUIRE(gui.window.paper().exportPdf(QString::fromStdString(folder.path("a.pdf"))));
  QTest::qWait(1100); // the clock has gone on by a second
  REQUIRE(gui.window.paper().exportPdf(QString::fromStdString(folder.path("b.pdf"))));
  const std::optional<std::string> page = readFile(folder.path("a.pdf"));
  REQUIRE(page);
  CHECK(page->starts_with("%PDF-"));
  CHECK(page->size() > 1000);
  CHECK(page == readFile(folder.path("b.pdf")));
  gui.run(L"(draw-circle '(50 25) 10)");
  REQUIRE(gui.window.paper().exportPdf(QString::fromStdString(folder.path("b.pdf"))));
  CHECK(page != readFile(folder.path("b.pdf")));
}

TEST_CASE("a layer without its tick is neither seen nor picked") {
  GuiFixture gui;
  gui.run(L"(progn (draw-line '(0 0) '(100 0) \"WIRES\") (draw-line '(0 50) '(100 50)))");
  LayerPanel& layers = gui.window.panels().layers();
  const QList<QListWidgetItem*> rows = layers.findItems(QStringLiteral("WIRES"), Qt::MatchExactly);
  REQUIRE(rows.size() == 1);
  rows.first()->setCheckState(Qt::Unchecked);
  gui.click(50, 0);
  CHECK_FALSE(gui.window.view().marks().selected());
  gui.run(L"(draw-line '(0 25) '(100 25))"); // the layer stays off when the drawing changes
  gui.click(50, 0);
  CHECK_FALSE(gui.window.view().marks().selected());
  layers.findItems(QStringLiteral("WIRES"), Qt::MatchExactly).first()->setCheckState(Qt::Checked);
  gui.click(50, 0);
  CHECK(gui.window.view().marks().selected().has_value());
}

TEST_CASE("no two commands share a key, and every text of the window has its words") {
  for (const char* language : {"en", "de"}) {
    GuiFixture gui({}, language);
    QStringList keys;
    for (const QAction* action : gui.window.findChildren<QAction*>()) {
      CHECK_FALSE(action->text().startsWith(QLatin1Char('<')));
      const QString key = action->shortcut().toString();
      if (key.isEmpty()) continue;
      CHECK_MESSAGE(!keys.contains(key), key.toStdString());
      keys.append(key);
    }
    CHECK(keys.size() > 15);
    for (const auto kind : {circuits::ReportKind::motors, circuits::ReportKind::parts})
      for (const circuits::ReportColumn& column : circuits::makeReport(kind, {}).columns) {
        CHECK_FALSE(columnTitle(gui.texts, column).startsWith(QLatin1Char('<')));
        CHECK((columnTitle(gui.texts, column) == toQt(column.title)) == (language == std::string("en")));
      }
  }
}

namespace {

/// Answers a question of the main window by the text of a button, as soon as it appears.
class Answer final {
public:
  Answer(GuiFixture& gui, HostText button)
      : watch_([&gui, button] {
          auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
          if (box == nullptr) return false;
          for (QAbstractButton* shown : box->buttons())
            if (shown->text() == gui.texts(button)) shown->click();
          return true;
        }) {}

private:
  Watch watch_;
};

} // namespace

TEST_CASE("a file that somebody else has open, or has written, is not replaced without a question") {
  const GuiFolder folder;
  const QString file = QString::fromStdString(folder.path("plan.json"));
  GuiFixture gui;
  gui.run(twoLines);
  REQUIRE(gui.window.files().saveTo(file));
  CHECK(OpenFile::userElsewhere(file) != QString()); // its own window has it
  const std::string saved = readFile(file.toStdString()).value();

  // Changed by another program meanwhile: another time, another size.
  CHECK(replaceFile(file.toStdString(), saved + " ").empty());
  gui.run(L"(draw-line '(0 9) '(9 9))");
  {
    const Answer keep(gui, HostText::keepEditing);
    gui.window.action(HostText::save).trigger();
    CHECK(readFile(file.toStdString()) == saved + " ");
    CHECK(gui.window.files().isChanged());
  }
  {
    const Answer overwrite(gui, HostText::overwrite);
    gui.window.action(HostText::save).trigger();
    CHECK_FALSE(gui.window.files().isChanged());
    CHECK(readFile(file.toStdString()) != saved + " ");
  }
  gui.window.action(HostText::save).trigger(); // no further question
  CHECK(replaceFile(file.toStdString(), saved).empty());
  gui.run(L"(draw-line '(0 11) '(9 11))");
  {
    const Answer reload(gui, HostText::reload);
    gui.window.action(HostText::save).trigger();
    CHECK(gui.window.view().scene().items().size() == 2);
    CHECK_FALSE(gui.window.files().isChanged());
  }

  // Another window, here that of another owner of the lock.
  const QString other = QString::fromStdString(folder.path("other.json"));
  CHECK(replaceFile(other.toStdString(), saved).empty());
  OpenFile elsewhere{{}};
  elsewhere.take(other);
  {
    const Answer leave(gui, HostText::keepEditing);
    CHECK_FALSE(gui.window.files().open(other));
  }
  const Answer readOnly(gui, HostText::openReadOnly);
  REQUIRE(gui.window.files().open(other));
  CHECK_FALSE(gui.window.files().open(QStringLiteral("README.md"))); // what is open stays as it was opened
  CHECK(gui.window.files().isReadOnly());
  CHECK(gui.window.windowTitle().contains(gui.texts(HostText::readOnly)));
}

TEST_CASE("what was not saved is there again after a crash, until the user drops it") {
  const GuiFolder folder;
  const QString file = QString::fromStdString(folder.path("plan.json"));
  const QString copy = OpenFile::copyOf(file);
  {
    GuiFixture gui;
    gui.run(twoLines);
    REQUIRE(gui.window.files().saveTo(file));
    gui.run(L"(draw-line '(0 9) '(9 9))");
    gui.window.files().keepCopy();
    CHECK(QFile::exists(copy));
    gui.window.action(HostText::undo).trigger();
    gui.window.files().keepCopy();
    CHECK_FALSE(QFile::exists(copy)); // as it was saved: nothing to recover
    gui.window.action(HostText::redo).trigger();
    gui.window.files().keepCopy();
    // The window is destroyed without being closed.
  }
  {
    // A run that decides nothing about it, and has a copy of its own.
    GuiFixture gui;
    const Watch leave([] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box != nullptr) box->reject();
      return box != nullptr;
    });
    REQUIRE(gui.window.files().open(file));
    gui.run(L"(draw-line '(0 13) '(9 13))");
    gui.window.files().keepCopy();
    gui.window.files().removeCopy();
  }
  GuiFixture gui;
  {
    const Answer recover(gui, HostText::recover);
    REQUIRE(gui.window.files().open(file));
  }
  CHECK(gui.window.view().scene().items().size() == 3);
  CHECK(gui.window.files().isChanged());
  CHECK(QFile::exists(copy));
  REQUIRE(gui.window.files().saveTo(file));
  CHECK_FALSE(QFile::exists(copy));
  gui.run(L"(draw-line '(0 11) '(9 11))");
  gui.window.files().keepCopy();
  const Answer discard(gui, HostText::discard);
  gui.window.close();
  CHECK_FALSE(gui.window.isVisible());
  CHECK_FALSE(QFile::exists(copy));
}

TEST_CASE("the start page begins with a recent drawing, its site and project, by keys") {
  needApplication();
  const GuiFolder folder;
  const QString drawing = QString::fromStdString(folder.path("plan.json"));
  {
    GuiFixture gui;
    gui.run(twoLines);
    REQUIRE(gui.window.files().saveTo(drawing));
  }
  const HostTexts texts("resources", "en");
  StartWindow start(
      texts,
      {{QStringLiteral("site")}, {QStringLiteral("plant.db")}, {QStringLiteral("gone.json"), drawing}});
  start.show();
  auto* list = start.findChild<QListWidget*>(QStringLiteral("recentDrawings"));
  REQUIRE(list->count() == 1); // a file that is gone is not offered
  CHECK_FALSE(list->item(0)->icon().isNull());
  for (int tab = 0; tab < 10 && !list->hasFocus(); ++tab)
    QTest::keyClick(start.windowHandle(), Qt::Key_Tab);
  REQUIRE(list->hasFocus());
  QTest::keyClick(start.windowHandle(), Qt::Key_Space);
  QTest::keyClick(start.windowHandle(), Qt::Key_Return);
  CHECK(start.result() == QDialog::Accepted);
  CHECK(start.choice().drawing == drawing);
  CHECK(start.choice().site == QStringLiteral("site"));
  CHECK(start.choice().project.isEmpty());
}
