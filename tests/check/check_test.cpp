// Every rule finds what it is for: small broken sites, one for each rule, and what the check says of each.
#include "tests/support/golden.h"
#include "tool.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <set>
#include <sstream>
#include <string>
#include <vector>

using namespace brenvolt;

namespace {

namespace fs = std::filesystem;

/// One change of a file of the site.
struct Change {
  enum class Kind { replace, append, remove, clear } kind = Kind::append;
  std::string file;
  std::string before;
  std::string after;
};

struct BrokenSite {
  std::string rule;
  std::vector<Change> changes;
};

/// "\xE4" means a byte that is not UTF-8.
std::string withBytes(std::string text) {
  const std::string escape = "\\xE4";
  if (const std::size_t at = text.find(escape); at != std::string::npos)
    text.replace(at, escape.size(), "\xE4");
  return text;
}

std::vector<BrokenSite> brokenSites() {
  std::vector<BrokenSite> sites;
  std::istringstream in(test::bytesOf("tests/check/broken_sites.txt"));
  std::string file;
  Change::Kind kind = Change::Kind::append;
  char mark = ' ';
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with("#") || line.empty()) continue;
    if (line.starts_with("== ")) {
      sites.push_back({line.substr(3), {}});
      continue;
    }
    std::vector<Change>& changes = sites.back().changes;
    if (line.starts_with("< ")) {
      if (mark != '<') changes.push_back({Change::Kind::replace, file, "", ""});
      std::string& before = changes.back().before;
      before += (before.empty() ? "" : "\n") + line.substr(2);
    } else if (line.starts_with("> ")) {
      if (mark == 'f' && kind != Change::Kind::remove) changes.push_back({kind, file, "", ""});
      Change& change = changes.back();
      const bool isFirst = change.after.empty();
      change.after += (isFirst ? "" : "\n") + withBytes(line.substr(2));
    } else {
      const std::size_t blank = line.find(' ');
      const std::string verb = line.substr(0, blank);
      kind = verb == "delete"  ? Change::Kind::remove
             : verb == "clear" ? Change::Kind::clear
                               : Change::Kind::append;
      file = kind == Change::Kind::append ? line : line.substr(blank + 1);
      if (kind == Change::Kind::remove) changes.push_back({kind, file, "", ""});
      mark = 'f';
      continue;
    }
    mark = line.front();
  }
  return sites;
}

/// The small site in a folder of its own, changed and packed.
class ChangedSite final {
public:
  explicit ChangedSite(const std::vector<Change>& changes) {
    fs::copy("tests/check/base", folder_.path("site"), fs::copy_options::recursive);
    bool hasWorkbook = false;
    for (const Change& change : changes) {
      apply(change);
      hasWorkbook = hasWorkbook || change.file == "zan_brenvolt.xls";
    }
    if (!hasWorkbook)
      CHECK(folder_.run({"workbook", "pack", site("workbook"), site("zan_brenvolt.xls")}).exitCode == 0);
  }

  [[nodiscard]] ToolRun check(const std::vector<std::string>& more) const {
    std::vector<std::string> words = {"check", folder_.path("site")};
    words.insert(words.end(), more.begin(), more.end());
    return folder_.run(words);
  }
  [[nodiscard]] std::string site(const std::string& file) const { return folder_.path("site/" + file); }

private:
  void apply(const Change& change) const {
    const std::string name = "site/" + change.file;
    if (change.kind == Change::Kind::remove) {
      REQUIRE(fs::remove_all(folder_.path(name)) > 0);
      return;
    }
    std::string text = change.kind == Change::Kind::clear ? std::string() : folder_.read(name);
    if (change.kind == Change::Kind::replace) {
      const std::size_t at = text.find(change.before);
      REQUIRE_MESSAGE(at != std::string::npos, change.file, " does not hold ", change.before);
      text.replace(at, change.before.size(), change.after);
    } else {
      text += change.after + "\n";
    }
    static_cast<void>(folder_.write(name, text));
  }

  ToolFolder folder_;
};

/// The ids of all rules, from the table that the tool prints, and the kind of each.
std::vector<std::pair<std::string, std::string>> ruleKinds() {
  std::vector<std::pair<std::string, std::string>> rules;
  std::istringstream in(ToolFolder().run({"check", "--rules"}).output);
  std::string kind;
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with("### ")) kind = line.substr(4);
    if (line.starts_with("| `")) rules.emplace_back(line.substr(3, line.find('`', 3) - 3), kind);
  }
  return rules;
}

} // namespace

