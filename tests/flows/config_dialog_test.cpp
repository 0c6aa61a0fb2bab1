// Sessions of the configuration dialog, from LISP to the drawing, the history file and the final calls of LISP.
#include "tests/flows/config_site.h"
#include "tests/flows/picker_session.h"
#include "tests/support/golden.h"

#include <doctest/doctest.h>

using namespace brenvolt::test;

namespace {

const std::string finish = pressing("ok");
const std::string undo = pressing("undo");
const std::string insert = pressing("insertCurrent");
const std::string insertAll = pressing("insertAll");
const std::string cancel = pressing("cancel");

/// The session followed the script, and ended with this value.
void checkEnd(const ConfigResult& result, const char* answer) {
  CHECK_EQ(result.failure, "");
  CHECK_EQ(result.answer, answer);
}

} // namespace

TEST_CASE("a form may build another circuit, which leaves the outer one as it was") {
  const std::vector<std::string> sheet = {
      "OUT|Outer|x|How|Ask|1|1|(build-inner nil)", "||||Build|2|2|(build-inner T)",
      "LMP|Lamp|x|Colour|Red|1|1|(put red)", "END|End||||||(put end)"};
  constexpr const char* inner = R"lisp(
    (defun build-inner (direct)
      (let ((last (entity-handle (entity-last))))
        (mark 'LMP 1)
        (put (if (zan_bv_build_circuit (list book "S" "Motor" "Inner" "" direct last)) "built" "not-built"))))
    (vz-korvo-defun 'build-inner))lisp";
  struct Row {
    const char* promise;
    bool isDirect;
    std::vector<std::string> steps;
    const char* drawn;
    const char* printed;
  };
  const Row rows[] = {
      {"it asks inside a direct build",
       true,
       {configStep({insertAll, finish})},
       R"(("red" "built" "end"))",
       ""},
      {"and only it is taken back",
       true,
       {configStep({insertAll, cancel}), answerStep("CircuitConfigurationCancel", 6)},
       R"(("not-built" "end"))",
       ""},
      {"it is refused while a dialog is open",
       false,
       {configStep({insertAll, finish})},
       R"(("not-built" "end"))",
       "the dialog of another circuit is open"},
      {"where a direct one is built",
       false,
       {configStep({choosing("How", "Build"), insertAll, finish})},
       R"(("red" "built" "end"))",
       ""},
  };
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    const ConfigResult result = ConfigSite(sheet).run(
        {.markers = "((OUT 1) (END 2))", .steps = row.steps, .isDirect = row.isDirect, .setup = inner});
    checkEnd(result, "T");
    CHECK_EQ(result.drawn, row.drawn);
    CHECK(result.printed.find(row.printed) != std::string::npos);
  }
}

TEST_CASE("nested templates bring units, and go with them when their run is taken back") {
  ConfigSite site;
  const ConfigResult result = site.run(
      {.markers = "((BRK 1) (CON 2))",
       .steps = {configStep(
           {selecting({"Contactor"}), choosing("Kind", "Nested"), insert,
            // The heading after the nested choice is not inserted before it, and the new unit is shown.
            expectingUnits({"Breaker", "Contactor [2]", "  Auxiliary [1]"}), choosing("Count", "Deep"),
            insert, expectingUnits({"Breaker", "Contactor [2]", "  Auxiliary [2]", "    Lamp [1]"}), undo,
            expecting("units", R"("path": ["Contactor", "Auxiliary"])"),
            expectingUnits({"Breaker", "Contactor [2]", "  Auxiliary [1]"}),
            expecting("options/Count", R"("text": "Deep", "locked": false)"), undo,
            expecting("units", R"("path": ["Contactor"])"), expectingUnits({"Breaker", "Contactor [1]"}),
            insert, expecting("options/Count", R"("text": "One")"), choosing("Count", "Deep"), insert,
            choosing("Colour", "Green"), insert, insertAll,
            expectingUnits({"Breaker [2]", "Contactor [2]", "  Auxiliary [2]", "    Lamp [2]"}), finish})}});
  checkEnd(result, "T");
  CHECK_EQ(result.drawn, R"(("outer" "inner" "head" "green" "small"))");
  CHECK_EQ(result.markers, "nil");
  CHECK_EQ(
      result.saved, R"((("AUX" nil "2") ("BRK" nil "1") ("CON" nil "2") ("HEAD" nil "") ("LMP" nil "2")))");
}

TEST_CASE("a choice that is changed behind an undo counts in drawing, history and codes") {
  ConfigSite site;
  const ConfigResult result = site.run(
      {.markers = "((BRK 1) (LMP 2))",
       .steps = {configStep(
           {insert, selecting({"Breaker"}), expecting("options/Frame", R"("locked": true)"), undo,
            choosing("Frame", "Large"), insert, insert, naming("Kept"), finish})}});
  checkEnd(result, "T");
  CHECK_EQ(result.drawn, R"(("large" "red"))");
  CHECK_EQ(result.saved, R"((("BRK" nil "2") ("LMP" nil "1")))");

  // The same template has lost a marker and got another one since: what is left of the history counts.
  const ConfigResult later = site.run(
      {.markers = "((BRK 1) (CON 2))",
       .steps =
           {configStep(
                {expecting("options/Frame", R"("text": "Large")"),
                 expecting("historyName", R"("text": "Kept")"), insertAll, finish}),
            answerStep("DuplicateCircuitName", 1001)},
       .historyName = "Kept"});
  checkEnd(later, "T");
  CHECK_EQ(later.drawn, R"(("large" "plain"))");
  CHECK_EQ(site.historyNames(), "Kept");
}

TEST_CASE("units that are left are not drawn, but their choices are kept") {
  ConfigSite site;
  const std::string done = "CircuitConfigurationDone";
  const ConfigResult result = site.run(
      {.steps = {
           configStep({insert, choosing("Kind", "Nested"), finish}), answerStep(done, 7),
           configStep({naming("Half"), finish}), answerStep(done, 2), configStep({naming("Half"), finish}),
           answerStep(done, 6)}});
  checkEnd(result, "T");
  CHECK_EQ(result.drawn, R"(("small"))");
  CHECK_EQ(result.markers, "nil");
  CHECK_EQ(result.saved, R"((("BRK" nil "1") ("CON" nil "") ("LMP" nil "")))");
  const ConfigResult later = site.run({.historyName = "Half", .isDirect = true});
  CHECK_EQ(later.drawn, R"(("small" "outer" "one" "head" "red"))");
}

TEST_CASE("a build that is not finished leaves drawing and history as they were") {
  const std::string question = "CircuitConfigurationCancel";
  const std::string twoRuns = insert + ", " + insert;
  struct Row {
    const char* promise;
    std::vector<std::string> steps;
    const char* failure; ///< how the script's failure begins
  };
  const Row rows[] = {
      {"at once", {configStep({cancel}), answerStep(question, 6)}, ""},
      {"behind three runs and a second thought",
       {configStep({twoRuns, cancel}), answerStep(question, 7), configStep({insert, cancel}),
        answerStep(question, 6)},
       ""},
      {"by the frame behind an undo",
       {configStep({twoRuns, undo, R"({"close": "frame"})"}), answerStep(question, 6)},
       ""},
      {"a question without an answer",
       {configStep({twoRuns, naming(""), finish})},
       "\"ZanBrenvolt.InvalidCircuitName\" has no answer"},
      {"a script that leaves the dialog open", {configStep({insert})}, "the test: step 1: leaves"},
      {"an action that cannot be done", {configStep({twoRuns, insert, insert})}, "the test: step 1"},
      {"no answer at all", {}, "\"ZanDlgConfig\" has no answer"},
      {"an exception of the host",
       {configStep({selecting({"Lamp"}), choosing("Colour", "Throws"), insertAll})},
       ""},
  };
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    ConfigSite site;
    const ConfigResult result = site.run({.steps = row.steps});
    CHECK_EQ(result.failure.substr(0, std::string(row.failure).size()), row.failure);
    CHECK_EQ(result.failure.empty(), std::string(row.failure).empty());
    CHECK_EQ(result.answer, result.failure.empty() ? "nil" : "cancelled");
    CHECK(result.drawing == result.before);
    CHECK_FALSE(std::filesystem::exists(site.history()));
  }
}

