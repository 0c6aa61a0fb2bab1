// The main window over the sample site: commands that place circuits, and those that open dialogs of the plug-in.
#include "gui_fixture.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/gui/site_circuits.h"
#include "simhost/site/saved_configurations.h"
#include "tests/simhost_qt/piloted_windows.h"
#include "tests/site/site_tool.h"
#include "text/encoding.h"

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QTest>
#include <QTreeWidget>
#include <QWindow>

#include <doctest/doctest.h>

#include <algorithm>

using namespace simhost;

TEST_CASE("a saved configuration is found in the table and placed by keys, and the next circuit is proposed "
          "beside it") {
  const std::vector<brenvolt::SavedConfiguration> saved = savedConfigurations("site").saved;
  REQUIRE(saved.size() >= 5);
  const auto pump = std::find_if(saved.begin(), saved.end(), [](const brenvolt::SavedConfiguration& row) {
    return row.key.name == L"Pump 10 HP";
  });
  REQUIRE(pump != saved.end());
  CHECK(pump->key.circuit == L"Three-phase motors");
  CHECK(pump->worksheet == L"M3_DOL");

  GuiFixture gui({}, "en", "site");
  const Watch choose([&] {
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    auto* table =
        dialog == nullptr ? nullptr : dialog->findChild<QTreeWidget*>(QStringLiteral("configurationTable"));
    if (table == nullptr) return false;
    CHECK(table->topLevelItemCount() == static_cast<int>(saved.size()));
    constexpr int load = 1;
    table->sortByColumn(load, Qt::AscendingOrder);
    QStringList loads;
    for (int row = 0; row < table->topLevelItemCount(); ++row)
      loads.append(table->topLevelItem(row)->text(load));
    CHECK(loads.indexOf(QStringLiteral("5 HP")) < loads.indexOf(QStringLiteral("15 kW"))); // as numbers
    auto* search = dialog->findChild<QLineEdit*>(QStringLiteral("search"));
    search->setText(QStringLiteral("pump 10 direct"));
    QTest::keyClick(search, Qt::Key_Return);
    REQUIRE(table->currentItem() != nullptr);
    CHECK(table->currentItem()->text(0) == QStringLiteral("Pump 10 HP"));
    dialog->accept();
    return true;
  });
  const Watch place([&] {
    if (gui.window.picks().prompt().isEmpty()) return false;
    CHECK_FALSE(gui.window.action(HostText::newCircuit).isEnabled());
    for (const char letter : std::string("20,-5.5"))
      QTest::keyClick(gui.window.windowHandle(), letter);
    gui.key(Qt::Key_Return);
    return true;
  });
  gui.window.action(HostText::buildFromHistory).trigger();
  INFO(gui.window.status().text().toStdString());
  REQUIRE(gui.window.view().scene().items().size() > 50);
  // The view shows the new circuit, and the next one is proposed in a row with it.
  CHECK(gui.window.view().rect().contains(gui.pixel(120.0, -5.5)));
  const auto keys = [&gui](std::initializer_list<Qt::Key> pressed) {
    for (const Qt::Key key : pressed)
      gui.key(key);
  };
  KvPoint3d proposed;
  later([&] {
    proposed = gui.window.view().place().point();
    CHECK_FALSE(gui.window.view().place().overlaps(proposed));
    CHECK(gui.window.view().place().overlaps({20.0, -5.5, 0.0}));
    keys({Qt::Key_Down, Qt::Key_Right, Qt::Key_Return});
  });
  const std::optional<KvPoint3d> next =
      gui.window.placing().pickPlace(QStringLiteral("Where?"), Box{0.0, -30.0, 150.0, 20.0});
  REQUIRE(next);
  CHECK(proposed.y == -5.5);
  CHECK(proposed.x > 100.0);
  CHECK(next->x == proposed.x + 5.0);
  CHECK(next->y == -10.5);
  // And a component is picked by keys.
  const Watch pick([&] {
    if (gui.window.picks().prompt().isEmpty()) return false;
    keys({Qt::Key_Right, Qt::Key_Right, Qt::Key_Return});
    return true;
  });
  CHECK_FALSE(gui.run(L"(pick-entity \"Which?\")").value.isNil());
}