TEST_CASE("the site that the others are made from is clean") {
  const ChangedSite site({});
  const ToolRun run = site.check({});
  CHECK_MESSAGE(run.output == "0 errors, 0 warnings, 0 notes\n", run.output);
  CHECK(run.exitCode == 0);
}

TEST_CASE("each rule finds what it is for, and says so in the same words") {
  std::string all;
  std::set<std::string> covered;
  for (const BrokenSite& broken : brokenSites()) {
    CAPTURE(broken.rule);
    const ChangedSite site(broken.changes);
    const ToolRun run = site.check({});
    CHECK(run.exitCode == 5);
    CHECK(run.errors.empty());
    checkHolds(run.output, {" " + broken.rule + ": "});
    all += "== " + broken.rule + "\n" + run.output + "\n";
    covered.insert(broken.rule);
  }
  CHECK_MESSAGE(test::matchesGolden("tests/check/expected.txt", all), "tests/check/expected.txt.actual");
  for (const auto& [rule, kind] : ruleKinds())
    CHECK_MESSAGE(covered.contains(rule), "no broken site for the rule ", rule);
}

TEST_CASE("what is beside a fault neither hides it nor makes a false one") {
  const std::string saved =
      "<BrenvoltHistory Version=\"1.0\"><Circuit Name=\"Motors\"><CircuitType Name=\"Direct\">"
      "<History Name=\"Pump\"/></CircuitType></Circuit></BrenvoltHistory>";
  const std::string motors = test::bytesOf("tests/check/base/tables/MOTOR_NEC.csv");
  using Kind = Change::Kind;
  const Change finds = {
      Kind::replace, "site.lsp", "number assembly) nil", "number assembly) '(\"Z\" \"FU-1\" \"\")"};
  const Change part = {
      Kind::append, "tables/CATALOGSEL.csv", "",
      "DISC,21,FU,Induction,5,HP,460,1,60,1800,Z,FU-8,,1,FUSE,8A,,,,,"};
  const struct {
    std::string name;
    std::vector<Change> changes;
    std::vector<std::string> found;
    std::vector<std::string> absent;
  } rows[] = {
      {"a code that borrows the formulas",
       {{Kind::append, "tables/OPT_DIN.csv", "", "CODE,DEFAULT,LIST"},
        {Kind::append, "tables/MOTOR_DIN.csv", "", motors.substr(0, motors.rfind('\n'))},
        {Kind::replace, "tables/MOTOR_NEC.csv", "2,Induction", "2,Inducton"},
        {Kind::replace, "tables/MOTOR_NEC.csv", "7.6", "76"}},
       {" motor-type-unrated: ", "190 A for the motors or loads of MOTOR_NEC"},
       {"loads of MOTOR_DIN"}},
      {"a project on a server",
       {{Kind::replace, "site.lsp", "(project) nil", "(project) \"odbc:DSN=plant\""}},
       {"0 errors, 0 warnings"},
       {}},
      {"a workbook that is cut off",
       {{Kind::clear, "zan_brenvolt.xls", "", "not a workbook"},
        {Kind::append, "zan_brenvolt.xml", "", saved}},
       {" workbook-unreadable: "},
       {"saved-circuit-gone"}},
      {"a part without a motor to look it up for",
       {finds, part, {Kind::remove, "tables/MOTOR_NEC.csv", "", ""}},
       {" table-missing: "},
       {"saved-part-number"}},
      {"a part whose circuit is not built",
       {finds, part, {Kind::replace, "site.lsp", "(site-insert-and-build template args point)))", "nil))"}},
       {" run-"},
       {"saved-part-number"}},
  };
  for (const auto& row : rows) {
    CAPTURE(row.name);
    const std::string output = ChangedSite(row.changes).check({}).output;
    for (const std::string& found : row.found)
      checkHolds(output, {found});
    for (const std::string& absent : row.absent)
      CHECK_MESSAGE(output.find(absent) == std::string::npos, output);
  }
}