TEST_CASE("a quit in the middle ends the build and leaves what has been inserted") {
  const ConfigResult result = ConfigSite().run(
      {.steps = {configStep({insert, selecting({"Lamp"}), choosing("Colour", "Quit"), insert})}});
  checkEnd(result, "nil");
  CHECK_EQ(result.drawn, R"(("small"))");
}

TEST_CASE("what a failed run has drawn keeps its choices until the run is taken back as a whole") {
  const ConfigResult result = ConfigSite().run(
      {.markers = "((BRK 1) (LMP 2) (CON 3))",
       .steps = {
           configStep({selecting({"Lamp"}), choosing("Colour", "Broken"), insertAll}),
           answerStep("ExecutionError", 1),
           configStep(
               {selecting({"Breaker"}), expecting("options/Frame", R"("locked": true)"),
                expecting("insertAll", R"("enabled": false)"), undo,
                expecting("options/Frame", R"("locked": false)"), selecting({"Lamp"}),
                choosing("Colour", "Green"), insert, insertAll, finish})}});
  checkEnd(result, "T");
  CHECK_EQ(result.drawn, R"(("green" "small" "plain"))");
}

TEST_CASE("LISP that fails at the very end leaves no marker and a history that fits the drawing") {
  ConfigSite site;
  const ConfigResult result = site.run(
      {.steps = {configStep({insertAll, naming("Kept"), finish})},
       .setup = "(defun qn_bv_save_codehdl (rows) (throw-number))"});
  CHECK_EQ(result.failure, "");
  CHECK_EQ(result.drawn, R"(("small" "plain" "red"))");
  CHECK_EQ(result.markers, "nil");
  CHECK_EQ(site.historyNames(), "Kept");
}

