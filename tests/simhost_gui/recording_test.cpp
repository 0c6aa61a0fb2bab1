// From the user's actions to the same bytes: actions in the main window and its dialogs are recorded, and the tool
// replays them without a screen on a copy of the site.
#include "gui_fixture.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/gui/session_recording.h"
#include "tests/simhost_qt/piloted_windows.h"
#include "tests/site/site_tool.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>

#include <doctest/doctest.h>

using namespace simhost;
using brenvolt::SiteCopy;

namespace {

/// A main window with its own site whose dialogs are answered from steps, through their widgets.
class RecordedWindow final {
public:
  explicit RecordedWindow(const std::string& steps)
      : gui({}, "en", site.site()), pilot(gui.windows, steps),
        recording(path("session.json"), start(), gui.windows, gui.window.runner()) {}

  [[nodiscard]] std::string path(const char* name) const { return site.folder().path(name); }
  void trigger(HostText command) { gui.window.action(command).trigger(); }
  void type(const char* form) {
    auto* line = gui.window.panels().prompt().findChild<QLineEdit*>(QStringLiteral("prompt"));
    QTest::keyClicks(line, QString::fromUtf8(form));
    QTest::keyClick(line, Qt::Key_Return);
  }
  [[nodiscard]] std::size_t itemCount() { return gui.window.view().scene().items().size(); }

  /// Replays what was recorded and compares what it leaves.
  void replay(const std::string& errors) {
    CHECK_FALSE(pilot.steps().hasFailed());
    CHECK(pilot.steps().unused() == 0);
    CHECK_FALSE(saveDrawing(gui.drawing(), QString::fromStdString(path("here.json")).toStdWString()));
    recording.write();
    const SiteCopy other;
    const brenvolt::ToolRun run = other.run(
        {"replay", other.site(), path("session.json"), "--out", other.folder().path("there.json"), "--work",
         other.folder().path("work")});
    REQUIRE_MESSAGE(run.exitCode == 0, run.errors);
    CHECK(run.errors == errors);
    CHECK_MESSAGE((other.folder().read("there.json") == site.folder().read("here.json")), "the drawing");
    CHECK(
        brenvolt::historyText(other.folder().read("work/zan_brenvolt.xml"), other.folder().path("work")) ==
        site.history());
  }

  SiteCopy site;
  GuiFixture gui;
  test::StepPilot pilot;
  SessionRecording recording;

private:
  static SiteRunOptions start() {
    SiteRunOptions options;
    options.language = "en";
    return options;
  }
};

} // namespace

TEST_CASE("what was recorded in the windows is replayed without them to the same drawing and history") {
  RecordedWindow session(R"(
    {"dialog": "ZanDlgCircuit", "do": [
      {"select": "circuits", "path": ["Power feeds", "Single-phase"]},
      {"choose": "history", "to": "Heater 2 kW"}, {"press": "configure"} ]},
    {"dialog": "ZanDlgConfig", "do": [
      {"press": "insertCurrent"}, {"press": "insertCurrent"}, {"press": "undo"},
      {"select": "units", "path": ["Disconnecting means"]},
      {"choose": "options/Disconnecting means", "to": "Fusible switch"},
      {"press": "insertAll"}, {"set": "historyName", "to": "Recorded"}, {"press": "ok"} ]},
    {"dialog": "ZanDlgMotorSelect", "do": [
      {"choose": "voltageFilter", "to": "460"}, {"select": "grid", "row": 3},
      {"set": "multiplier", "to": "1.15"}, {"press": "ok"} ]},
    {"dialog": "ZanDlgMotorSelect", "do": [ {"close": "frame"} ]})");
  GuiFixture& gui = session.gui;
  const Watch place([&] {
    if (gui.window.picks().prompt().isEmpty()) return false;
    gui.click(100, 50);
    return true;
  });
  session.trigger(HostText::newCircuit);
  const std::size_t circuit = session.itemCount();
  CHECK(circuit > 20);
  session.trigger(HostText::motor);
  session.trigger(HostText::motor);
  session.type("(draw-circle '(50 25) 10)");
  session.type("(progn (draw-line '(0 0) '(9 0)) (undo-count) (draw-line '(0 9) '(9 9)) (car 5))");
  CHECK(session.itemCount() == circuit + 3);
  session.trigger(HostText::undo);
  session.trigger(HostText::undo);
  session.trigger(HostText::redo);
  const Watch escape([&] {
    if (gui.window.picks().prompt().isEmpty()) return false;
    gui.key(Qt::Key_Escape);
    return true;
  });
  session.type("(progn (draw-line '(0 7) '(9 7)) (pick-entity \"Which?\") (draw-line '(0 8) '(9 8)))");
  CHECK(session.itemCount() == circuit + 2);

  // What a replay could not repeat is not done.
  for (const HostText command :
       {HostText::configureCircuit, HostText::copyCircuit, HostText::saveConfiguration}) {
    session.trigger(command);
    CHECK(gui.window.status().text().contains(QStringLiteral("--record")));
  }
  // A drawing that is saved over after it was opened.
  const QString plan = QString::fromStdString(session.path("plan.json"));
  REQUIRE(gui.window.files().saveTo(plan));
  session.trigger(HostText::newDrawing);
  session.type("(draw-line '(0 3) '(9 3))");
  CHECK(session.itemCount() == 1);
  REQUIRE(gui.window.files().open(plan));
  session.type("(draw-line '(0 5) '(9 5))");
  REQUIRE(gui.window.files().saveTo(plan));
  CHECK(session.itemCount() == circuit + 3);
  session.replay("brenvolt: as recorded: input:1: CAR: argument 1 must be a list, not 5, in (CAR 5)\n"
                 "brenvolt: as recorded: the run was cancelled\n");
}

