// Mistakes in a workbook, a template or a history file, and their messages.
#include "site_tool.h"

#include <doctest/doctest.h>

#include <string>

using namespace brenvolt;

namespace {

constexpr SampleCircuit motorDirect = {"", "Three-phase motors", "Direct on line", ""};

} // namespace

TEST_CASE("a build that fails writes nothing and says why") {
  struct Row {
    const char* part;
    const char* replacement;
    const char* reason;
  };
  constexpr Row rows[] = {
      {"(site_motor #xyz", "(site_no_such_function #xyz", "(site_no_such_function #xyz"},
      {"(site_motor #xyz #scl 3", "(site_motor #xyz #scl 4", "(site_motor #xyz #scl 4"},
      {"\"\"control_three_wire.json\"\"", "\"\"none.json\"\"", "none.json"},
      {"\"\"control_three_wire.json\"\"", "\"\"motor3_dol.json\"\"", "deeper"},
  };
  for (const Row& row : rows) {
    CAPTURE(std::string(row.replacement));
    const SiteCopy site;
    site.changeSheet("M3_DOL", row.part, row.replacement);
    const ToolRun run = site.draw(motorDirect, "a.json");
    CHECK(run.exitCode == 3);
    checkHolds(run.output + run.errors, {row.reason});
    CHECK_FALSE(site.folder().has("a.json"));
  }
}

TEST_CASE("--keep-going reports every form that fails, with its cell and the place in the site's LISP") {
  const SiteCopy site;
  site.changeSheet("M3_DOL", "(site_motor #xyz #scl 3", "(site_no_such_function #xyz #scl 3");
  site.changeSheet(
      "M3_DOL", "(site_wire #xyz #scl 1 137 #data #misc1)", "(site_wire #xyz #scl 1 nil #data #misc1)");
  const ToolRun run = site.draw(motorDirect, "a.json", {"--keep-going"});
  CHECK(run.exitCode == 3);
  checkHolds(
      run.errors,
      {"zan_brenvolt.xls, sheet M3_DOL, row 4, column 8, CODE WT01: (site_wire #xyz #scl 1 nil #data "
       "#misc1): ",
       "CODE MOTOR: (site_no_such_function #xyz #scl 3 #data #misc1): SITE_NO_SUCH_FUNCTION: there is no "
       "such function",
       "/site/lisp/forms.lsp:", ": *: argument 2 must be a number, not nil",
       "2 forms failed, so nothing is written"});
  CHECK_FALSE(site.folder().has("a.json"));
}

TEST_CASE("a template without markers, or with another workbook's, is refused") {
  const SiteCopy site;
  const auto drawInto = [&site](const char* form) {
    return site.run(
        {"lisp", "--site", site.site(), "-e", form, "--save",
         site.folder().path("site/templates/motor3_dol.json")});
  };
  REQUIRE(drawInto("(draw-line '(0 0) '(1 1))").exitCode == 0);
  ToolRun run = site.draw(motorDirect, "a.json");
  CHECK(run.exitCode == 3);
  checkHolds(run.errors, {"holds no marker"});

  REQUIRE(
      drawInto("(progn (site-block \"ZAN_BV_MARKER_BLOCK\") (insert-block \"ZAN_BV_MARKER_BLOCK\" '(0 0) 1 0 "
               "\"0\" "
               "'((\"CODE\" . \"FOREIGN\"))))")
          .exitCode == 0);
  run = site.draw(motorDirect, "a.json");
  CHECK(run.exitCode == 3);
  checkHolds(run.errors, {"CircuitTemplateDrawing"});
  CHECK_FALSE(site.folder().has("a.json"));
}

TEST_CASE("a form that erases its own marker does no harm") {
  const SiteCopy site;
  site.changeSheet("M3_DOL", "(site_wire #xyz #scl 1", "(site_erase_marker)(site_wire #xyz #scl 1");
  std::string forms = site.folder().read("site/lisp/forms.lsp");
  forms += "(defun site_erase_marker () (entity-erase (handle->entity (nth (car GBL_qn_bv_marker_data) (cadr "
           "GBL_qn_bv_marker_data)))) T)\n(site-expose '(site_erase_marker))\n";
  static_cast<void>(site.folder().write("site/lisp/forms.lsp", forms));
  const ToolRun run = site.draw(motorDirect, "a.json", {"--history", "Pump 10 HP"});
  CHECK_MESSAGE(run.exitCode == 0, run.errors);
}

TEST_CASE("what a circuit cannot be drawn with is told ahead of the build, and nothing is saved") {
  const SiteCopy site;
  const std::string before = site.history();
  struct Row {
    std::vector<std::string> words;
    int exitCode;
    const char* message;
  };
  const Row rows[] = {
      {{"--history", "Pump 10 HPx"}, 3, "no saved configuration \"Pump 10 HPx\""},
      {{"--preset", "DISC"}, 3, "preset \"DISC\": must be CODE=1,2"},
      {{"--preset", "DISC=20;NOPE=1"}, 3, "preset \"NOPE=1\""},
      {{"--at", "nan,0"}, 3, "--at"},
      {{"--svg", site.folder().path("none/a.svg")}, 4, "none/a.svg"},
  };
  for (const Row& row : rows) {
    std::vector<std::string> words = row.words;
    words.insert(words.end(), {"--save-history", "New"});
    const ToolRun run = site.draw(motorDirect, "a.json", words);
    CHECK_MESSAGE(run.exitCode == row.exitCode, row.message);
    checkHolds(run.errors, {row.message});
    CHECK_FALSE(site.folder().has("a.json"));
  }
  static_cast<void>(site.folder().write("site/tables/MOTOR_NEC.csv", "ID,TYPE\n1\n"));
  const ToolRun run = site.draw(motorDirect, "a.json", {"--save-history", "New"});
  CHECK(run.exitCode == 3);
  checkHolds(run.errors, {"MOTOR_NEC.csv"});
  CHECK(site.history() == before);
}
