// Circuits as a user works with them in the main window: the panel, the selection, and commands on a whole circuit.
#include "circuits/reports/circuit_summary.h"
#include "gui_fixture.h"
#include "simhost/gui/circuit_panel.h"
#include "simhost/gui/circuit_rows.h"
#include "simhost/host/files.h"
#include "simhost/site/saved_configurations.h"
#include "tests/simhost_qt/piloted_windows.h"
#include "tests/site/site_tool.h"
#include "text/encoding.h"

#include <QApplication>
#include <QDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QTreeWidget>
#include <QWindow>

#include <doctest/doctest.h>

#include <algorithm>
#include <filesystem>

using namespace simhost;

namespace {

/// Two pumps beside each other, and a line that no build drew.
struct TwoPumps {
  brenvolt::SiteCopy site;
  GuiFixture gui{{}, "en", site.site()};

  TwoPumps() {
    for (const wchar_t* place : {L"0 0 0", L"300 0 0"})
      REQUIRE(gui.buildPump(place).kind == CommandOutcome::Kind::done);
    gui.run(L"(draw-line '(0 -200) '(100 -200))");
    gui.window.view().port().fit();
  }

  QTreeWidget& table() { return *gui.window.findChild<QTreeWidget*>(QStringLiteral("circuitTable")); }
  [[nodiscard]] QString cell(int row, CircuitColumn column) {
    return table().topLevelItem(row)->text(static_cast<int>(column));
  }
  void selectRow(int row) { table().setCurrentItem(table().topLevelItem(row)); }
  void trigger(HostText command) { gui.window.action(command).trigger(); }
};

/// Answers a message box by the words of a button.
Watch pressing(GuiFixture& gui, HostText words, bool& isAsked) {
  return Watch([&gui, words, &isAsked] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr) return false;
    isAsked = true;
    for (QAbstractButton* button : box->buttons())
      if (button->text() == gui.texts(words)) {
        // What costs work is never what Enter does.
        CHECK(box->defaultButton() != button);
        button->click();
      }
    return true;
  });
}

} // namespace

TEST_CASE("a circuit is moved and deleted as a whole, each one step of undo") {
  TwoPumps pumps;
  const std::string before = pumps.gui.shownText();
  const auto undoTo = [&](const std::string& text) {
    pumps.trigger(HostText::undo);
    CHECK(bool(pumps.gui.shownText() == text));
  };
  pumps.selectRow(1);
  const std::wstring id = pumps.gui.window.circuits().id();
  const Watch place([&] {
    if (pumps.gui.window.picks().prompt().isEmpty()) return false;
    CHECK_FALSE(pumps.gui.window.view().place().overlaps({305, 0, 0})); // it may lie where it was
    for (const char letter : std::string("300,-500"))
      QTest::keyClick(pumps.gui.window.windowHandle(), letter);
    pumps.gui.key(Qt::Key_Return);
    return true;
  });
  pumps.trigger(HostText::moveCircuit);
  CHECK(pumps.gui.window.circuits().id() == id);
  CHECK(circuitField(pumps.gui.drawing().store().circuits().at(id), L"point") == L"300,-500,0");
  CHECK(pumps.gui.window.view().scene().extents().bottom < -500.0);
  undoTo(before);

  // Without a selection the command asks, and says why something is none.
  pumps.gui.window.view().port().fit();
  pumps.gui.click(50, -200);
  int clicks = 0;
  const Watch pick([&] {
    if (pumps.gui.window.picks().prompt().isEmpty()) return false;
    if (clicks++ == 0) {
      pumps.gui.click(50, -200);
      return false;
    }
    CHECK(pumps.gui.window.status().text() == pumps.gui.texts(HostText::noCircuitThere));
    pumps.gui.click(160, -10);
    return true;
  });
  pumps.trigger(HostText::deleteCircuit);
  CHECK(pumps.table().topLevelItemCount() == 1);
  undoTo(before);
  CHECK(pumps.table().topLevelItemCount() == 2);
}

