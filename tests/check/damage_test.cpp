// A check of whatever is left of a site: it ends, says what it finds, and leaves every file as it was.
#include "tool.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

using namespace brenvolt;

namespace {

namespace fs = std::filesystem;

/// A copy of a site with its workbook packed.
class SiteFolder final {
public:
  explicit SiteFolder(const std::string& from) {
    fs::copy(from, path(), fs::copy_options::recursive);
    if (!folder_.has("site/zan_brenvolt.xls"))
      CHECK(folder_.run({"workbook", "pack", path("workbook"), path("zan_brenvolt.xls")}).exitCode == 0);
  }
  [[nodiscard]] std::string path(const std::string& name = {}) const { return folder_.path("site/" + name); }
  [[nodiscard]] std::string read(const std::string& name) const { return folder_.read("site/" + name); }
  void write(const std::string& name, const std::string& text) const {
    static_cast<void>(folder_.write("site/" + name, text));
  }
  [[nodiscard]] ToolRun check(const std::vector<std::string>& more = {}) const {
    std::vector<std::string> words = {"check", folder_.path("site")};
    words.insert(words.end(), more.begin(), more.end());
    return folder_.run(words);
  }
  /// Bytes and time of every file.
  [[nodiscard]] std::map<std::string, std::pair<std::string, fs::file_time_type>> state() const {
    std::map<std::string, std::pair<std::string, fs::file_time_type>> all;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path()))
      if (entry.is_regular_file()) {
        const std::string name = fs::relative(entry.path(), path()).string();
        all[name] = {read(name), entry.last_write_time()};
      }
    return all;
  }

private:
  ToolFolder folder_;
};

/// What an editor that crashed, a bad disk or a slip of the hand leaves of a file.
std::string damaged(std::string bytes, std::mt19937& random) {
  const auto place = [&random](std::size_t size) { return size == 0 ? 0 : random() % size; };
  constexpr std::size_t ways = 4;
  switch (place(ways)) {
  case 0:
    return bytes.substr(0, place(bytes.size() + 1));
  case 1:
    for (std::size_t i = 0; i < 12 && !bytes.empty(); ++i)
      bytes[place(bytes.size())] = static_cast<char>(random());
    return bytes;
  case 2:
    return bytes.insert(place(bytes.size() + 1), bytes.substr(place(bytes.size()), 200));
  default:
    for (std::size_t i = 0; i < 4 && !bytes.empty(); ++i)
      bytes[place(bytes.size())] = std::string_view("()\",;0-9x #@")[place(12)];
    return bytes;
  }
}

} // namespace

TEST_CASE("whatever a file of a site holds, the check ends with findings or without, and writes nothing") {
  std::mt19937 random(20260101); // the same damage in every run
  for (const auto& [from, more, count] :
       {std::tuple(std::string("tests/check/base"), std::vector<std::string>{}, 60),
        std::tuple(std::string("site"), std::vector<std::string>{"--quick"}, 12)}) {
    std::vector<std::string> names;
    for (const auto& [name, content] : SiteFolder(from).state())
      names.push_back(name);
    for (int i = 0; i < count; ++i) {
      const std::string& name = names[static_cast<std::size_t>(random()) % names.size()];
      CAPTURE(name);
      CAPTURE(i);
      const SiteFolder site(from);
      site.write(name, damaged(site.read(name), random));
      const auto before = site.state();
      const ToolRun run = site.check(more);
      CHECK_MESSAGE((run.exitCode == 0 || run.exitCode == 5), run.errors);
      CHECK(site.state() == before);
    }
  }
}

TEST_CASE("tables in a database, and on a server, are checked by the rules of those in files") {
  const auto rulesOf = [](const ToolRun& run) {
    std::vector<std::string> rules;
    for (std::size_t at = run.output.find(" table-"); at != std::string::npos;
         at = run.output.find(" table-", at + 1))
      rules.push_back(run.output.substr(at + 1, run.output.find(':', at) - at - 1));
    std::sort(rules.begin(), rules.end());
    return rules;
  };
  const SiteFolder files("tests/check/base");
  const auto damage = [&files](const std::string& name, const std::string& from, const std::string& to) {
    std::string text = files.read(name);
    REQUIRE(text.find(from) != std::string::npos);
    files.write(name, text.replace(text.find(from), from.size(), to));
  };
  damage("tables/AMP_CU_AWG_NEC.csv", "8 AWG,50", "8 AWG,5O");
  damage("tables/MOTOR_I_CALC_NEC.csv", "i*2.5", "\"i*2,5\"");
  damage("tables/OPT_NEC.csv", "FLA_MULT,1.25", "FLA_MULT,");
  const ToolRun ofFiles = files.check({"--only", "tables"});
  const std::vector<std::string> expected = {"table-number"};
  CHECK_MESSAGE(rulesOf(ofFiles) == expected, ofFiles.output);

  // A database that other programs have filled: columns of text, so that anything fits.
  std::string statements;
  for (const fs::directory_entry& entry : fs::directory_iterator(files.path("tables"))) {
    const std::string table = "\"" + entry.path().stem().string() + "\"";
    statements += ".import --csv \"" + entry.path().string() + "\" " + table + "\n";
  }
  const std::string database = files.path("engineering.db");
  files.write("statements.txt", statements);
  const std::string call =
      "sqlite3 '" + database + "' < '" + files.path("statements.txt") + "' > /dev/null 2>&1";
  if (std::system(call.c_str()) != 0) { // NOLINT(concurrency-mt-unsafe)
    MESSAGE("skipped: there is no program sqlite3");
    return;
  }
  const ToolRun ofDatabase = files.check({"--only", "tables"});
  CHECK_MESSAGE(rulesOf(ofDatabase) == expected, ofDatabase.output);
  checkHolds(
      ofDatabase.output, {"formula-illegal: engineering.db, sheet MOTOR_I_CALC_NEC", "option-missing: "});

  std::string lisp = files.read("site.lsp");
  const std::string named = "(defun c:zan_bv_figure_mccdb_fnam () (site-database))";
  REQUIRE(lisp.find(named) != std::string::npos);
  const std::string server = "odbc:Driver=SQLite3;Database=" + database;
  files.write(
      "site.lsp", lisp.replace(
                      lisp.find(named), named.size(),
                      "(defun c:zan_bv_figure_mccdb_fnam () \"" + server + ";PWD=secret\")"));
  const ToolRun ofServer = files.check({"--only", "tables"});
  if (ofServer.output.find("table-unreadable") != std::string::npos) {
    MESSAGE("skipped: ", ofServer.output);
    return;
  }
  CHECK_MESSAGE(rulesOf(ofServer) == expected, ofServer.output);
  CHECK(ofServer.output.find("secret") == std::string::npos);
}
