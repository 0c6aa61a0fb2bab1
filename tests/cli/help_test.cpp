// What the tool says about itself: help whose examples run, manual pages, completions, and the nearest name to a wrong
// one.
#include "tests/support/golden.h"
#include "tool.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

using brenvolt::checkHolds;
using brenvolt::linesOf;
using brenvolt::ToolFolder;
using brenvolt::ToolRun;
namespace fs = std::filesystem;

namespace {

/// Runs a shell command in the folder of a test, where the tool is found by name. The output is written to "out".
int shell(const ToolFolder& folder, const std::string& line) {
  const std::string tools = fs::path(brenvolt::toolPath()).parent_path().string();
  folder.write("line.sh", "cd '" + folder.path("") + "'\n" + line + "\n");
  const std::string command = "HOME='" + folder.path("") + "' XDG_CACHE_HOME= XDG_CONFIG_HOME= PATH='" +
                              tools + "':\"$PATH\" bash '" + folder.path("line.sh") + "' >'" +
                              folder.path("out") + "' 2>&1";
  return std::system(command.c_str());
}

bool hasProgram(const ToolFolder& folder, const std::string& name) {
  if (shell(folder, "command -v " + name) == 0) return true;
  MESSAGE("skipped: no " << name);
  return false;
}

/// The subcommands, by their manual pages.
std::vector<std::string> subcommands(const ToolFolder& folder) {
  REQUIRE_EQ(folder.run({"--write-help", folder.path("help")}).exitCode, 0);
  std::vector<std::string> names;
  for (const auto& page : fs::directory_iterator(folder.path("help/man")))
    if (const std::string name = page.path().stem().string(); name.starts_with("brenvolt-"))
      names.push_back(name.substr(9));
  REQUIRE(names.size() > 10);
  return names;
}

} // namespace

TEST_CASE("the help of each subcommand ends with two examples that run, and with its page of the manual") {
  const ToolFolder folder;
  fs::copy("site", folder.path("site"), fs::copy_options::recursive);
  REQUIRE_EQ(
      shell(
          folder, "brenvolt draw --site site --circuit 'Three-phase motors' --type 'Direct on line' "
                  "--history 'Pump 10 HP' --out motor.json"),
      0);
  for (const std::string& name : subcommands(folder)) {
    CAPTURE(name);
    const std::vector<std::string> help = linesOf(folder.run({name, "--help"}).output);
    int examples = 0;
    for (const std::string& line : help)
      if (line.starts_with("  brenvolt ")) {
        CAPTURE(line);
        CHECK_EQ(line.substr(11, name.size()), name);
        const int status = shell(folder, line);
        CHECK_MESSAGE(status == 0, folder.read("out"));
        ++examples;
      }
    CHECK_EQ(examples, 2);
    REQUIRE_FALSE(help.empty());
    const std::string page = "Manual: man brenvolt-" + name + ", docs/";
    REQUIRE(help.back().starts_with(page));
    CHECK(fs::exists("docs/" + help.back().substr(page.size())));
  }
}

TEST_CASE("a translated page has only examples of its English page, and its LISP runs") {
  const ToolFolder folder;
  const auto page = [](const fs::path& file) { return linesOf(brenvolt::test::bytesOf(file.string())); };
  int forms = 0;
  for (const auto& entry : fs::directory_iterator("docs/de")) {
    const std::vector<std::string> english = page("docs" / entry.path().filename());
    for (const std::string& line : page(entry.path())) {
      CAPTURE(line);
      if (line.starts_with("    ")) CHECK(std::find(english.begin(), english.end(), line) != english.end());
      if (entry.path().filename() != "lisp.md" || !line.starts_with("| `(")) continue;
      CHECK(folder.run({"lisp", "--site", "site", "-e", line.substr(3, line.find("` |") - 3)}).exitCode == 0);
      ++forms;
    }
  }
  CHECK(forms > 5);
}

TEST_CASE("a wrong name of a subcommand or an option brings the nearest right one") {
  struct Row {
    std::vector<std::string> words;
    const char* report;
  };
  const std::vector<Row> rows = {
      {{"drwa"}, R"(brenvolt: there is no subcommand "drwa"; the nearest is "draw"; --help lists them)"},
      {{"hist"}, R"(there is no subcommand "hist"; the nearest is "history")"},
      {{"history", "lst", "--site", "site"}, R"(there is no subcommand "lst"; the nearest is "list")"},
      {{"draw", "--sit", "site"}, R"(there is no option "--sit"; the nearest is "--site")"},
      {{"history", "show", "--circiut=x"}, R"(there is no option "--circiut"; the nearest is "--circuit")"},
      {{"--verison"}, R"(there is no option "--verison"; the nearest is "--version")"},
      {{"xyzzy"}, R"(there is no subcommand "xyzzy"; --help lists them)"},
      {{"wire", "--batch", "x.csv", "--raceways", "PVC"}, R"(the nearest is "--raceway")"},
  };
  const ToolFolder folder;
  for (const Row& row : rows) {
    CAPTURE(row.report);
    const ToolRun run = folder.run(row.words);
    CHECK_EQ(run.exitCode, 1);
    checkHolds(run.errors, {row.report});
  }
  // Behind "--" everything is a value.
  CHECK_EQ(folder.run({"expr", "--", "--i", "5"}).output, "5\n");
}

