// The windows' recording of a user: the same session, though its answer file was not given to them.
#include "tests/site/site_tool.h"

#include <doctest/doctest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

using namespace brenvolt;

namespace {

/// Replays a session of the sample site and returns its results.
struct Replayed {
  Replayed(const ToolFolder& folder, const char* tool, const std::string& session, const std::string& name) {
    REQUIRE(::setenv("BRENVOLT_BIN", tool, 1) == 0);
    run = folder.run(
        {"replay", "site", session, "--out", folder.path(name + ".json"), "--record",
         folder.path(name + ".recording.json"), "--work", folder.path(name)},
        {}, {"BRENVOLT_RECORD_PERSON=1"});
    drawing = folder.read(name + ".json");
    history = folder.read(name + "/zan_brenvolt.xml");
    if (!history.empty()) history = historyText(history, folder.path(name));
  }

  ToolRun run;
  std::string drawing;
  std::string history;
};

} // namespace

TEST_CASE("what a person does in the windows is recorded, and gives the same without them") {
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator("tests/site/sessions")) {
    CAPTURE(entry.path().filename().string());
    const ToolFolder folder;
    const Replayed person(folder, BRENVOLT_QT_BIN, (entry.path() / "session.json").string(), "person");
    REQUIRE_MESSAGE(person.run.exitCode == 0, person.run.errors);
    const Replayed again(folder, BRENVOLT_PLAIN_BIN, folder.path("person.recording.json"), "again");
    REQUIRE_MESSAGE(again.run.exitCode == 0, again.run.errors);
    CHECK_EQ(again.run.errors, "");
    CHECK_FALSE(again.drawing.empty());
    CHECK_MESSAGE((again.drawing == person.drawing), "the drawing");
    CHECK_MESSAGE((again.history == person.history), "the history");
    ++count;
  }
  CHECK(count >= 10);
}
