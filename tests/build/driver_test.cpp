// Whole direct builds: history and presets into the markers, end rows to LISP, markers erased.
#include "build/driver.h"

#include "host/resources.h"
#include "tests/build/build_site.h"
#include "tests/support/engineering_tables.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

using namespace brenvolt;
using test::BuildSite;

namespace {

const std::vector<std::string> sheet = {
    "MOTOR-1|Motor||!MCC_CTRL|One|1|1|(note motor #data)||(used)|Breaker|CB", "||x||Two|2|2|(note two #data)",
    "SWITCH|Switch|||||||||", "|||Part|Yes|1|1|(note part #data)||(used)|Fuse|FU",
    "UNUSED|No rows||||1|(note never)"};
constexpr const char* markers = "(mark \"MOTOR-1\" \"1\") (mark \"unused\" \"2\") (mark \"UNUSED\" \"3\")"
                                "(mark \"ELSE\" \"4\") (mark \"WT01\" \"5\" \"_WIRETYPE=L_@S@;\")"
                                "(mark \"WT01-1\" \"6\" \"_WIRETYPE=M_@S@;\") (mark \"SWITCH\" \"7\")";

bool buildAndFinish(BuildSite& site, ZanBrenvolt& build) {
  const ResourceScope resources;
  site.eval("(setq ran nil)");
  const bool result = build.prepare(BuildKind::direct);
  if (build.needsFinish()) build.finish();
  return result;
}

} // namespace

TEST_CASE("presets bring wires to the control marker and to all behind it") {
  BuildSite site;
  site.writeSheet(sheet);
  site.eval(markers);
  ZanBuildArgs args = site.arguments();
  args.presetText = L"MOTOR-1=1;SWITCH=1";
  args.codeHandleText = L"\"n1\";\"n2\"";
  args.wireText = LR"((("2" "x" "1") ("6" "y" "3")))";
  const auto build = site.prepared(args);
  REQUIRE(build);
  CHECK(buildAndFinish(site, *build));
  constexpr const char* data = "((\"n1\" \"n2\") ((\"2\" \"M_2\" 1) (\"6\" nil 3)))";
  CHECK_EQ(site.eval("ran"), std::string("((\"motor\" ") + data + ") (\"part\" " + data + "))");
  CHECK_EQ(build->state().controlSuffix, L"-1");
}