TEST_CASE(
    "the finished circuit is drawn in the background, and what the worksheet says of its groups is known") {
  GuiFixture gui({}, "en", "site");
  UnitMarkers units(gui.site, gui.windows);
  SiteCircuits circuits(gui.site, gui.windows, units, gui.texts);
  using State = CircuitFacts::Picture::State;
  const auto pictureOf = [&circuits](const OfferedCircuit& circuit) {
    bool isReady = false;
    const CircuitFacts::Picture first = circuits.picture(circuit, [&isReady] { isReady = true; });
    CHECK(first.state == State::making);
    constexpr int longest = 60'000;
    CHECK(QTest::qWaitFor([&isReady] { return isReady; }, longest));
    return circuits.picture(circuit, {});
  };
  const OfferedCircuit pump{L"Three-phase motors", L"Direct on line", L"Pump 10 HP"};
  const CircuitFacts::Picture made = pictureOf(pump);
  REQUIRE(made.state == State::made);
  CHECK(loadDrawing(made.drawing).drawing->store().circuits().size() == 1);
  CHECK(circuits.picture(pump, {}).drawing == made.drawing);
  const CircuitFacts::Picture none = pictureOf({L"Three-phase motors", L"No such type", L""});
  CHECK(none.state == State::failed);
  CHECK(none.note.contains(QStringLiteral("No such type")));

  CHECK(circuits.configurations(pump).contains(QStringLiteral("Pump 10 HP")));
  const auto fuses = [&](const char* group) {
    return circuits.onlyWith(pump, QStringLiteral("Disconnecting means"), QString::fromLatin1(group));
  };
  CHECK(fuses("Fuses") == QStringList{QStringLiteral("Fusible switch")});
  CHECK(fuses("Disconnecting means").isEmpty());
}

TEST_CASE("a motor is picked from the drawing while the dialog that asks lies above another one") {
  const brenvolt::SiteCopy site;
  GuiFixture gui({}, "en", site.site());
  test::StepPilot pilot(gui.windows, R"(
        {"dialog": "ZanDlgCircuit", "do": [
          {"select": "circuits", "path": ["Three-phase motors", "Direct on line"]}, {"press": "configure"} ]},
        {"dialog": "ZanDlgConfig", "do": [
          {"select": "units", "path": ["Motor and wires"]}, {"press": "settings/Motor", "button": 0} ]},
        {"dialog": "ZanDlgMotorSelect", "do": [
          {"press": "pick"}, {"expect": "total", "text": "17.5"}, {"press": "ok"} ]},
        {"dialog": "ZanDlgConfig", "do": [
          {"expect": "settings/Motor", "row": "Load", "texts": ["Load", "10"]}, {"press": "cancel"} ]},
        {"dialog": "ZanBrenvolt.CircuitConfigurationCancel", "do": [ {"press": 6} ]})");
  gui.run(L"(draw-line '(0 0) '(0 100))"); // something to fit the view to
  REQUIRE_MESSAGE(gui.buildPump().kind == CommandOutcome::Kind::done, "the pump");
  const std::size_t before = gui.window.view().scene().items().size();
  int picks = 0;
  QElapsedTimer waiting;
  waiting.start();
  const Watch hands([&] {
    if (gui.window.picks().prompt().isEmpty()) return false;
    constexpr int patience = 60'000;
    if (waiting.elapsed() > patience) { // blocked by a dialog: nothing that a person does would end it
      gui.window.close();
      return true;
    }
    const bool isPlace = picks == 0;
    const QString prompt = gui.window.picks().prompt();
    if (isPlace)
      gui.click(50, 50);
    else
      gui.click(160, -10); // the rim of the motor
    if (gui.window.picks().prompt() == prompt) return false;
    return ++picks == 2;
  });
  gui.window.action(HostText::newCircuit).trigger();
  INFO(gui.window.status().text().toStdString());
  CHECK(picks == 2);
  CHECK_FALSE(pilot.steps().hasFailed());
  CHECK(pilot.steps().unused() == 0);
  CHECK(gui.window.view().scene().items().size() == before);
}

