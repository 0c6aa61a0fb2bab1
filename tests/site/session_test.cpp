// Recorded sessions through the tool, the real module and the sample site: what they leave in the drawing, in the file of
// saved configurations and in their own recording.
#include "site_tool.h"
#include "tests/support/golden.h"
#include "text/encoding.h"
#include "text/split.h"

#include <doctest/doctest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

using namespace brenvolt;

namespace {

const std::string sessions = "tests/site/sessions/";

std::string without(const std::string& text, const std::string& part, std::wstring_view name) {
  return toUtf8(replaceAll(fromUtf8(text), fromUtf8(part), name));
}

/// A session that has run; its files are in the folder "work".
class Replay final {
public:
  explicit Replay(const std::string& file) {
    run = folder_.run(
        {"replay", "site", file, "--out", folder_.path("out.json"), "--record",
         folder_.path("recording.json"), "--work", folder_.path("work")});
    drawing = folder_.read("out.json");
    // Paths of a recording are relative to its own folder, which is different each time.
    const std::filesystem::path here = std::filesystem::proximate(".", folder_.path("."));
    recording = without(folder_.read("recording.json"), folder_.path("work"), L"WORK");
    recording = without(recording, here.generic_string(), L"REPOSITORY");
  }

  /// A saved configuration that the session left.
  [[nodiscard]] std::string saved(const std::string& name) const {
    return historyEntry(historyText(folder_.read("work/zan_brenvolt.xml"), folder_.path("work")), name);
  }
  /// The drawing of a direct build that takes a saved configuration of the session over.
  [[nodiscard]] std::string directly(
      const std::string& circuit, const std::string& type, const std::string& name) const {
    const ToolRun direct = folder_.run(
        {"draw", "--site", "site", "--workbook", folder_.path("work/zan_brenvolt.xls"), "--circuit", circuit,
         "--type", type, "--history", name, "--out", folder_.path("direct.json")});
    CHECK_MESSAGE(direct.exitCode == 0, direct.errors);
    return folder_.read("direct.json");
  }
  [[nodiscard]] std::string query(const std::string& database, const std::string& statement) const {
    return folder_.run({"sql", folder_.path("work/" + database), statement, "--csv"}).output;
  }

  ToolRun run;
  std::string drawing;
  std::string recording;

private:
  ToolFolder folder_;
};

constexpr const char* golden = "tests/site/golden/";

struct Session {
  const char* name;
  const char* drawing; ///< golden file, empty for none
  const char* saved;   ///< name of the configuration that it saves, empty for none
};

} // namespace

TEST_CASE("sessions leave their golden drawing, saved configuration and recording") {
  constexpr Session rows[] = {
      {"one_by_one", "", ""},
      {"two_motors", "", "Two pumps 10 and 5 HP"},
      {"undo_and_change", "tests/site/sessions/undo_and_change/drawing.json",
       "Changed [Heater 2 kW 240 1 60 ]"},
      {"cancel", "tests/site/golden/feed2.json", ""},
      {"taken_name", "", "Power feeds (001) [Heater 2 kW 240 1 60 ]"},
      {"takeover", "tests/site/sessions/takeover/drawing.json", "Power feeds (001) [Heater 2 kW 240 1 60 ]"},
      {"presets", "tests/site/sessions/presets/drawing.json", ""},
  };
  for (const Session& row : rows) {
    CAPTURE(std::string(row.name));
    const std::string folder = sessions + row.name;
    const Replay replay(folder + "/session.json");
    REQUIRE_MESSAGE(replay.run.exitCode == 0, replay.run.errors);
    CHECK_EQ(replay.run.errors, "");
    CHECK(test::matchesGolden(folder + "/recording.json", replay.recording));
    if (*row.drawing != '\0') CHECK(test::matchesGolden(row.drawing, replay.drawing));
    if (*row.saved != '\0') CHECK(test::matchesGolden(folder + "/history.xml", replay.saved(row.saved)));
  }
}

TEST_CASE("a configuration under a taken name replaces the other one, or is kept beside it") {
  const Replay replay(sessions + "taken_name/session.json");
  const std::string terminals = "UI_TITLE=\"Field terminals\" UI_PROMPT=";
  CHECK(replay.saved("Heater 2 kW").find(terminals + "\"None\"") != std::string::npos);
  CHECK(
      replay.saved("Power feeds (001) [Heater 2 kW 240 1 60 ]").find(terminals + "\"On") !=
      std::string::npos);
}

TEST_CASE("in whatever steps the units go in, the drawing is that of a direct build") {
  const Replay allAtOnce(sessions + "all_at_once/session.json");
  REQUIRE_MESSAGE(allAtOnce.run.exitCode == 0, allAtOnce.run.errors);
  for (const char* name : {"one_by_one", "up_to_current"})
    CHECK(Replay(sessions + name + "/session.json").drawing == allAtOnce.drawing);
  CHECK(
      sortedLines(allAtOnce.directly("Three-phase motors", "Direct on line", "Pump 10 HP")) ==
      sortedLines(allAtOnce.drawing));
  CHECK(
      sortedLines(allAtOnce.drawing) == sortedLines(test::bytesOf(std::string(golden) + "motor3_dol.json")));
}

TEST_CASE("two motors in one template each have their own wires and data") {
  const Replay replay(sessions + "two_motors/session.json");
  CHECK(sortedLines(replay.drawing) == sortedLines(test::bytesOf(std::string(golden) + "motor3_two.json")));
}