TEST_CASE("manual pages are free of faults, and the help of each option is on them") {
  const ToolFolder folder;
  for (const std::string& name : subcommands(folder)) {
    CAPTURE(name);
    const std::string page = folder.read("help/man/brenvolt-" + name + ".1");
    for (const std::string& line : linesOf(folder.run({name, "--help"}).output))
      if (line.starts_with("  --") && !line.starts_with("  --help")) {
        std::string option;
        for (const char c : line.substr(2, line.find_first_of(" ,", 2) - 2))
          option += c == '-' ? "\\-" : std::string(1, c);
        checkHolds(page, {option});
      }
  }
  if (!hasProgram(folder, "groff")) return;
  CHECK_EQ(shell(folder, "groff -man -ww -z -K utf8 help/man/*.1"), 0);
  CHECK_EQ(folder.read("out"), "");
}

TEST_CASE("shells complete subcommands, options and their values") {
  const ToolFolder folder;
  CHECK_EQ(folder.run({"--write-help", folder.path("help")}).exitCode, 0);
  fs::create_directories(folder.path("plant"));
  folder.write("plan.json", "{}");
  struct Row {
    const char* words; ///< the last one is completed
    const char* completions;
  };
  const std::vector<Row> rows = {
      {"brenvolt dr", "draw\n"},
      {"brenvolt history sh", "show\n"},
      {"brenvolt draw --si", "--site\n"},
      {"brenvolt draw --site pl", "plant\n"},
      {"brenvolt draw --drawing pl", "plan.json\nplant\n"},
      {"brenvolt history show --circ", "--circuit\n"},
      {"brenvolt motors --vol", "--voltage\n"},
      {"brenvolt motors --circ", ""},
      {"brenvolt report par", "parts\n"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.words);
    CHECK_EQ(
        shell(
            folder, std::string("source help/bash/brenvolt\nCOMP_WORDS=(") + row.words +
                        ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_brenvolt\n"
                        "printf '%s\\n' \"${COMPREPLY[@]}\" | grep . | LC_ALL=C sort || true"),
        0);
    CHECK_EQ(folder.read("out"), row.completions);
  }
  if (hasProgram(folder, "zsh")) CHECK_EQ(shell(folder, "zsh -n help/zsh/_brenvolt"), 0);
  if (hasProgram(folder, "fish")) {
    CHECK_EQ(
        shell(
            folder,
            "cd help; fish --no-config -c 'source fish/brenvolt.fish; complete -C \"brenvolt history sh\"'"),
        0);
    CHECK(folder.read("out").find("show\t") == 0);
  }
}

TEST_CASE("a new site is a copy that works, and a folder with something in it is left alone") {
  const ToolFolder folder;
  const std::string plant = folder.path("Werk Süd/plant");
  CHECK_EQ(folder.run({"site", "new", plant}).exitCode, 0);
  CHECK_EQ(folder.run({"catalog", "--site", plant, "--check"}).exitCode, 0);
  CHECK_EQ(
      folder
          .run(
              {"draw", "--site", plant, "--circuit", "Power feeds", "--type", "Three-phase", "--history",
               "Heater 15 kW", "--out", folder.path("feed.json")})
          .exitCode,
      0);
  CHECK_FALSE(folder.has("Werk Süd/plant.new"));
  const ToolRun again = folder.run({"site", "new", plant});
  CHECK_EQ(again.exitCode, 3);
  CHECK(again.errors.find("is not empty; name a new folder") != std::string::npos);
}

TEST_CASE("the tour of the readme shows what the tool prints") {
  const ToolFolder folder;
  std::ifstream readme("README.md");
  std::string command;
  std::vector<std::string> printed;
  std::size_t next = 0;
  bool skips = false;
  int commands = 0;
  const auto finish = [&] {
    CAPTURE(command);
    if (!command.empty() && !skips) CHECK_EQ(next, printed.size());
    command.clear();
  };
  for (std::string line; std::getline(readme, line);) {
    if (line.starts_with("    $ ")) {
      finish();
      command = line.substr(6);
      for (; command.ends_with('\\') && std::getline(readme, line); command += line)
        command.pop_back();
      CAPTURE(command);
      CHECK_EQ(shell(folder, command), 0);
      printed = linesOf(folder.read("out"));
      next = 0;
      skips = false;
      ++commands;
    } else if (command.empty()) {
      continue;
    } else if (!line.starts_with("    ")) {
      finish();
    } else if (line == "    ...") {
      skips = true; // any number of lines
    } else {
      CAPTURE(command);
      if (skips)
        while (next < printed.size() && printed[next] != line.substr(4))
          ++next;
      skips = false;
      REQUIRE_MESSAGE(next < printed.size(), "is not printed: ", line);
      CHECK_EQ(printed[next++], line.substr(4));
    }
  }
  CHECK(commands > 5);
}
