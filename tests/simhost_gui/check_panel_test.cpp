// The check of a site in the main window: what it finds is listed, filtered and opened, and it is offered when it is due.
#include "gui_fixture.h"
#include "simhost/gui/check_panel.h"
#include "simhost/host/files.h"
#include "tests/site/site_tool.h"

#include <QComboBox>
#include <QTest>
#include <QToolButton>
#include <QTreeWidget>

#include <doctest/doctest.h>

using namespace simhost;

namespace {

/// The small site of the check's own tests, with a text drawn over another one.
class SmallSite final {
public:
  SmallSite() {
    std::filesystem::copy("tests/check/base", path(), std::filesystem::copy_options::recursive);
    REQUIRE(folder_.run({"workbook", "pack", path("workbook"), path("zan_brenvolt.xls")}).exitCode == 0);
    move("[0,40]", "[0,30]");
  }
  [[nodiscard]] std::string path(const std::string& name = {}) const { return folder_.path("site/" + name); }
  /// A marker of the template.
  void move(const std::string& from, const std::string& to) const {
    std::string text = folder_.read("site/templates/main.json");
    const std::string place = "\"position\":";
    REQUIRE(text.find(place + from) != std::string::npos);
    folder_.write(
        "site/templates/main.json", text.replace(text.find(place + from), (place + from).size(), place + to));
  }
  [[nodiscard]] std::string settings() const { return folder_.path("settings.json"); }

private:
  brenvolt::ToolFolder folder_;
};

template <typename Widget>
Widget& part(GuiFixture& gui, const char* name) {
  auto* widget = gui.window.findChild<Widget*>(QLatin1String(name));
  REQUIRE(widget != nullptr);
  return *widget;
}

void check(GuiFixture& gui) {
  bool isDone = false;
  auto* panel = static_cast<CheckPanel*>(&part<QWidget>(gui, "check"));
  const auto noteDone = panel->onDone;
  panel->onDone = [&isDone, &noteDone](bool isClean) {
    noteDone(isClean);
    isDone = true;
  };
  gui.window.action(HostText::checkSite).trigger();
  CHECK(QTest::qWaitFor([&isDone] { return isDone; }, 120'000));
  panel->onDone = noteDone;
}

} // namespace

TEST_CASE("findings are filtered by severity and rule, and a double click or Enter opens the place") {
  needApplication();
  const HostTexts texts(defaultResourceFolder(), "en");
  CheckPanel panel(texts, {}, {});
  CHECK_FALSE(panel.showFindings("no JSON"));
  REQUIRE(panel.showFindings(R"({"findings": [
    {"severity": "error", "rule": "a", "place": "w.xls, row 2", "file": "w.xls", "what": "A.", "remedy": "B."},
    {"severity": "note", "rule": "b", "place": "t.json", "file": "t.json", "position": [1, 2.5]},
    {"severity": "note", "rule": "c", "place": "u.json", "file": "u.json"}]})"));
  auto& severity = *panel.findChild<QComboBox*>(QStringLiteral("checkSeverity"));
  auto& rule = *panel.findChild<QComboBox*>(QStringLiteral("checkRule"));
  CHECK(panel.shown().size() == 3);
  severity.setCurrentIndex(severity.findData(QStringLiteral("note")));
  CHECK(panel.shown().size() == 2);
  rule.setCurrentIndex(rule.findData(QStringLiteral("b")));
  REQUIRE(panel.shown().size() == 1);
  SiteFinding opened;
  panel.onOpen = [&opened](const SiteFinding& finding) { opened = finding; };
  auto& table = *panel.findChild<QTreeWidget*>(QStringLiteral("checkTable"));
  table.setCurrentItem(table.topLevelItem(0));
  emit table.itemActivated(table.currentItem(), 0);
  CHECK(opened.file == QStringLiteral("t.json"));
  CHECK(opened.position == QPointF(1, 2.5));
}

TEST_CASE("the check is offered until the site is found clean as it is") {
  const SmallSite site;
  {
    GuiFixture gui(site.settings(), "en", site.path());
    CHECK_FALSE(part<QToolButton>(gui, "offerCheck").isHidden());
    check(gui);
    auto& table = part<QTreeWidget>(gui, "checkTable");
    REQUIRE(table.topLevelItemCount() == 1);
    CHECK(table.topLevelItem(0)->text(4) == QStringLiteral("run-texts-overlap"));
    CHECK(part<QToolButton>(gui, "offerCheck").isHidden());
    table.setCurrentItem(table.topLevelItem(0));
    emit table.itemActivated(table.currentItem(), 0);
    CHECK(gui.window.windowTitle().startsWith(QStringLiteral("main.json")));
    CHECK(gui.window.status().text().startsWith(QStringLiteral("templates/main.json, sheet MAIN")));
    site.move("[0,30]", "[0,40]");
    check(gui);
    CHECK(table.topLevelItemCount() == 0);
  }
  {
    GuiFixture gui(site.settings(), "en", site.path());
    CHECK(part<QToolButton>(gui, "offerCheck").isHidden());
  }
  site.move("[0,-80]", "[0,-81]");
  GuiFixture gui(site.settings(), "en", site.path());
  CHECK_FALSE(part<QToolButton>(gui, "offerCheck").isHidden());
}