TEST_CASE("every rule and every text that fills one is in German, with nothing left of the English one") {
  std::istringstream english(ToolFolder().run({"check", "--rules"}).output);
  std::istringstream german(ToolFolder().run({"check", "--rules", "--language", "de"}).output);
  const auto namesIn = [](const std::string& line) {
    std::set<std::string> names;
    for (std::size_t at = line.find('{'); at != std::string::npos; at = line.find('{', at + 1))
      names.insert(line.substr(at, line.find('}', at) - at));
    return names;
  };
  for (std::string line, translated; std::getline(english, line) && std::getline(german, translated);) {
    if (!line.starts_with("| `")) continue;
    CAPTURE(line);
    const std::string rule = line.substr(0, line.find('`', 3));
    CHECK(translated.starts_with(rule));
    CHECK(namesIn(line) == namesIn(translated));
    const auto remedyOf = [](const std::string& row) { return row.substr(row.rfind('|', row.size() - 3)); };
    CHECK(remedyOf(line) != remedyOf(translated));
  }
  // Errors of LISP are not the program's own words, nor is what is in quotes or parentheses.
  const auto isOfOthers = [](const std::string& rule) {
    return std::ranges::any_of(
        std::array{"-fails", "-load"}, [&rule](const char* ending) { return rule.ends_with(ending); });
  };
  const std::set<std::string> englishWords = {"the", "is",  "are",   "no",  "not", "of", "has", "have",
                                              "it",  "its", "there", "and", "to",  "at", "than"};
  for (const BrokenSite& broken : brokenSites()) {
    if (isOfOthers(broken.rule)) continue;
    std::istringstream lines(ChangedSite(broken.changes).check({"--quick", "--language", "de"}).output);
    for (std::string line; std::getline(lines, line);) {
      if (!line.starts_with("  ") || line.starts_with("    ")) continue;
      char within = ' ';
      for (char& letter : line) {
        if (within == ' ' && (letter == '"' || letter == '('))
          within = letter == '(' ? ')' : letter;
        else if (within == letter)
          within = ' ';
        if (within != ' ' || letter == ';' || letter == ',' || letter == '.') letter = ' ';
      }
      std::istringstream words(line);
      for (std::string word; words >> word;)
        CHECK_MESSAGE(!englishWords.contains(word), line);
    }
  }
}

TEST_CASE("--only looks at one kind, --json tells the same") {
  const ChangedSite site({{Change::Kind::replace, "workbook/MAIN.csv", "WT02,Line 2", "WT02,"}});
  CHECK(site.check({"--only", "forms"}).exitCode == 0);
  const ToolRun run = site.check({"--only", "workbook", "--json"});
  CHECK(run.exitCode == 5);
  checkHolds(
      run.output, {R"("rule": "code-untitled")", R"("severity": "error")", R"("sheet": "MAIN")",
                   R"("row": 5)", R"("column": 2)", R"("code": "WT02")"});
}

TEST_CASE("a site accepts findings in check.allow, and a row in a column CHECK") {
  const std::string header = "TABLE 2,TITLE 2\n";
  const ChangedSite site(
      {{Change::Kind::replace, "workbook/MAIN.csv", header, "TABLE 2,TITLE 2,CHECK\n"},
       {Change::Kind::append, "workbook/MAIN.csv", "",
        "STAR,Star,,,,,,(draw_text #xyz #scl S),,,,,,,record-without-marker: of an older template"},
       {Change::Kind::append, "workbook/OLD.csv", "", "CODE,TITLE\nA,A"},
       {Change::Kind::append, "check.allow", "", "sheet-unused | * Blatt OLD | kept for reference"}});
  const ToolRun run = site.check({});
  CHECK_MESSAGE(run.output == "0 errors, 0 warnings, 0 notes; 2 allowed\n", run.output);
  CHECK(run.exitCode == 0);
}

TEST_CASE("the manual has all rules, made from the rules themselves") {
  for (const auto& [language, page] : {std::pair{"en", "docs/check.md"}, {"de", "docs/de/check.md"}}) {
    const std::string rules = ToolFolder().run({"check", "--rules", "--language", language}).output;
    CHECK_MESSAGE(test::bytesOf(page).find(rules) != std::string::npos, page);
  }
}

TEST_CASE("the sample site is clean") {
  const ToolRun run = ToolFolder().run({"check", "site"});
  CHECK_MESSAGE(run.exitCode == 0, run.output);
}