TEST_CASE("another wire size is applied to the selected motor's circuit, and taken back as one step") {
  const brenvolt::SiteCopy site;
  GuiFixture gui({}, "en", site.site());
  REQUIRE(gui.window.files().open(QStringLiteral("tests/site/golden/motor3_two.json")));
  test::StepPilot pilot(gui.windows, R"(
        {"dialog": "ZanDlgWireSelect", "do": [
          {"set": "current", "to": "45"}, {"select": "grid", "row": 6}, {"press": "ok"} ]})");
  const auto wires = [&] {
    std::map<std::wstring, int> count;
    const Scene& scene = gui.window.view().scene();
    for (const DisplayItem& item : scene.items())
      ++count[scene.layerNames()[item.layer]];
    return count;
  };
  // A size text as a set writes it, on a wire of the motor.
  gui.run(
      L"(setq m (find-if (lambda (e) (entity-data e \"ORL_QN_BV_CIRCPARAMS\")) (entities-in-space))"
      L"      w (find-if (lambda (e) (equal (entity-get e 'layer) \"BLK_10AWG\")) (lines-on (wire-layers))))"
      L"(site-label-net \"\" nil (entity-get w 'from) T \"BLK\" \"10AWG\" nil)");
  const auto texts = [&] {
    const CommandOutcome shown =
        gui.run(L"(format nil \"~A, ~A, ~S, ~A\" (entity-get (entity-last) 'text)"
                L" (sublist (string-split (car (entity-data m \"ORL_QN_BV_CIRCPARAMS\")) \";\") 7 9)"
                L" (recorded-wires m)"
                L" (length (remove-if-not (lambda (e) (and (equal (entity-get e 'kind) \"text\")"
                L"   (string-search \"FLA 45 A\" (entity-get e 'text)))) (entities-in-space))))");
    return brenvolt::toUtf8(shown.value.asString());
  };
  const std::string textsBefore = texts();
  const std::map<std::wstring, int> before = wires();
  REQUIRE(before.at(L"BLK_10AWG") == 15);
  const CommandOutcome handle = gui.run(L"(entity-handle m)");
  gui.window.view().marks().select(parseHandle(handle.value.asString()));
  gui.window.action(HostText::editWireSize).trigger();
  // The grounding conductor is sized for the same current, by the rule of the lookup.
  CHECK_EQ(
      gui.window.status().text().toStdString(),
      "MTR1A: 10 AWG -> 4 AWG, PE 10 AWG -> 6 AWG, 15 wires, CB1A 35A -> 125A, 1MA SIZE 1 -> SIZE 3, "
      "1OLA 10-18A -> 40-65A");
  // Record and texts too: the next lookup begins where this one ended.
  CHECK_EQ(
      texts(),
      R"(BLK 4AWG, (45 1.25), (("4AWG" "BLK_4AWG" "1") ("4AWG" "BLK_4AWG" "1") ("4AWG" "BLK_4AWG" "1") )"
      R"(("6AWG" "GRN_6AWG" "3")), 1)");
  CHECK(pilot.steps().unused() == 0);
  std::map<std::wstring, int> after = wires();
  CHECK(after[L"BLK_10AWG"] == 0);
  CHECK(after[L"GRN_10AWG"] == before.at(L"GRN_10AWG") - 2);
  CHECK(after[L"BLK_14AWG"] == before.at(L"BLK_14AWG")); // the other motor
  CHECK(after[L"BLK_6AWG"] == before.at(L"BLK_6AWG"));   // the feeder
  gui.window.action(HostText::undo).trigger();
  CHECK_EQ(texts(), textsBefore);
  CHECK(wires() == before);
}
