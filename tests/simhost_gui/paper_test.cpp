// The page: which paper, which frame, what its title block says; and the sheets of a set.
#include "gui_fixture.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/gui/paper_output.h"
#include "simhost/host/errors.h"
#include "simhost/host/files.h"

#include <QLineEdit>
#include <QTest>
#include <QTreeWidget>

#include <doctest/doctest.h>

using namespace simhost;

TEST_CASE("a page has the paper, the frame and the texts of its setup, and says what does not fit") {
  GuiFixture gui;
  gui.run(L"(progn (draw-line '(0 0) '(900 0)) (draw-line '(0 0) '(0 90)))");
  PageSetup setup = PageSetup::of(QStringLiteral("A4 portrait 2\nA3\nPUMPS\nJD\nB\n2030-05-06"));
  CHECK(PageSetup::of(setup.text()).text() == setup.text());
  CHECK(PageSetup::of(QStringLiteral("A1 landscape 0")).size == QPageSize::A1); // as earlier releases kept it
  const auto page = [&] {
    return makePage(
        gui.drawing(), setup, "site/frames", QStringLiteral("PLAN"), QStringLiteral("2031-01-02"),
        QStringLiteral("NEC"));
  };
  const PaperPage framed = page();
  CHECK(framed.layout.fullRect(QPageLayout::Millimeter).size().toSize() == QSize(420, 297));
  CHECK(framed.title == QStringLiteral("PUMPS - PLAN"));
  std::string texts = drawingToJson(*framed.frame);
  for (const char* text : {"PUMPS", "PLAN", "JD", "2030-05-06", "NEC"})
    CHECK_MESSAGE(texts.find(text) != std::string::npos, text);
  struct Row {
    double unitsPerMillimetre;
    PageResult result;
  };
  const GuiFolder folder;
  const std::string file = folder.path("page.pdf");
  for (const Row& row : {Row{0.0, PageResult::whole}, {2.0, PageResult::cutOff}, {10.0, PageResult::whole}}) {
    CAPTURE(row.unitsPerMillimetre);
    setup.unitsPerMillimetre = row.unitsPerMillimetre;
    PageResult result = PageResult::notPainted;
    CHECK_FALSE(savePdf(gui.drawing(), std::wstring(file.begin(), file.end()), page(), &result));
    CHECK(result == row.result);
    CHECK(readFile(file).value_or("").find("D:20300506000000") != std::string::npos);
  }
  setup.frame = QStringLiteral("none_such");
  CHECK_THROWS_AS(page(), BadInput);
  // A sheet of a set keeps its own frame.
  gui.drawing().setVariable(L"PAPER_WIDTH", 210.0);
  gui.drawing().setVariable(L"PAPER_HEIGHT", 297.0);
  CHECK(page().isSheet);
  CHECK(page().layout.fullRect(QPageLayout::Millimeter).size().toSize() == QSize(210, 297));
}

TEST_CASE("a set is opened as a list of its sheets, and a sheet is found by a tag") {
  const GuiFolder folder;
  GuiFixture gui;
  gui.run(L"(draw-line '(0 0) '(9 0))");
  for (const char* sheet : {"001.json", "002.json"})
    REQUIRE(gui.window.files().saveTo(QString::fromStdString(folder.path(sheet))));
  const QString file = QString::fromStdString(folder.path("set.json"));
  CHECK_FALSE(gui.window.sets().open(file));
  REQUIRE(replaceFile(file.toStdString(), R"({"format": "brenvolt-set", "title": "PUMPS", "sheets": [
    {"file": "001.json", "circuits": ["P-101", "P-102"]}, {"file": "002.json", "circuits": ["P-201"]}]})")
              .empty());
  REQUIRE(gui.window.sets().open(file));
  CHECK(gui.window.status().text().contains(QStringLiteral("PUMPS")));
  auto* search = gui.window.findChild<QLineEdit*>(QStringLiteral("setSearch"));
  QTest::keyClicks(search, QStringLiteral("p-201"));
  QTest::keyClick(search, Qt::Key_Return);
  QTest::keyClick(gui.window.findChild<QTreeWidget*>(QStringLiteral("setTable")), Qt::Key_Return);
  CHECK(gui.window.windowTitle().contains(QStringLiteral("002.json")));
}