TEST_CASE("a circuit of the project is taken over, and its records come and go with it") {
  RecordedWindow session(R"(
    {"dialog": "ZanDlgCircuit", "do": [
      {"select": "circuits", "path": ["Power feeds", "Single-phase"]},
      {"tick": "useExisting", "to": true}, {"press": "chooseExisting"} ]},
    {"dialog": "ZanDlgExistCircuits", "do": [ {"select": "existing", "row": 1}, {"press": "ok"} ]},
    {"dialog": "ZanDlgCircuit", "do": [ {"tick": "takeComponents", "to": true}, {"press": "configure"} ]},
    {"dialog": "ZanDlgConfig", "do": [ {"press": "insertAll"}, {"press": "undo"}, {"press": "insertAll"},
      {"press": "ok"} ]})");
  GuiFixture& gui = session.gui;
  const std::string project = session.path("project.db");
  REQUIRE(session.site.run({"import", project, "tests/site/sessions/takeover/project"}).exitCode == 0);
  CHECK_FALSE(gui.window.projects().open(QStringLiteral("README.md")));
  REQUIRE(gui.window.files().open(QStringLiteral("tests/site/golden/feed2.json")));
  REQUIRE(gui.window.projects().open(QString::fromStdString(project)));
  CHECK(gui.window.windowTitle().contains(QStringLiteral("project")));
  const auto records = [&](const char* table) {
    return session.site
        .run({"sql", project, "SELECT * FROM [" + std::string(table) + "] ORDER BY HDL", "--csv"})
        .output;
  };
  const auto all = [&] { return records("BRENVOLT") + records("COMP") + records("TERMS"); };
  const std::string before = all();
  const std::uint64_t saved = gui.drawing().undoLog().changeCount();
  const Watch place([&] {
    if (gui.window.picks().prompt().isEmpty()) return false;
    gui.click(100, 10);
    return true;
  });
  session.trigger(HostText::newCircuit);
  CHECK(gui.drawing().undoLog().changeCount() != saved);
  const std::string placed = all();
  CHECK(placed != before);
  CHECK(placed.find("CB3-040") != std::string::npos);
  session.trigger(HostText::undo);
  CHECK(all() == before);
  session.trigger(HostText::redo);
  CHECK(all() == placed);
  session.replay("");
}

TEST_CASE(
    "a window that is closed in the middle of an insertion run takes the circuit back, also in a replay") {
  RecordedWindow session(R"(
    {"dialog": "ZanDlgCircuit", "do": [
      {"select": "circuits", "path": ["Three-phase motors", "Direct on line"]}, {"press": "configure"} ]},
    {"dialog": "ZanDlgConfig", "do": [ {"press": "insertAll"} ]})");
  GuiFixture& gui = session.gui;
  session.type("(draw-circle '(50 25) 10)");
  const Watch place([&] {
    if (gui.window.picks().prompt().isEmpty()) return false;
    gui.click(50, 17);
    return true;
  });
  std::uint64_t before = 0; // changes of the drawing before the run
  bool hasLeft = false;
  const Watch leave([&] {
    const std::uint64_t now = gui.drawing().undoLog().changeCount();
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window->objectName() != QStringLiteral("ZanDlgConfig")) continue;
      if (before == 0 || window->isVisible()) before = now;
      if (now < before + 20) return false;
      window->close(); // hidden while the circuit grows: it is not there to be closed
      CHECK(gui.window.runner().isBusy());
      gui.window.close();
      return hasLeft = true;
    }
    return false;
  });
  const Watch unsaved([&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr) return false;
    for (QAbstractButton* button : box->buttons())
      if (button->text() == gui.texts(HostText::discard)) button->click();
    return true;
  });
  session.trigger(HostText::newCircuit);
  CHECK(hasLeft);
  CHECK(session.itemCount() == 1);
  QTest::qWait(50);
  CHECK_FALSE(gui.window.isVisible());
  session.replay("brenvolt: as recorded: the run was cancelled\n");
}