TEST_CASE("a motor that comes without wire sizes is sized as a build sizes, or what it lacks is reported") {
  const test::EngineeringTables tables;
  struct Row {
    const char* promise;
    const wchar_t* params;
    const wchar_t* wires;
    bool hasTables;
    const char* sizes; ///< that the form at the motor gets
    const char* printed;
    const char* unsized; ///< what the symbol holds afterwards
  };
  const wchar_t* const motor = LR"("Induction";"10";"HP";"460";"3";"60";"1800";"14";"1.25")";
  const Row rows[] = {
      {"14 x 1.25 = 17.5 <= 25 x 0.8; 14 x 2.5 = 35 < 60 is 10AWG, larger than the conductors", motor, L"",
       true, R"(("12AWG" "12AWG"))", "", "nil"},
      {"sizes that are there stay", motor, LR"((("2AWG" "x" "1") ("6AWG" "y" "3")))", true,
       R"(("2AWG" "6AWG"))", "", "nil"},
      {"no size is large enough", LR"("Induction";"10";"HP";"460";"3";"60";"1800";"9000";"1.25")", L"", true,
       R"(("" ""))", "the largest is 2000KCMIL", "1.0"},
      {"no grounding size either", LR"("Induction";"10";"HP";"460";"3";"60";"1800";"9000";"1.25")", L"", true,
       R"(("" ""))", "its grounding conductor has no size", "1.0"},
      {"conductors with a size do not size the grounding conductor: 65 x 2.5 = 162.5 < 200",
       LR"("Induction";"50";"HP";"460";"3";"60";"1800";"65";"1.25")", LR"((("2AWG" "x" "1")))", true,
       R"(("2AWG" "6AWG"))", "", "nil"},
      {"beside larger conductors it grows with their area: 13.3 x 53.5 / 33.6 = 21.2 mm2 is 4AWG",
       LR"("Induction";"50";"HP";"460";"3";"60";"1800";"65";"1.25")", LR"((("1/0AWG" "x" "1")))", true,
       R"(("1/0AWG" "4AWG"))", "", "nil"},
      {"or that is reported", LR"("Induction";"50";"HP";"460";"3";"60";"1800";"65";"1.25")",
       LR"((("5AWG" "x" "1")))", true, R"(("5AWG" "6AWG"))", "marker MOTOR-1: no area for 5AWG", "nil"},
      {"its size can be that of the data",
       LR"("";"";"";"";"";"";"";"";"";"";"";"";"";"";"";"";"";"";"";"";"";"";"";"";"";"";"";"";"4AWG")",
       LR"((("2AWG" "x" "1")))", false, R"(("2AWG" "4AWG"))", "", "nil"},
      {"nor is it sized without a current", L"", LR"((("2AWG" "x" "1")))", true, R"(("2AWG" ""))",
       "grounding, its full-load current is not known", "1.0"},
      {"nor without tables", motor, LR"((("2AWG" "x" "1")))", false, R"(("2AWG" ""))",
       "grounding, the tables of wire sizes cannot be read", "1.0"},
      {"one conductor with a size does not size the next; two sizes do not limit the grounding conductor",
       motor, LR"((("8AWG" "x" "1") ("" "" "1")))", true, R"(("8AWG" "12AWG" "10AWG"))", "", "nil"},
      {"no current", LR"("Induction";"10";"HP";"460";"3";"60";"1800";"";"1.25")", L"", true, R"(("" ""))",
       "its full-load current is not known", "1.0"},
      {"no tables", motor, L"", false, R"(("" ""))", "the tables of wire sizes cannot be read", "1.0"},
      {"no motor data at all", L"", L"", true, R"(("" ""))", "its full-load current is not known", "1.0"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    BuildSite site;
    site.writeSheet(sheet);
    site.eval(markers);
    // A second conductor.
    if (std::wstring_view(row.wires).find(L"(\"\"") != std::wstring_view::npos)
      site.eval("(mark \"WT02-1\" \"8\" \"_WIRETYPE=M_@S@;\")");
    site.eval(tables.lisp());
    if (!row.hasTables) site.eval("(defun c:zan_bv_figure_mccdb_fnam () \"/none.db\")");
    ZanBuildArgs args = site.arguments();
    args.presetText = L"MOTOR-1=1;SWITCH=1";
    args.codeHandleText = row.params;
    args.wireText = row.wires;
    const auto build = site.prepared(args);
    REQUIRE(build);
    CHECK(buildAndFinish(site, *build));
    CHECK_EQ(site.eval("(mapcar 'car (cadr (cadr (car ran))))"), row.sizes);
    CHECK_EQ(site.eval("GBL_qn_bv_unsized_wires"), row.unsized);
    const std::string printed = site.lisp().takePrinted();
    CHECK_MESSAGE(printed.find(row.printed) != std::string::npos, printed);
    CHECK((row.printed[0] != '\0' || printed.find("marker MOTOR-1") == std::string::npos));
  }
}

TEST_CASE("a configuration that could not be saved does not reach the file with a later one") {
  BuildSite site;
  site.writeSheet(sheet);
  site.eval(markers);
  const auto build = site.prepared(site.arguments());
  REQUIRE(build);
  CHECK(buildAndFinish(site, *build));
  const ResourceScope resources;
  CHECK(build->saveHistory(L"First"));
  const std::filesystem::path file = site.folder() / "zan_brenvolt.xml";
  std::filesystem::permissions(file, std::filesystem::perms::owner_read);
  CHECK_FALSE(build->saveHistory(L"Lost"));
  CHECK_EQ(build->state().entry.key.name, L"First");
  std::filesystem::permissions(file, std::filesystem::perms::owner_all);
  CHECK(build->saveHistory(L"Second"));
  std::vector<std::wstring> names;
  CHECK(build->history().Reload());
  CHECK(build->history().GetHistoryNames(L"Motor", L"Direct", names));
  CHECK_EQ(names, std::vector<std::wstring>{L"First", L"Second"});
}

TEST_CASE("a run that the host refuses to undo goes back with the run before") {
  BuildSite site;
  site.writeSheet(
      {"M1|Out|x|G|A|1|1|(nest \"N1\")", "N1|In|x|G|A|1|1|(nest \"P1\")", "P1|Deep|x|G|A|1|1|(note p)"});
  site.eval("(mark \"M1\" \"1\")");
  const auto build = site.prepared(site.arguments());
  REQUIRE(build);
  const ResourceScope resources;
  REQUIRE(build->prepare(BuildKind::interactive));
  const auto insert = [&build](ZanConfigUnit& unit) {
    unit.pending = true;
    REQUIRE(build->runLevel());
    unit.pending = false;
    unit.inserted = true;
    return unit.children()->units().front().get();
  };
  ZanConfigUnit* outer = build->units().units().front().get();
  ZanConfigUnit* inner = insert(*outer);
  const ZanConfigUnit* deep = insert(*inner);
  CHECK_EQ(build->level(), 2);
  site.drawing().undoLog().setOff(true);
  CHECK_FALSE(build->stepBack());
  CHECK_EQ(build->level(), 1);
  CHECK_EQ(inner->insertStep, 1);
  CHECK_EQ(deep->ownerStep, 1);
  build->truncateTo(2);
  CHECK_EQ(inner->children()->units().size(), 1);
  build->truncateTo(1);
  CHECK(outer->children()->isEmpty());
  CHECK(build->state().markers.markers().front().children() == nullptr);
}
