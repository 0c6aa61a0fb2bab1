// The program's command line: what it says without a screen, and its exit codes.
#include "gui_fixture.h"
#include "simhost/host/files.h"

#include <doctest/doctest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>

using namespace simhost;

namespace {

struct ProgramRun {
  int exitCode = -1;
  std::string output; ///< both streams
};

ProgramRun run(const std::string& environment, const std::string& arguments) {
  const char* folder = std::getenv("BRENVOLT_BIN");
  const std::string program = std::string(folder == nullptr ? "out/bin" : folder) + "/brenvolt-gui";
  ProgramRun result;
  FILE* pipe =
      ::popen(("timeout 600 env " + environment + " '" + program + "' " + arguments + " 2>&1").c_str(), "r");
  REQUIRE(pipe != nullptr);
  std::array<char, 512> bytes{};
  while (std::fgets(bytes.data(), static_cast<int>(bytes.size()), pipe) != nullptr)
    result.output += bytes.data();
  const int status = ::pclose(pipe);
  result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return result;
}

constexpr const char* noScreen = "-u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM";
constexpr const char* noDisplay = "-u DISPLAY -u WAYLAND_DISPLAY QT_QPA_PLATFORM=xcb";
constexpr const char* offscreen = "QT_QPA_PLATFORM=offscreen";

/// What the README and the manual say after the program's name, up to the end of the line or of the code.
std::vector<std::string> calledInManual() {
  std::vector<std::filesystem::path> pages = {"README.md"};
  for (const auto& entry : std::filesystem::directory_iterator("docs"))
    if (entry.path().extension() == ".md") pages.push_back(entry.path());
  std::vector<std::string> calls;
  for (const std::filesystem::path& page : pages) {
    std::ifstream in(page);
    for (std::string line; std::getline(in, line);)
      if (const std::size_t name = line.find("brenvolt-gui "); name != std::string::npos)
        calls.push_back(line.substr(name, line.find('`', name) - name));
  }
  return calls;
}

} // namespace

TEST_CASE("the command line is judged before a screen is looked for") {
  const GuiFolder folder;
  const std::string settings = " --settings " + folder.path("settings.json");
  REQUIRE(replaceFile(folder.path("fonts.conf"), "<fontconfig></fontconfig>").empty());
  const std::string noFonts = std::string(offscreen) + " FONTCONFIG_FILE=" + folder.path("fonts.conf");
  struct Row {
    std::string environment;
    std::string arguments;
    int exitCode;
    const char* says;
  };
  const Row rows[] = {
      {noScreen, "--help", 0, "--record"},
      {noScreen, "--theme pink", 1, "pink"},
      {noScreen, "--site no/such/folder", 1, "no/such/folder"},
      {noScreen, "--unknown", 1, "--unknown"},
      {noScreen, settings, 3, "there is no screen"},
      {"-u WAYLAND_DISPLAY -u QT_QPA_PLATFORM DISPLAY=:987", settings, 3, "no screen can be used"},
      {noDisplay, settings, 3, "QT_QPA_PLATFORM is xcb, and DISPLAY is not set"},
      {"QT_QPA_PLATFORM=none", settings, 3, "no screen can be used"},
      {noFonts, settings, 3, "there are no fonts"},
      {offscreen, settings + " --screenshot a.png --record " + folder.path("fonts.conf") + "/a.json", 4,
       "fonts.conf/a.json"},
      {offscreen, settings + " --drawing no/such.json", 3, "no/such.json"},
      {offscreen, settings + " --module no/such.kvx", 3, "no/such.kvx"},
      {offscreen, settings + " --screenshot /dev/null/a.png", 4, "/dev/null/a.png"},
      {offscreen, settings + " --screenshot " + folder.path("a.png"), 0, ""},
      {offscreen, settings + " --play tests/site/sessions/one_by_one/session.json", 3, "names no LISP forms"},
      {offscreen, settings + " --pictures .", 1, "--play"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.arguments);
    const ProgramRun result = run(row.environment, row.arguments);
    CAPTURE(result.output);
    CHECK(result.exitCode == row.exitCode);
    CHECK(result.output.find(row.says) != std::string::npos);
  }
}

TEST_CASE("a session is done in the windows, with a picture of each, or its slip is told") {
  const GuiFolder folder;
  const std::string common = "--site site --language en --settings " + folder.path("settings.json");
  const ProgramRun good =
      run(offscreen, common + " --play site/pictures/pickers.json --pictures " + folder.path("pictures"));
  CHECK_MESSAGE(good.exitCode == 0, good.output);
  for (const char* window :
       {"ZanDlgMotorSelect", "ZanDlgPowerFeed", "ZanBrenvolt.MotorTableNotFound", "help"})
    CHECK(std::filesystem::exists(folder.path("pictures/" + std::string(window) + ".png")));

  std::ofstream(folder.path("bad.json")) << R"x({"format": "brenvolt-answers", "version": 1,
    "run": {"forms": ["(zan_bv_motor_select)"]},
    "steps": [{"dialog": "ZanDlgMotorSelect", "do": [{"press": "insertAll"}]}]})x";
  const ProgramRun bad = run(
      offscreen, common + " --play " + folder.path("bad.json") + " --pictures " + folder.path("pictures"));
  CHECK(bad.exitCode == 3);
  CHECK_MESSAGE(bad.output.find("insertAll") != std::string::npos, bad.output);
}

TEST_CASE("the examples of the program's help run, and the manual gives only options that it has") {
  const GuiFolder folder;
  const std::string help = run(noScreen, "--help").output;
  std::istringstream lines(help);
  int examples = 0;
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with("  brenvolt-gui ")) continue;
    const std::size_t picture = line.find_last_of(' ') + 1;
    const std::string file = folder.path(line.substr(picture));
    const ProgramRun shown =
        run(offscreen, line.substr(15, picture - 15) + file + " --settings " + folder.path("settings.json"));
    CHECK_MESSAGE(shown.exitCode == 0, line, shown.output);
    CHECK(std::filesystem::exists(file));
    ++examples;
  }
  CHECK(examples == 2);

  const std::regex option("--[a-z-]+");
  const std::vector<std::string> calls = calledInManual();
  CHECK(calls.size() > 2);
  for (const std::string& call : calls)
    for (std::sregex_iterator found(call.begin(), call.end(), option), end; found != end; ++found)
      CHECK_MESSAGE(help.find(found->str()) != std::string::npos, call);
}