TEST_CASE("parts chosen in the dialog are kept for the motor, and come back") {
  const Replay replay(sessions + "part_lookup/session.json");
  REQUIRE_MESSAGE(replay.run.exitCode == 0, replay.run.errors);
  CHECK_EQ(
      replay.query("engineering.db", "SELECT MARKER,UI_SEL,MFG,CAT,RATING1 FROM CATALOGSEL ORDER BY MARKER"),
      "MARKER,UI_SEL,MFG,CAT,RATING1\nDISC,11,Nordhaven,CB3-035,35A\nMS,1,Carrick,MC-18-120,18A\n"
      "OL,1,Carrick,OR-10-18,10-18A\n");
}

TEST_CASE("a session that cannot be run again says why, and writes nothing but its recording") {
  struct Row {
    const char* run;
    const char* steps;
    const char* reason;
  };
  constexpr const char* feed = R"("circuit": "Power feeds", "type": "Single-phase")";
  const Row rows[] = {
      {nullptr, "", "the member \"run\" is missing"},
      {"", "", "needs \"circuit\" and \"type\", or \"forms\""},
      {R"("circuit": "Power feeds", "type": "Two-phase")", "", "has no type \"Two-phase\""},
      {R"x("forms": ["(site-circuit)"], "type": "Reversing")x", "", "has \"type\" beside \"forms\""},
      {R"x("forms": ["(car 5)"])x", "", "CAR"},
      {R"x("forms": ["1"], "commands": [])x", "", "has \"commands\" beside \"forms\""},
      {R"x("commands": [{"undo": true, "redo": true}])x", "", "a command has one of"},
      {R"x("commands": [{"forms": ["1"], "ends": "badly"}])x", "", "neither \"cancelled\" nor"},
      {R"x("commands": [{"undo": true}])x", "", "command 1 of the session: nothing to undo"},
      {R"x("commands": [{"open": "none.json"}])x", "", "none.json"},
      {R"x("commands": [{"forms": ["1"], "ends": "failed"}])x", "", "succeeded, but did not"},
      {R"x("commands": [{"forms": ["(car 5)"], "ends": "cancelled"}])x", "",
       "ends differently than recorded"},
      {R"("forms": ["1"], "project": "none.db")", "", "no such project"},
      {feed, "", "\"ZanDlgConfig\" has no answer"},
      {feed, R"({"dialog": "ZanDlgConfig", "do": [{"press": "insert"}]})", "insert"},
  };
  for (const Row& row : rows) {
    CAPTURE(std::string(row.reason));
    const ToolFolder folder;
    std::string text = R"({"format": "brenvolt-answers", "version": 1, )";
    if (row.run != nullptr) text += R"("run": {)" + std::string(row.run) + "}, ";
    const std::string session = folder.write("session.json", text + R"("steps": [)" + row.steps + "]}");
    const ToolRun run = folder.run({"replay", "site", session, "--out", folder.path("out.json")});
    CHECK(run.exitCode == 3);
    checkHolds(run.errors, {row.reason});
    CHECK_FALSE(folder.has("out.json"));
  }
}

TEST_CASE("what replay records is the session again") {
  const ToolFolder folder;
  for (const auto& [session, recording] :
       {std::pair{sessions + "undo_and_change/session.json", folder.path("first.json")},
        std::pair{folder.path("first.json"), folder.path("second.json")}})
    REQUIRE(
        folder.run({"replay", "site", session, "--record", recording, "--work", folder.path("work")})
            .exitCode == 0);
  CHECK_EQ(folder.read("second.json"), folder.read("first.json"));
}

TEST_CASE("what the tool has run of LISP is a session: files, forms, and what failed at its prompt") {
  const ToolFolder folder;
  const std::string line = "(draw-line '(0 0) '(9 0))\n";
  const std::string file = folder.write("a.lsp", "(defun twice (x) (* 2 x))\n" + line);
  const std::string drawing = folder.path("plan.json");
  // The drawing that is opened is the one that is written: the recording keeps it as it was.
  REQUIRE(folder.run({"lisp", file, "--save", drawing}).exitCode == 0);
  const auto replay = [&](const std::string& errors) {
    const ToolRun run =
        folder.run({"replay", "site", folder.path("rec/a.json"), "--out", folder.path("there.json")});
    REQUIRE_MESSAGE(run.exitCode == 0, run.errors);
    CHECK(run.errors == errors);
    return folder.read("there.json");
  };
  REQUIRE(
      folder
          .run(
              {"lisp", "--site", "site", "--drawing", drawing, file, "-e", "(draw-circle '(5 5) (twice 2))",
               "-e", "(draw-circle '(5 5) 9)", "-e", "(undo 1)", "--save", drawing, "--record",
               folder.path("rec/a.json")})
          .exitCode == 0);
  CHECK(replay("") == folder.read("plan.json"));
  CHECK(folder.read("rec/a.drawing-1.json") != folder.read("plan.json"));

  REQUIRE(
      folder.run({"lisp", "--site", "site", "--record", folder.path("rec/a.json")}, line + "(car 5)\n" + line)
          .exitCode == 3);
  REQUIRE(folder.run({"lisp", "-e", line, "-e", line, "--save", drawing}).exitCode == 0);
  CHECK(
      replay("brenvolt: as recorded: input:1: CAR: argument 1 must be a list, not 5, in (CAR 5)\n") ==
      folder.read("plan.json"));
}
