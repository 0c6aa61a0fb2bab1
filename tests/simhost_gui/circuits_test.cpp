// Circuits as a user works with them in the main window: the panel, the selection, and commands on a whole circuit.
#include "gui_fixture.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/gui/circuit_panel.h"
#include "simhost/host/files.h"
#include "tests/site/site_tool.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QTreeWidget>
#include <QWindow>

#include <doctest/doctest.h>

using namespace simhost;

namespace {

/// Two pumps beside each other, and a line that no build drew.
struct TwoPumps {
  brenvolt::SiteCopy site;
  GuiFixture gui{{}, "en", site.site()};
  GuiFolder folder;

  TwoPumps() {
    for (const wchar_t* x : {L"0", L"300"}) {
      const std::wstring form =
          std::wstring(
              L"(site-build \"templates/motor3_dol.json\" (find-file \"zan_brenvolt.xls\") \"M3_DOL\""
              L" \"Three-phase motors\" \"Direct on line\" \"Pump 10 HP\" '(") +
          x + L" 0 0) \"\" \"\" \"\")";
      REQUIRE(gui.run(form).kind == CommandOutcome::Kind::done);
    }
    gui.run(L"(draw-line '(0 -200) '(100 -200))");
    gui.window.view().zoomExtents();
  }

  QTreeWidget& table() { return *gui.window.findChild<QTreeWidget*>(QStringLiteral("circuitTable")); }
  [[nodiscard]] QString cell(int row, CircuitColumn column) {
    return table().topLevelItem(row)->text(static_cast<int>(column));
  }
  std::string drawingText() {
    const std::string file = folder.path("shown.json");
    REQUIRE(!saveDrawing(gui.drawing(), std::wstring(file.begin(), file.end())));
    std::string text = readFile(file).value();
    // Handles are never given twice, so the next one goes on even where everything is as it was.
    const std::size_t next = text.find("\"nextHandle\"");
    REQUIRE(next != std::string::npos);
    return text.erase(next, text.find(',', next) - next);
  }
  void selectRow(int row) { table().setCurrentItem(table().topLevelItem(row)); }
  void trigger(HostText command) { gui.window.action(command).trigger(); }
};

} // namespace

TEST_CASE(
    "the panel lists the circuits, finds them as one types, and goes with the selection in the drawing") {
  TwoPumps pumps;
  QTreeWidget& table = pumps.table();
  REQUIRE(table.topLevelItemCount() == 2);
  CHECK(pumps.cell(0, CircuitColumn::type) == QStringLiteral("Three-phase motors, Direct on line"));
  CHECK(pumps.cell(0, CircuitColumn::load) == QStringLiteral("10 HP, 460 V"));
  CHECK(pumps.cell(0, CircuitColumn::wire).startsWith(QStringLiteral("10AWG")));
  CHECK(pumps.cell(0, CircuitColumn::state) == QStringLiteral("Built"));
  CHECK(pumps.cell(0, CircuitColumn::tag) != pumps.cell(1, CircuitColumn::tag));

  pumps.gui.window.action(HostText::findCircuit).trigger();
  auto* search = pumps.gui.window.findChild<QLineEdit*>(QStringLiteral("circuitSearch"));
  const QString tag = pumps.cell(1, CircuitColumn::tag);
  for (const QChar letter : QStringLiteral("10 hp ") + tag)
    QTest::keyClick(pumps.gui.window.windowHandle(), letter.toLatin1());
  CHECK(search->text() == QStringLiteral("10 hp ") + tag);
  CHECK(table.topLevelItem(0)->isHidden());
  CHECK_FALSE(table.topLevelItem(1)->isHidden());
  // Enter goes from what was typed to what was found, which is selected and seen.
  pumps.gui.key(Qt::Key_Return);
  const std::wstring second = pumps.gui.window.selectedCircuit();
  CHECK(second == pumps.gui.window.circuitPanel().selected());
  CHECK_FALSE(second.empty());
  CHECK(pumps.gui.window.view().group().size() > 20);
  search->clear();

  // A click on any entity selects its circuit; on what was drawn by hand, none.
  pumps.gui.window.view().zoomExtents();
  pumps.gui.click(160, -10); // the rim of the first motor
  CHECK_FALSE(pumps.gui.window.selectedCircuit().empty());
  CHECK(pumps.gui.window.selectedCircuit() != second);
  CHECK(table.currentItem() == table.topLevelItem(0));
  CHECK(pumps.gui.window.status().startsWith(QStringLiteral("MTR1, 10 HP")));
  pumps.gui.click(50, -200);
  CHECK(pumps.gui.window.selectedCircuit().empty());
  CHECK(pumps.gui.window.view().group().empty());
}

TEST_CASE("a circuit is moved, deleted and copied as a whole, each one step of undo") {
  TwoPumps pumps;
  const std::string before = pumps.drawingText();
  const auto undoTo = [&](const std::string& text) {
    pumps.trigger(HostText::undo);
    CHECK(bool(pumps.drawingText() == text));
  };
  pumps.selectRow(1);
  const std::wstring id = pumps.gui.window.selectedCircuit();
  const Watch place([&] {
    if (pumps.gui.window.pickPrompt().isEmpty()) return false;
    CHECK_FALSE(pumps.gui.window.view().overlaps({305, 0, 0})); // it may lie where it was
    for (const char letter : std::string("300,-500"))
      QTest::keyClick(pumps.gui.window.windowHandle(), letter);
    pumps.gui.key(Qt::Key_Return);
    return true;
  });
  pumps.trigger(HostText::moveCircuit);
  CHECK(pumps.gui.window.selectedCircuit() == id);
  CHECK(circuitField(pumps.gui.drawing().store().circuits().at(id), L"point") == L"300,-500,0");
  CHECK(pumps.gui.window.view().scene().extents().bottom < -500.0);
  undoTo(before);

  // Without a selection the command asks, and says why something is none.
  pumps.gui.window.view().zoomExtents();
  pumps.gui.click(50, -200);
  int clicks = 0;
  const Watch pick([&] {
    if (pumps.gui.window.pickPrompt().isEmpty()) return false;
    if (clicks++ == 0) {
      pumps.gui.click(50, -200);
      return false;
    }
    CHECK(pumps.gui.window.status() == pumps.gui.texts(HostText::noCircuitThere));
    pumps.gui.click(160, -10);
    return true;
  });
  pumps.trigger(HostText::deleteCircuit);
  CHECK(pumps.table().topLevelItemCount() == 1);
  undoTo(before);
  CHECK(pumps.table().topLevelItemCount() == 2);

  pumps.selectRow(0);
  const Watch beside([&] {
    if (pumps.gui.window.pickPrompt().isEmpty()) return false;
    pumps.gui.key(Qt::Key_Return);
    return true;
  });
  pumps.trigger(HostText::copyCircuit);
  CAPTURE(pumps.gui.window.status().toStdString());
  REQUIRE(pumps.table().topLevelItemCount() == 3);
  for (int row = 0; row < 3; ++row)
    CHECK(pumps.cell(row, CircuitColumn::state) == QStringLiteral("Built")); // no tag is there twice
  CHECK(pumps.cell(2, CircuitColumn::load) == pumps.cell(0, CircuitColumn::load));
  CHECK(pumps.cell(2, CircuitColumn::wire) == pumps.cell(0, CircuitColumn::wire));
  undoTo(before);
}