TEST_CASE("an undo that the host refuses is told and changes nothing") {
  const std::vector<std::string> steps = {
      configStep(
          {insert, selecting({"Lamp"}), choosing("Colour", "Last"), insert, undo,
           expectingUnits({"Breaker [2]", "Contactor", "Lamp [2]"}), undo,
           expecting("undo", R"("enabled": false)"), expectingUnits({"Breaker [2]", "Contactor", "Lamp [2]"}),
           cancel}),
      answerStep("CircuitConfigurationCancel", 6)};
  const ConfigResult result = ConfigSite().run({.steps = steps});
  checkEnd(result, "nil");
  CHECK_EQ(result.drawn, R"(("small" "last"))");
  const std::string refused = "The last insertion cannot be undone. It stays in the drawing.\n";
  CHECK_EQ(
      result.printed,
      refused + refused + "The insertions of the circuit cannot be undone. They stay in the drawing.\n");
}

TEST_CASE("a configuration needs a name, and a taken one is replaced, made new or thought over") {
  ConfigSite site;
  const std::string kept = "Kept";
  const std::string duplicate = "DuplicateCircuitName";
  struct Row {
    const char* promise;
    std::vector<std::string> steps;
    std::string historyName;
    std::string names; ///< in the history afterwards
  };
  const Row rows[] = {
      {"no name",
       {configStep({insertAll, naming(" "), finish}), answerStep("InvalidCircuitName", 1),
        configStep({expecting("historyName", R"("focus": true)"), naming("New configuration"), finish}),
        answerStep("InvalidCircuitName", 2), configStep({naming(" Kept "), finish})},
       "",
       kept},
      {"a new configuration replaces one of its name without a question",
       {configStep({insertAll, naming("Kept"), finish})},
       "",
       kept},
      {"the proposal is free", {configStep({insertAll, finish})}, "", kept + "|Motor (001)"},
      {"the next one, too",
       {configStep({expecting("historyName", R"~("text": "Motor (002)")~"), insertAll, finish})},
       "",
       kept + "|Motor (001)|Motor (002)"},
      {"replaced",
       {configStep({insertAll, naming("KEPT"), finish}), answerStep(duplicate, 1001)},
       kept,
       "Motor (001)|Motor (002)|KEPT"},
      {"made new",
       {configStep({insertAll, finish}), answerStep(duplicate, 1002)},
       kept,
       "Motor (001)|Motor (002)|KEPT|Motor (003)"},
      {"thought over",
       {configStep({insertAll, finish}), answerStep(duplicate, 2), configStep({naming("Other"), finish})},
       kept,
       "Motor (001)|Motor (002)|KEPT|Motor (003)|Other"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    checkEnd(site.run({.steps = row.steps, .historyName = row.historyName}), "T");
    CHECK_EQ(site.historyNames(), row.names);
  }
}

TEST_CASE("the report of a wire lookup names the circuit in whose configuration the lookup was opened") {
  const PickerTables tables;
  const TemporaryFolder folder;
  const std::string lookup = R"({"dialog": "ZanDlgWireSelect", "do": [)";
  const std::string setup = tables.lisp() + " (defun look () (zan_bv_wire_select) T) (vz-korvo-defun 'look)";
  const std::string report = (folder / "wires.csv").string();
  const ConfigResult result = ConfigSite({"BRK|Breaker|x|Frame|Small|1|1|(look)(put small)"})
                                  .run(
                                      {.markers = "((BRK 1))",
                                       .steps =
                                           {configStep({insertAll}), lookup + R"({"press": "report"}]})",
                                            R"({"dialog": "file", "do": [{"set": "path", "to": ")" + report +
                                                R"("}, {"press": "ok"}]})",
                                            lookup + R"({"press": "cancel"}]})", configStep({finish})},
                                       .setup = setup});
  checkEnd(result, "T");
  CHECK(bytesOf(report).find("\"Motor\"\n") != std::string::npos);
}

TEST_CASE("a configuration that cannot be saved is told, and the user decides what becomes of the circuit") {
  const std::string unsaved = "HistoryNotSaved";
  struct Row {
    const char* promise;
    std::vector<std::string> steps;
    const char* answer;
    const char* drawn;
  };
  const Row rows[] = {
      {"finished without",
       {configStep({insertAll, finish}), answerStep(unsaved, 6)},
       "T",
       R"(("small" "plain" "red"))"},
      {"given up",
       {configStep({insertAll, finish}), answerStep(unsaved, 7),
        configStep({undo, expectingUnits({"Breaker", "Contactor [1]", "Lamp"}), cancel}),
        answerStep("CircuitConfigurationCancel", 6)},
       "nil",
       "nil"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    ConfigSite site;
    writeBytes(site.history(), "kept as it is");
    std::filesystem::permissions(site.history(), std::filesystem::perms::owner_read);
    const ConfigResult result = site.run({.steps = row.steps});
    checkEnd(result, row.answer);
    CHECK_EQ(result.drawn, row.drawn);
    CHECK_EQ(bytesOf(site.history()), "kept as it is");
    CHECK_NE(result.printed.find("history file cannot be opened for writing"), std::string::npos);
  }
}