TEST_CASE("a circuit is out of date when its configuration has another motor, the second too") {
  const GuiFixture gui;
  circuits::CircuitObject circuit;
  circuit.fields = {{L"circuit", L"Motors"}, {L"type", L"Two"}, {L"configuration", L"Pumps"}};
  for (const wchar_t* load : {L"10", L"5"})
    circuit.loads.push_back(
        {load, std::wstring(L"Induction;") + load + L";HP", L"((\"10AWG\" \"BLK\" \"1\"))", {}});
  for (const auto& [second, state] : {std::pair{L"5", "Built"}, {L"7.5", "Out of date"}}) {
    const brenvolt::SavedConfiguration saved{{L"Motors", L"Two", L"Pumps"}, {}, {}};
    const SiteConfigurations site{
        {}, {saved}, {{{{L"Induction", second, L"HP"}, {}}, {{L"Induction", L"10", L"HP"}, {}}}}, {saved}};
    const auto rows = circuitRows({circuit}, {}, &site, gui.texts);
    CHECK(rows.front().cells.back() == QString::fromLatin1(state));
  }
}

TEST_CASE("a copy has scale and choices that the drawing keeps of each motor, with tags of its own") {
  brenvolt::SiteCopy site;
  GuiFixture gui{{}, "en", site.site()};
  const CommandOutcome built = gui.run(
      L"(progn (set-variable \"SITE_TAG\" \"P-1\") (set-variable \"SITE_LOC\" \"Hall\")"
      L" (site-build \"templates/motor3_two.json\" (find-file \"zan_brenvolt.xls\") \"M3_DUO\""
      L" \"Three-phase motors\" \"Two motors, one feeder\" \"Two pumps 10 and 5 HP\" '(0 0 0) \"\" \"\" \"\")"
      L" (set-variable \"SITE_TAG\" \"P-2\") (set-variable \"SITE_LOC\" \"Yard\"))");
  REQUIRE(built.kind == CommandOutcome::Kind::done);
  std::filesystem::remove(site.folder().path("site/zan_brenvolt.xml"));
  gui.run(L"(setq GBL_qn_bv_data (append (sublist GBL_qn_bv_data 0 2) '(0.5) (nthcdr 3 GBL_qn_bv_data)))");
  gui.window.circuits().select(circuits::circuitsOf(gui.drawing()).front().id);
  const Watch place([&] {
    if (gui.window.picks().prompt().isEmpty()) return false;
    gui.key(Qt::Key_Return);
    return true;
  });
  gui.window.action(HostText::copyCircuit).trigger();
  CAPTURE(gui.window.status().text().toStdString());
  const auto made = circuits::circuitsOf(gui.drawing());
  REQUIRE(made.size() == 2);
  REQUIRE(made[1].loads.size() == 2);
  CHECK(made[0].loads[0].params != made[0].loads[1].params);
  for (const std::size_t motor : {0U, 1U}) {
    CHECK(made[1].loads[motor].params == made[0].loads[motor].params);
    CHECK(made[1].loads[motor].wires == made[0].loads[motor].wires);
    CHECK(made[1].loads[motor].tag != made[0].loads[motor].tag);
  }
  CHECK(made[1].extents.height() == doctest::Approx(made[0].extents.height()));
  for (const circuits::CircuitSummary& copied : circuits::summariesOf(made))
    CHECK(copied.findings.empty()); // no tag is there twice
  CHECK(circuitField(made[1].fields, L"SITE_LOC") == L"Hall");
  CHECK(circuitField(made[1].fields, L"SITE_CIRCUIT") == L"2");
  CHECK(circuitField(made[1].fields, L"SITE_TAG").empty());
  CHECK(std::get<std::wstring>(*gui.drawing().variable(L"SITE_TAG")) == L"P-2");
  CHECK(std::get<std::wstring>(*gui.drawing().variable(L"SITE_LOC")) == L"Yard");
  gui.window.action(HostText::undo).trigger();
  CHECK(circuits::circuitsOf(gui.drawing()).size() == 1);
}

namespace {

/// Opens the configuration of the selected circuit and answers it with these steps of an answer file. Whether the program
/// asks first about manual changes.
bool configure(GuiFixture& gui, const std::string& steps) {
  test::StepPilot pilot(gui.windows, steps);
  bool isAsked = false;
  const Watch answer = pressing(gui, HostText::rebuild, isAsked);
  gui.window.action(HostText::configureCircuit).trigger();
  CHECK_MESSAGE(!pilot.steps().hasFailed(), pilot.steps().failure());
  CHECK(pilot.steps().unused() == 0);
  return isAsked;
}

/// The entities without their handles, in no order: what a user sees. Contacts of one device get different numbers when
/// a circuit is built again, so these are left out.
QStringList shapes(const std::string& drawing) {
  static const QRegularExpression unseen(
      QStringLiteral("\"(handle|block)\":\"[0-9A-F]+\",?|,$|(?<=\"tag\":\"X[0-9]TERM0[0-9]\",)[^}]*"));
  QStringList lines;
  for (QString line : QString::fromStdString(drawing).split(QLatin1Char('\n')))
    if (line.startsWith(QStringLiteral("{\"handle\"")) && line.contains(QStringLiteral("\"kind\"")))
      lines.append(line.remove(unseen));
  lines.sort();
  return lines;
}

} // namespace

TEST_CASE("every circuit of the site is configured in its place, several motors too") {
  brenvolt::SiteCopy site;
  GuiFixture gui{{}, "en", site.site()};
  auto* table = gui.window.findChild<QTreeWidget*>(QStringLiteral("circuitTable"));
  const auto saved = savedConfigurations(site.site()).saved;
  REQUIRE(saved.size() >= 8);
  for (std::size_t place = 0; place < saved.size(); ++place) {
    const brenvolt::SavedConfiguration& row = saved[place];
    CAPTURE(brenvolt::toUtf8(row.key.name));
    std::wstring form = L"(site-build \"" + row.drawingTemplate + L"\" (find-file \"zan_brenvolt.xls\")";
    for (const std::wstring& text : {row.worksheet, row.key.circuit, row.key.type, row.key.name})
      form += L" \"" + text + L"\"";
    form += L" '(0 " + std::to_wstring(-600 * static_cast<int>(place)) + L" 0) \"\" \"\" \"\")";
    REQUIRE(gui.run(form).kind == CommandOutcome::Kind::done);
    table->setCurrentItem(table->topLevelItem(static_cast<int>(place)));
    const std::wstring id = gui.window.circuits().id();
    const std::string before = gui.shownText();
    CHECK_FALSE(configure(gui, R"({"dialog": "ZanDlgConfig", "do": [ {"press": "cancel"} ]},
                          {"dialog": "ZanBrenvolt.CircuitConfigurationCancel", "do": [ {"press": 6} ]})"));
    CHECK(bool(shapes(gui.shownText()) == shapes(before)));
    // OK inserts what waits: nothing of a circuit that is there is left out.
    CHECK_FALSE(configure(gui, R"({"dialog": "ZanDlgConfig", "do": [ {"press": "ok"} ]},
                          {"dialog": "ZanBrenvolt.DuplicateCircuitName", "do": [ {"press": 1002} ]})"));
    CAPTURE(gui.window.status().text().toStdString());
    CHECK(gui.window.circuits().id() == id);
    CHECK(bool(shapes(gui.shownText()) == shapes(before)));
    gui.window.action(HostText::undo).trigger();
    CHECK(bool(shapes(gui.shownText()) == shapes(before)));
    gui.window.action(HostText::redo).trigger();
  }
  // What the dialogs saved is among the site's saved configurations, beside those that were there.
  CHECK(savedConfigurations(site.site()).saved.size() == 2 * saved.size());
}

TEST_CASE("the configuration shows what the drawing has, and what is saved of it is built alike") {
  TwoPumps pumps;
  pumps.selectRow(0);
  // Another size than that of the configuration that it was built from.
  pumps.gui.run(L"(let ((motor (find-if (lambda (one) (entity-data one \"ORL_QN_BV_CIRCPARAMS\")) "
                L"(entities-in-space))))"
                L" (apply-wire-size motor \"8AWG\" nil))");
  pumps.selectRow(0);
  REQUIRE(pumps.cell(0, CircuitColumn::wire).startsWith(QStringLiteral("8AWG")));
  const Watch name([] {
    auto* box = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
    if (box == nullptr) return false;
    box->setTextValue(QStringLiteral("Thick wires"));
    box->accept();
    return true;
  });
  pumps.gui.run(L"(draw-line '(0 0) '(9 9))");
  pumps.trigger(HostText::undo);
  pumps.selectRow(0);
  const std::string before = pumps.gui.shownText();
  pumps.trigger(HostText::saveConfiguration);
  CAPTURE(pumps.gui.window.status().text().toStdString());
  CHECK(bool(pumps.gui.shownText() == before));
  // What was undone can still be done again.
  CHECK(pumps.gui.window.action(HostText::redo).isEnabled());
  pumps.trigger(HostText::redo);
  CHECK_FALSE(bool(pumps.gui.shownText() == before));
  pumps.trigger(HostText::undo);
  REQUIRE(pumps.gui.buildPump(L"600 0 0", L"Thick wires").kind == CommandOutcome::Kind::done);
  CHECK(pumps.cell(2, CircuitColumn::wire) == pumps.cell(0, CircuitColumn::wire));
  CHECK(pumps.cell(2, CircuitColumn::load) == pumps.cell(0, CircuitColumn::load));

  pumps.selectRow(0);
  CHECK(configure(pumps.gui, R"({"dialog": "ZanDlgConfig", "do": [
                 {"select": "units", "path": ["Motor and wires"]},
                 {"expect": "settings/Wires", "row": "W1 - Size", "texts": ["W1 - Size", "8AWG"]},
                 {"press": "ok"} ]},
               {"dialog": "ZanBrenvolt.DuplicateCircuitName", "do": [ {"press": 1002} ]})"));
  CHECK(pumps.cell(0, CircuitColumn::wire).startsWith(QStringLiteral("8AWG")));

  // Without the workbook none of these can be done, and the reason is not a change of mind.
  REQUIRE(replaceFile(pumps.site.folder().path("site/zan_brenvolt.xls"), "not a workbook").empty());
  for (const HostText command :
       {HostText::configureCircuit, HostText::copyCircuit, HostText::saveConfiguration}) {
    pumps.trigger(command);
    CHECK(pumps.gui.window.status().text().contains(QStringLiteral("zan_brenvolt.xls")));
  }
}

TEST_CASE("the marker of the current unit is lit, and a click on a marker shows its unit") {
  brenvolt::SiteCopy site;
  GuiFixture gui{{}, "en", site.site()};
  DrawingView& view = gui.window.view();
  std::optional<KvDbHandle> lit;
  int step = 0;
  const Watch user([&] {
    if (auto* question = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
      constexpr const char* leaves = "6";
      question->findChild<QAbstractButton*>(QLatin1String(leaves))->click();
      return true;
    }
    QtDialog* dialog = gui.windows.dialogs().beside();
    auto* tree = dialog == nullptr ? nullptr : dialog->frame().findChild<QTreeWidget*>();
    if (tree == nullptr) return false;
    const auto item = [tree](const char* title) {
      return tree->findItems(QString::fromUtf8(title), Qt::MatchExactly | Qt::MatchRecursive).value(0);
    };
    switch (step) {
    case 0:
      tree->setCurrentItem(item("Overload relay"));
      break;
    case 1:
      if (!view.marks().lit()) return false;
      lit = view.marks().lit();
      CHECK(factsOf(gui.drawing(), *lit)->attributes.front().second == L"OL");
      tree->setCurrentItem(item("Contactor"));
      break;
    case 2: {
      if (view.marks().lit() == lit) return false;
      // Nothing of the unit is drawn yet, whatever the circuit before has.
      for (const auto* drawn : dialog->frame().findChildren<QLabel*>(QStringLiteral("drawnByUnit")))
        CHECK_FALSE(drawn->isVisible());
      const KvPoint3d at = std::get<BlockReference>(gui.drawing().find(*lit)->value.shape).position;
      view.port().zoomTo({at.x - 10, at.y - 10, at.x + 10, at.y + 10});
      gui.click(at.x + 1.5, at.y);
      CHECK(tree->currentItem() == item("Overload relay"));
      CHECK(view.marks().lit() == lit);
      break;
    }
    case 3: {
      // Nothing moves away from under the pointer when units come in.
      const auto places = [&] {
        std::vector<QRect> rects;
        for (const auto& each : dialog->views())
          if (each->model().pages() == nullptr)
            rects.emplace_back(each->widget().mapTo(&dialog->frame(), QPoint()), each->widget().size());
        return rects;
      };
      const std::vector<QRect> before = places();
      for (const auto& each : dialog->views())
        if (each->model().role() == L"insertAll") dynamic_cast<QPushButton&>(each->widget()).click();
      QCoreApplication::processEvents();
      CHECK(bool(places() == before));
      break;
    }
    case 4:
      later([dialog] { dialog->frame().close(); }); // its question needs this watch
      break;
    }
    ++step;
    return false;
  });
  gui.buildPump(L"300 0 0");
  gui.buildPump(L"0 0 0", L"");
  CHECK(step == 5);
  CHECK_FALSE(view.marks().lit());
}
