// Sets of drawings from a list, as a designer makes them.
#include "site_tool.h"
#include "tests/support/golden.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <sys/wait.h>

using namespace brenvolt;
namespace fs = std::filesystem;

namespace {

constexpr const char* header = "tag,circuit,type,kind,load,units,voltage,phase,speed,length,length-units,"
                               "options,DISC,description1,standard-code\n";
constexpr const char* goodRows =
    "P-101,Three-phase motors,Direct on line,,10,HP,460,3,1800,120,FT,,Fusible switch;Nontime delay,PUMP 1,\n"
    "P-102,Three-phase motors,Direct on line,,25,HP,460,3,1800,210,FT,OL=2,,PUMP 2,\n"
    "V-301,Three-phase motors,Reversing,,1,HP,460,3,1800,110,FT,,,VALVE,\n"
    "P-201,Three-phase motors,Star-delta,,40,HP,460,3,1800,260,FT,,,HIGH LIFT,\n"
    "S-501,Single-phase motors,Direct on line,,1.5,HP,230,1,1800,60,FT,,,SUMP,\n"
    "H-601,Power feeds,Three-phase,Heater,15,kW,480,3,,140,FT,,,HEATER,\n"
    "C-701,Control circuits,Start and stop station,,,,,,,,,,,STATION,\n"
    "M-801,Three-phase motors,Direct on line,,5.5,kW,400,3,1500,40,M,,,DOSING,IEC\n";

bool hasProgram(const std::string& call) {
  if (std::system((call + " >/dev/null 2>&1").c_str()) == 0) return true;
  MESSAGE("skipped: no " << call.substr(0, call.find(' ')));
  return false;
}

/// All files below a folder with their bytes, without what names the folder of the run.
std::map<std::string, std::string> filesOf(const fs::path& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    files[entry.path().lexically_relative(folder).generic_string()] = test::bytesOf(entry.path());
  }
  return files;
}

class SetFolder final {
public:
  explicit SetFolder(const std::string& rows) { writeList(rows); }

  void writeList(const std::string& rows) const {
    static_cast<void>(site_.folder().write("list.csv", header + rows));
  }
  [[nodiscard]] ToolRun set(
      const std::string& verb, const std::string& out, std::vector<std::string> more = {}) const {
    std::vector<std::string> arguments = {
        "set", verb, site_.folder().path("list.csv"), "--site", site_.site(), "--out", path(out)};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return site_.run(arguments);
  }
  [[nodiscard]] ToolRun status(const std::string& out) const {
    return site_.run({"set", "status", path(out)});
  }
  [[nodiscard]] std::string path(const std::string& name) const { return site_.folder().path(name); }
  [[nodiscard]] const SiteCopy& site() const { return site_; }

private:
  SiteCopy site_;
};

std::vector<std::string> cellsOf(const std::string& line) {
  std::vector<std::string> cells(1);
  bool isQuoted = false;
  for (const char character : line) {
    if (character == '"')
      isQuoted = !isQuoted;
    else if (character == ',' && !isQuoted)
      cells.emplace_back();
    else
      cells.back() += character;
  }
  return cells;
}

/// "TAG:NUMBER" of each pin attribute of an entity, which is one line of a drawing file.
void addPins(const std::string& entity, std::set<std::string>& pins) {
  if (entity.find("\"kind\":\"block-reference\"") == std::string::npos) return;
  std::map<std::string, std::string> texts;
  constexpr std::string_view tagKey = "\"tag\":\"";
  constexpr std::string_view textKey = "\"text\":\"";
  for (std::size_t at = entity.find(tagKey); at != std::string::npos; at = entity.find(tagKey, at + 1)) {
    const std::size_t tag = at + tagKey.size();
    const std::size_t text = entity.find(textKey, tag) + textKey.size();
    texts[entity.substr(tag, entity.find('"', tag) - tag)] =
        entity.substr(text, entity.find('"', text) - text);
  }
  std::string owner = texts["TAGSTRIP"];
  for (const char* tag : {"TAG1", "TAG2"})
    if (owner.empty()) owner = texts[tag];
  for (const auto& [tag, text] : texts)
    if (tag.size() == 8 && tag[0] == 'X' && tag.substr(2, 4) == "TERM")
      pins.insert(owner + ":" + (texts.contains("TERM01") ? texts.at("TERM01") : text));
}

} // namespace

TEST_CASE("a set is the same bytes whatever the number of processes or shards, and what is built stays") {
  const SetFolder folder(goodRows);
  // LISP that counts: for each circuit it begins as for the first one.
  std::ofstream(fs::path(folder.site().site()) / "lisp/sets.lsp", std::ios::app)
      << "(setq ends 0)\n(defun supply-name () (setq ends (+ ends 1)) (string-append \"S\" (number->string "
         "ends)))\n";
  const ToolRun one = folder.set("build", "one", {"--jobs", "1"});
  REQUIRE_MESSAGE((one.exitCode == 0 || one.exitCode == 5), one.errors);
  const auto files = filesOf(folder.path("one"));
  CHECK(files.contains("sheets/001.json"));
  CHECK(files.contains("out/lists/parts.csv"));
  REQUIRE(folder.set("build", "three", {"--jobs", "3"}).exitCode == one.exitCode);
  CHECK((filesOf(folder.path("three")) == files));
  CHECK(folder.set("join", "shards").exitCode == 3);
  for (const char* shard : {"1/2", "2/2"})
    REQUIRE(folder.set("build", "shards", {"--shard", shard}).exitCode == 0);
  REQUIRE(folder.set("join", "shards").exitCode == one.exitCode);
  CHECK((filesOf(folder.path("shards")) == files));

  // A part that is there is not built again: of a spoilt module nothing is asked.
  CHECK(folder.set("build", "one", {"--module", "/nowhere/module"}).exitCode == one.exitCode);
  CHECK((filesOf(folder.path("one")) == files));

  // Ended in the middle, and gone on with.
  static_cast<void>(std::system(("timeout -s INT 0.7 '" + toolPath() + "' set build '" +
                                 folder.path("list.csv") + "' --site '" + folder.site().site() + "' --out '" +
                                 folder.path("cut") + "' >/dev/null 2>&1")
                                    .c_str()));
  CHECK(folder.set("build", "cut").exitCode == one.exitCode);
  CHECK((filesOf(folder.path("cut")) == files));

  CHECK(folder.status("one").exitCode == 0);
  // What somebody has changed is kept until it is given up.
  std::ofstream(folder.path("cut/sheets/001.json"), std::ios::app) << "\n";
  CHECK(folder.set("build", "cut").exitCode == 4);
  CHECK((filesOf(folder.path("cut")) != files));
  CHECK(folder.set("build", "cut", {"--replace"}).exitCode == one.exitCode);
  CHECK((filesOf(folder.path("cut")) == files));
  std::string changed = goodRows;
  changed.replace(changed.find("P-102"), 5, "P-112");
  changed.replace(changed.find(",15,kW"), 6, ",20,kW");
  folder.writeList(changed);
  const ToolRun status = folder.status("one");
  CHECK(status.exitCode == 5);
  checkHolds(
      status.output,
      {"P-112: is new in the list\n", "H-601: its row has changed\n", "P-102: is not in the list any more"});
}

TEST_CASE("each net of a set has one number, each terminal is there once") {
  const SetFolder folder(
      goodRows + std::string("H-602,Power feeds,Single-phase,Heater,3,kW,240,1,,65,FT,,,HEATER,\n"));
  const ToolRun run =
      folder.set("build", "set", {"--frame", "A2", "--title", "PUMP STATION", "--date", "2026-01-31"});
  REQUIRE_MESSAGE((run.exitCode == 0 || run.exitCode == 5), run.errors);
  const auto files = filesOf(folder.path("set"));
  for (const char* fault : {"have no number", "drawn more than once", "without data", "have no length"})
    CHECK_MESSAGE(run.errors.find(fault) == std::string::npos, run.errors);
  const std::string& wires = files.at("out/lists/wires.csv");
  CHECK(wires.find('?') == std::string::npos);
  for (const std::string& line : linesOf(wires))
    if (line.find(",GRN,") == std::string::npos) CHECK_MESSAGE(line.front() != ',', line);
  // Pins as the drawings have them, read without the code that makes the lists.
  std::set<std::string> pins;
  for (const auto& [name, text] : files)
    if (name.starts_with("sheets/"))
      for (const std::string& entity : linesOf(text))
        addPins(entity, pins);
  for (const std::string& line : linesOf(wires)) {
    const std::vector<std::string> cells = cellsOf(line);
    if (cells[0] == "number") continue;
    CHECK_MESSAGE(pins.contains(cells[3]), line);
    CHECK_MESSAGE(pins.contains(cells[4]), line);
  }
  // Counted by hand on the printed sheets: wires with their supply lines and grounding conductor, devices.
  const auto count = [](const std::string& text, const std::vector<std::string>& words) {
    const std::vector<std::string> lines = linesOf(text);
    return std::count_if(lines.begin(), lines.end(), [&words](const std::string& line) {
      return std::any_of(words.begin(), words.end(), [&line](const std::string& word) {
        return line.find(word) != std::string::npos;
      });
    });
  };
  const auto tags = [&files](const std::string& circuit) {
    std::set<std::string> found;
    for (const std::string& line : linesOf(files.at("out/lists/parts.csv"))) {
      std::istringstream words(cellsOf(line).back());
      for (std::string word; words >> word;)
        if (word.find(circuit) != std::string::npos) found.insert(word.substr(0, word.find(',')));
    }
    return found.size();
  };
  const std::string& terminalRows = files.at("out/lists/terminals.csv");
  const struct {
    const char* circuit;
    const char* load;
    long wires;
    std::size_t devices;
    long terminals;
  } counted[] = {
      {"P101", "P-101", 32, 10, 3},
      {"H601", "H-601", 10, 1, 3},
      {"C701", "C-701", 8, 5, 0},
      {"V301", "V-301", 42, 11, 3},
      {"P201", "P-201", 51, 12, 3}};
  for (const auto& row : counted) {
    CAPTURE(row.circuit);
    const std::string load = row.load + std::string(":");
    CHECK(count(wires, {row.circuit + std::string("-"), load}) == row.wires);
    CHECK(tags(row.circuit) == row.devices);
    CHECK(count(terminalRows, {"," + load}) == row.terminals);
  }
  CHECK(count(terminalRows, {"C701-"}) == 2);
  for (const std::string& line : linesOf(files.at("out/lists/sheets.csv")))
    if (!line.starts_with("sheet,")) {
      const std::vector<std::string> cells = cellsOf(line);
      CHECK_MESSAGE((cells[6] == "0" && cells[7] == "0"), line); // nets without a number, with several
    }
  const std::string& motors = files.at("out/lists/motors.csv");
  checkHolds(
      motors, {"\nP-101,\"Three-phase motors, Direct on line\",Induction,10,HP,460,3,60,1800,14,\"12AWG, PE "
               "12AWG\",120 FT,1.1 %,",
               "\nM-801,\"Three-phase motors, Direct on line\",Induction,5.5,kW,400,3,50,1500,",
               ",CB-H601 25A,", ",CB-H602 20A (14AWG: 15A at most),"});
  CHECK(run.errors.find("motors: 1 loads have a breaker or fuse above the limit") != std::string::npos);
  CHECK(files.at("out/lists/cables.csv").find("\nW-P-101,TB1,P-101,") != std::string::npos);
  const std::string& sheet = files.at("sheets/001.json");
  checkHolds(
      sheet, {"\"tag\":\"PROJECT\",\"position\"", "PUMP STATION",
              "\"tag\":\"P-101\",\"standard-code\":\"NEC\","
              "\"length\":\"120 FT\""});
  // Three terminals for each of three motors, four for star-delta and so on: numbered without a gap.
  std::vector<int> terminals;
  for (const std::string& line : linesOf(files.at("out/lists/terminals.csv")))
    if (line.starts_with("TB1,")) terminals.push_back(std::stoi(line.substr(4)));
  for (std::size_t place = 0; place < terminals.size(); ++place)
    CHECK(terminals[place] == static_cast<int>(place) + 1);
  CHECK(terminals.size() > 12);
}

TEST_CASE("a size that a list fixes is that of the conductors, and stays when the circuit is built again") {
  const SetFolder folder(goodRows);
  const std::string columns =
      "tag,circuit,type,kind,load,units,voltage,phase,speed,length,length-units,wire-size,configuration,"
      "standard-code\n";
  const auto write = [&](const std::string& rows) {
    static_cast<void>(folder.site().folder().write("list.csv", columns + rows));
  };
  write("H-1,Power feeds,Single-phase,Heater,3,kW,240,1,,65,FT,5 AWG,,\n"
        "H-2,Power feeds,Single-phase,Heater,99,kW,240,1,,65,FT,thick,,\n"
        "C-1,Control circuits,Start and stop station,,,,,,,,,12,,\n"
        "P-1,Three-phase motors,Direct on line,,,,,,,,,12,Pump 10 HP,\n"
        "M-1,Three-phase motors,Direct on line,,5.5,kW,400,3,1500,40,M,3,,IEC\n");
  const ToolRun refused = folder.set("build", "set");
  CHECK(refused.exitCode == 3);
  checkHolds(
      refused.errors,
      {"row 2, column wire-size: the tables have no size \"5 AWG\" with an ampacity at 75C; its neighbours "
       "are 6 AWG and 4 AWG",
       "row 3, column wire-size: the tables have no size \"thick\"",
       "row 3, column load: the table has no 99",
       "row 4, column wire-size: a circuit of this type has no motor", "row 5, column wire-size: comes from",
       "row 6, column wire-size: the tables have no size \"3\" with an ampacity at 70C; its neighbours are "
       "2.5 mm2 and 4 mm2"});
  write("H-1,Power feeds,Single-phase,Heater,3,kW,240,1,,65,FT,12 AWG,,\n"
        "P-2,Three-phase motors,Direct on line,,10,HP,460,3,1800,1200,FT,14,,\n"
        "P-3,Three-phase motors,\"Two motors, one feeder\",,10,HP,460,3,1800,120,FT,8,,\n"
        "P-4,Three-phase motors,Direct on line,,25,HP,460,3,1800,,,250,,\n"
        "M-1,Three-phase motors,Direct on line,,5.5,kW,400,3,1500,40,M,6 mm\u00b2,,IEC\n");
  const ToolRun run = folder.set("build", "set", {"--frame", "A1"});
  CHECK(run.exitCode == 5);
  checkHolds(
      run.errors,
      {"row 3, column wire-size: 14 AWG carries 16 A under these conditions, less than the design "
       "current of 17.5 A; the tables propose 6 AWG",
       "row 3, column wire-size: 14 AWG has a voltage drop of "});
  CHECK(run.errors.find("row 2") == std::string::npos);
  CHECK(run.errors.find("240.4(D)") == std::string::npos);
  const std::string sheet = folder.path("set/sheets/001.json");
  // The grounding conductor grows with them: 8 AWG beside the 6 AWG that the current requires, 16.51 x 250 / 26.24 =
  // 157.3 kcmil beside 250; in mm2 it is as large as they are.
  checkHolds(
      folder.site().run({"report", "motors", sheet, "--format", "csv"}).output,
      {"\"250KCMIL, PE 3/0AWG\"", "\"8AWG, PE 8AWG\"", "\"6mm2, PE 6mm2\""});
  const auto motors = [&] {
    std::string text;
    for (const std::string& line :
         linesOf(folder.site().run({"report", "motors", sheet, "--format", "csv"}).output))
      if (const std::vector<std::string> cells = cellsOf(line); cells.front() != "tag")
        text += cells[0] + " " + cells[3] + " " + cells[10].substr(0, cells[10].find(',')) + "; ";
    return text;
  };
  CHECK(motors() == "H-1 3 12AWG; P-2 10 14AWG; P-3A 10 8AWG; P-3B 10 8AWG; P-4 25 250KCMIL; M-1 5.5 6mm2; ");
  const auto rebuild = [&](const char* circuit, const char* choice) {
    return folder.site().run(
        {"rebuild", sheet, "--circuit", circuit, "--set", choice, "--site", folder.site().site()});
  };
  const ToolRun grown = rebuild("H-1", "load=5");
  CHECK(grown.exitCode == 5);
  checkHolds(grown.errors, {"H-1: wire-size: 12 AWG carries 20 A", "the tables propose 10 AWG"});
  CHECK(rebuild("P-3B", "wire-size=6").exitCode == 0);
  // A feeder's fuses of 60 A or 100 A: by the motors at most 35 A + 14 A, or what its conductors allow if that is more.
  const struct {
    const char* feeder;
    const char* rating;
    const char* text; ///< empty for none
  } feeders[] = {
      {"FEED=1", "DISC=10,1", "FU-P3 60A (feeder 10AWG: 49A at most)"},
      {"FEED=2", "DISC=10,1", "FU-P3 60A (feeder 8AWG: 50A at most)"},
      {"FEED=3", "DISC=10,1", ""},
      {"FEED=3", "DISC=10,2", "FU-P3 100A (feeder 6AWG: 70A at most)"},
      {"FEED=5", "DISC=10,2", ""},
      {"FEED=1", "DISC=20,2", ""}};
  for (const auto& row : feeders) {
    CAPTURE(row.feeder);
    const ToolRun built = folder.site().run(
        {"rebuild", sheet, "--circuit", "P-3", "--set", row.feeder, "--set", row.rating, "--site",
         folder.site().site()});
    CHECK(built.exitCode == (*row.text == '\0' ? 0 : 5));
    checkHolds(built.errors, {row.text});
    const ToolRun report = folder.site().run({"report", "motors", sheet, "--format", "csv"});
    CHECK((report.errors.find("2 motors have a feeder") != std::string::npos) == (*row.text != '\0'));
    CHECK((report.output.find("(feeder ") != std::string::npos) == (*row.text != '\0'));
    checkHolds(report.output, {row.text});
  }
  CHECK(rebuild("P-3", "DISC=10,2").exitCode == 5);
  CHECK(rebuild("P-3B", "load=60").exitCode == 5);
  checkHolds(
      folder.site().run({"report", "motors", sheet, "--format", "csv"}).output,
      {"FU-P3 100A (feeder 10AWG carries 35A, its motors need 110.25A)"});
  // A switch without fuses protects nothing, and its feeder is too small all the same.
  CHECK(rebuild("P-3", "DISC=20,1").exitCode == 5);
  checkHolds(
      folder.site().run({"report", "motors", sheet, "--format", "csv"}).output,
      {"(feeder 10AWG carries 35A, its motors need 110.25A)"});
  CHECK(rebuild("P-3", "DISC=10,2").exitCode == 5);
  CHECK(rebuild("P-3B", "load=10").exitCode == 5); // of 10 AWG still
  CHECK(rebuild("P-3", "FEED=5").exitCode == 0);
  CHECK(rebuild("P-3A", "load=5").exitCode == 0);
  CHECK(rebuild("P-4", "standard-code=NEC").exitCode == 0); // its own
  // The table of grounding conductors goes on with 500 KCMIL above 250.
  CHECK(rebuild("P-2", "wire-size=300").exitCode == 0);
  checkHolds(
      folder.site().run({"report", "motors", sheet, "--format", "csv"}).output,
      {"\"300KCMIL, PE 300KCMIL\""});
  CHECK(rebuild("P-2", "wire-size=14").exitCode == 5);
  CHECK(motors() == "M-1 5.5 6mm2; H-1 5 12AWG; P-3A 5 8AWG; P-3B 10 6AWG; P-4 25 250KCMIL; P-2 10 14AWG; ");
  CHECK(rebuild("H-1", "wire-size=").exitCode == 0);
  checkHolds(motors(), {"H-1 5 10AWG; "});
}

TEST_CASE("a set is one PDF: the same bytes each time, with every tag as text") {
  const SetFolder folder(goodRows);
  static_cast<void>(folder.set("build", "set"));
  std::vector<std::string> arguments = {"print"};
  const auto files = filesOf(folder.path("set"));
  for (const auto& [name, bytes] : files)
    if (name.starts_with("sheets/")) arguments.push_back(folder.path("set/" + name));
  const auto print = [&](const std::string& out) {
    std::vector<std::string> all = arguments;
    all.insert(all.end(), {"--pdf", folder.path(out), "--list", "parts", "--list", "wires"});
    return folder.site().run(all).exitCode;
  };
  REQUIRE(print("a.pdf") == 0);
  REQUIRE(print("b.pdf") == 0);
  const std::string bytes = folder.site().folder().read("a.pdf");
  CHECK(bytes.starts_with("%PDF-1."));
  CHECK(bytes == folder.site().folder().read("b.pdf"));
  CHECK(folder.site().run({"print", arguments[1], "--pdf", folder.path("none/a.pdf")}).exitCode == 4);
  if (!hasProgram("pdftotext -v")) return;
  REQUIRE(
      std::system(("pdftotext '" + folder.path("a.pdf") + "' '" + folder.path("a.txt") + "'").c_str()) == 0);
  const std::string text = folder.site().folder().read("a.txt");
  for (const char* kind : {"motors", "cables"})
    for (const std::string& line : linesOf(files.at(std::string("out/lists/") + kind + ".csv"))) {
      std::string tag = cellsOf(line)[kind == std::string("motors") ? 0 : 2];
      if (tag != "tag" && tag != "to") checkHolds(text, {tag});
    }
  checkHolds(text, {"DS-P101", "P101-FU13", "C701-PB2", "P-101", "P101-T1", "BLK 12AWG", "001."});
}

TEST_CASE("a circuit built again is what it was; one that cannot be built changes nothing") {
  const SetFolder folder(goodRows);
  static_cast<void>(folder.set("build", "set"));
  const std::string sheet = folder.path("set/sheets/001.json");
  const auto sheetOf = [&](const std::string& tag) {
    for (const auto& [name, text] : filesOf(folder.path("set/sheets")))
      if (text.find("\"tag\":\"" + tag + "\"") != std::string::npos) return folder.path("set/sheets/" + name);
    return std::string();
  };
  // Its entities come last now, so the lists are compared line by line.
  const auto lists = [&] {
    std::vector<std::string> lines;
    for (const char* kind : {"parts", "wires", "terminals", "motors", "cables"})
      for (std::string& line : linesOf(folder.site().run({"report", kind, sheet, "--format", "csv"}).output))
        lines.push_back(kind + std::move(line));
    std::sort(lines.begin(), lines.end());
    return lines;
  };
  const auto rebuild = [&](std::vector<std::string> more) {
    more.insert(more.begin(), {"rebuild", sheet, "--circuit", "P-101", "--site", folder.site().site()});
    return folder.site().run(more);
  };
  const auto circuits = [&] { return folder.site().run({"circuits", sheet}).output; };
  const std::vector<std::string> before = lists();
  const std::string where = circuits();
  const auto isWarned = [](const ToolRun& run) {
    REQUIRE(run.exitCode == 0);
    return run.errors.find("had been changed since it was built") != std::string::npos;
  };
  CHECK_FALSE(isWarned(rebuild({"--set", "load=15"})));
  CHECK(lists() != before);
  REQUIRE(
      folder.site()
          .run(
              {"lisp", "--drawing", sheet, "--save", sheet, "-e",
               "(entity-set! (entity-attribute (find-if (lambda (e) (and (equal (entity-get e 'kind) "
               "\"block-reference\")"
               " (entity-attribute e \"TAG1\") (string=? (entity-get (entity-attribute e \"TAG1\") 'text) "
               "\"P-101\")))"
               " (entities-in-space)) \"DESC1\") 'text \"OTHER\")"})
          .exitCode == 0);
  CHECK(isWarned(rebuild({"--set", "load=15"})));
  CHECK_FALSE(isWarned(rebuild({"--set", "load=10"})));
  CHECK((lists() == before));
  std::vector<std::string> one = linesOf(where);
  std::vector<std::string> other = linesOf(circuits());
  std::sort(one.begin(), one.end());
  std::sort(other.begin(), other.end());
  CHECK((one == other)); // ids, places and numbers of entities

  // What `draw` builds is known as it was built, too.
  const std::string drawn = folder.path("drawn.json");
  const std::string site = folder.site().site();
  REQUIRE(
      folder.site()
          .run(
              {"draw", "--site", site, "--circuit", "Three-phase motors", "--type", "Reversing", "--history",
               "Hoist 5 HP", "--out", drawn})
          .exitCode == 0);
  const auto rebuildDrawn = [&] {
    return folder.site().run({"rebuild", drawn, "--circuit", "MTR1", "--set", "load=15", "--site", site});
  };
  for (const char* by : {"0.1,0", "0.2,0", "-0.3,0"}) // leaves it at 5.6e-17
    static_cast<void>(folder.site().done({"circuits", drawn, "--move", "MTR1", "--by", by}));
  const ToolRun untouched = rebuildDrawn();
  REQUIRE_MESSAGE(untouched.exitCode == 0, untouched.errors);
  CHECK_MESSAGE(untouched.errors.find("by hand") == std::string::npos, untouched.errors);
  REQUIRE(
      folder.site()
          .run({"lisp", "--drawing", drawn, "--save", drawn, "-e", "(entity-erase (entity-last))"})
          .exitCode == 0);
  CHECK(isWarned(rebuildDrawn()));

  const auto bytes = filesOf(folder.path("set"));
  CHECK(rebuild({"--set", "lfd=12"}).errors.find("lfd: is neither a CODE") != std::string::npos);
  const ToolRun refused = rebuild({"--set", "load=12", "--set", "NONE=1"});
  CHECK(refused.exitCode == 3);
  checkHolds(refused.errors, {"NONE: is neither a CODE", "its neighbours are 10 and 15"});
  CHECK((filesOf(folder.path("set")) == bytes));

  // A circuit of a code without tables of its own asks each time, and is refused each time.
  CHECK(
      folder.site()
          .run({"rebuild", sheetOf("M-801"), "--circuit", "M-801", "--site", folder.site().site()})
          .exitCode == 0);
  REQUIRE(rebuild({"--copy", "P-150", "--at", "1000,1000"}).exitCode == 0);
  CHECK(linesOf(circuits()).size() == other.size() + 1);
  CHECK(rebuild({"--copy", "P-150", "--at", "2000,1000"}).exitCode == 3);
  CHECK(
      folder.site().run({"report", "terminals", sheet, "--format", "csv"}).errors.find("more than once") ==
      std::string::npos);
}

TEST_CASE(
    "a circuit that is built again keeps each motor's data and wires, except of the motor that is named") {
  const SiteCopy site;
  const std::string drawing = site.folder().path("drawing.json");
  const auto draw = [&](const char* type, const char* history) {
    site.done(
        {"draw", "--site", site.site(), "--circuit", "Three-phase motors", "--type", type, "--history",
         history, "--out", drawing});
  };
  const auto rebuild = [&](const char* circuit, const char* choice) {
    return site.run({"rebuild", drawing, "--circuit", circuit, "--set", choice, "--site", site.site()});
  };
  /// Tag, load and wires of each motor.
  const auto motors = [&] {
    std::string text;
    for (const std::string& line : linesOf(site.done({"report", "motors", drawing, "--format", "csv"})))
      if (const std::vector<std::string> cells = cellsOf(line); cells.front() != "tag")
        text += cells[0] + " " + cells[3] + " " + cells[10] + "; ";
    return text;
  };
  draw("Two motors, one feeder", "Two pumps 10 and 5 HP");
  CHECK(motors() == "MTR1A 10 10AWG, PE 10AWG; MTR1B 5 14AWG, PE 14AWG; ");
  CHECK(rebuild("MTR1A", "FEED=4").exitCode == 0);
  CHECK(motors() == "MTR1A 10 10AWG, PE 10AWG; MTR1B 5 14AWG, PE 14AWG; ");
  CHECK(rebuild("MTR1B", "load=20").exitCode == 0);
  CHECK(motors() == "MTR1A 10 10AWG, PE 10AWG; MTR1B 20 10AWG, PE 10AWG; ");
  CHECK(rebuild("9", "load=15").errors.find("MTR1A, MTR1B") != std::string::npos);
  draw("Direct on line", "Pump 10 HP");
  CHECK(rebuild("MTR1", "OL=2").exitCode == 0);
  CHECK(motors() == "MTR1 10 10AWG, PE 10AWG; ");
  CHECK(
      test::bytesOf(drawing).find(";THWN - Thermoplastic with nylon jacket - dry and wet;75C;") !=
      std::string::npos);

  // Another type: with its motor, and with the options that mean the same there.
  CHECK(
      rebuild("MTR1", "circuit=Single-phase motors").errors.find("\"3\" does not fit") != std::string::npos);
  CHECK(rebuild("MTR1", "type=Star-delta").exitCode == 0);
  CHECK(motors() == "MTR1 10 10AWG, PE 10AWG; ");
  draw("Two motors, one feeder", "Two pumps 10 and 5 HP");
  CHECK(rebuild("MTR1A", "type=Reversing").errors.find("keeps its type") != std::string::npos);

  // A row with a configuration and an option.
  const ToolRun built = site.run(
      {"set", "build",
       site.folder().write(
           "list.csv", "tag,circuit,type,configuration,DISC\n"
                       "P-1,Three-phase motors,Direct on line,Pump 10 HP,Fusible switch\n"),
       "--site", site.site(), "--out", site.folder().path("set")});
  CHECK_MESSAGE(built.exitCode == 5, built.errors); // the cable has no length
  const std::string sheet = site.folder().path("set/sheets/001.json");
  checkHolds(
      site.done({"report", "motors", sheet, "--format", "csv"}), {"P-1,", ",10,HP,460,3,", "FU-P1 25A"});
}

TEST_CASE("all bad cells of a list are reported at once; the good rows are built where asked for") {
  const SetFolder folder(
      std::string(goodRows) + "P-901,Three-phase motors,Direct on line,,12,HP,460,3,1800,,,,,,\n"
                              "P-902,Three-phase motors,Delta,,10,HP,460,3,1800,,,,,,\n"
                              "P-903,Motors,Direct on line,,10,HP,460,3,1800,,,,,,\n"
                              "P-904,Three-phase motors,Direct on line,,10,HP,470,3,1800,,,,,,\n"
                              "P-905,Three-phase motors,Direct on line,,10,HP,460,3,1800,,,DISC=40,Fuse,,\n"
                              "P-906,Three-phase motors,Direct on line,,,,,,,,,,,,\n"
                              "P-907,Three-phase motors,Direct on line,,10,HP,460,3,1800,,,,,,DIN\n"
                              "P-908,Three-phase motors,Direct on line,,10,HP,230,1,1800,120,FT,,,,\n"
                              "P-909,Single-phase motors,Direct on line,,10,HP,230,3,1800,120,FT,,,,\n"
                              "P-910,Single-phase motors,Direct on line,,25,HP,230,,1800,120,FT,,,,\n"
                              "P-911,Three-phase motors,Direct on line,,50,HP,230,3,1800,1500,FT,,,,\n");
  const ToolRun run = folder.set("build", "set");
  CHECK(run.exitCode == 3);
  checkHolds(
      run.errors,
      {"row 10, column load: the table has no 12 HP; its neighbours are 10 and 15",
       "row 11, column type: circuit \"Three-phase motors\" has no type \"Delta\": it has Direct on line, "
       "Reversing",
       "row 12, column circuit: the workbook has no circuit \"Motors\"",
       "row 13, column voltage: the table has no 470 for this load; it has ",
       "row 14, column options: CODE DISC has no option \"40\"",
       "row 14, column DISC: CODE DISC has no option \"Fuse\"", "row 15, column load: is missing",
       "row 16, column standard-code: ", "row 17, column phase: \"1\" does not fit",
       "row 18, column phase: \"3\" does not fit",
       "row 19, column load: the table has no 25 HP; its neighbours are 10",
       "row 20, column length: the tables have no impedance for 700 KCMIL"});
  CHECK_FALSE(fs::exists(folder.path("set/sheets")));
  CHECK(folder.set("build", "set", {"--keep-going"}).exitCode == 5);
  CHECK(fs::exists(folder.path("set/sheets/001.json")));

  const std::string other = folder.path("other");
  fs::create_directories(other);
  std::ofstream(other + "/letter.txt") << "mine";
  CHECK(folder.set("build", "other").exitCode == 4);
}

TEST_CASE("a list is the same list as text, sheet or table; what cannot be one is refused by name") {
  const SetFolder folder(goodRows);
  const std::string rows =
      "tag,circuit,type,load,units,voltage,phase\n"
      "P-1,Three-phase motors,Direct on line,12,HP,460,3\n"
      "P-2,Three-phase motors,Delta,10,HP,460,3\nP-2,Three-phase motors,Direct on line,10,HP,460,3\n";
  fs::create_directories(folder.path("book"));
  std::ofstream(folder.path("book/Motors.csv")) << rows;
  std::ofstream(folder.path("m.csv")) << rows;
  REQUIRE(folder.site().run({"workbook", "pack", folder.path("book"), folder.path("m.xls")}).exitCode == 0);
  REQUIRE(folder.site().run({"import", folder.path("m.db"), folder.path("book")}).exitCode == 0);
  const auto faults = [&](const std::string& source) {
    const ToolRun run = folder.site().run(
        {"set", "build", folder.path(source), "--site", folder.site().site(), "--out", folder.path("none")});
    CHECK(run.exitCode == 3);
    std::string text;
    for (std::string line : linesOf(run.errors))
      if (const std::size_t row = line.find(", row "); row != std::string::npos)
        text += line.substr(row) + "\n";
    return text.empty() ? run.errors : text;
  };
  const std::string expected = faults("m.csv");
  checkHolds(
      expected, {", row 2, column load: the table has no 12 HP",
                 ", row 3, column type: ", ", row 4, column tag: \"P-2\" is the tag of row 3 too"});
  for (const char* source : {"m.xls", "m.xls:Motors", "m.db", "m.db:Motors"}) {
    CAPTURE(source);
    CHECK(faults(source) == expected);
  }
  std::ofstream(folder.path("column.csv")) << "tag,circuit,type,load,units,voltage,phase,sped\n"
                                              "P-1,Three-phase motors,Direct on line,10,HP,460,3,1800\n"
                                              "P-2,Three-phase motors,Direct on line,10,HP,460,3,1800\n";
  CHECK(
      faults("column.csv") == ", row 1, column sped: is neither a CODE of the workbook nor a column of a "
                              "list; did you mean speed?\n");
  CHECK(faults("m.xls:Pumps").find("has no table or sheet \"Pumps\"") != std::string::npos);
  std::ofstream(folder.path("m.xlsx")) << "PK";
  CHECK(faults("m.xlsx").find(".xlsx workbooks cannot be read yet") != std::string::npos);
  for (const int count : {50'000, 100'001}) {
    std::string many = "tag,circuit,type\n";
    for (int row = 0; row < count; ++row)
      many += "P-" + std::to_string(row) + ",c,t\n";
    std::ofstream(folder.path("many.csv")) << many;
    const std::string expectedPart =
        count == 50'000 ? ", row 50001, column circuit: " : "has 100001 rows; a set has at most 100000";
    CHECK(faults("many.csv").find(expectedPart) != std::string::npos);
  }
}

TEST_CASE("formulas of a workbook's list count by their results, and merged cells are reported") {
  if (!hasProgram("ssconvert --version")) return;
  const SetFolder folder(goodRows);
  std::string cells;
  const auto cell = [&cells](int row, int column, const std::string& text) {
    const char* type = text.find_first_not_of("0123456789") == std::string::npos ? "40" : "60";
    cells += "<gnm:Cell Row=\"" + std::to_string(row) + "\" Col=\"" + std::to_string(column) + "\"" +
             (text[0] == '=' ? "" : std::string(" ValueType=\"") + type + "\"") + ">" + text + "</gnm:Cell>";
  };
  const std::vector<std::vector<const char*>> rows = {
      {"tag", "circuit", "type", "load", "units", "voltage", "phase", "location"},
      {"P-1", "Three-phase motors", "Direct on line", "=5+7", "HP", "460", "3", "MCC-1"},
      {"P-2", "Three-phase motors", "Direct on line", "=5*2", "HP", "460", "3", ""}};
  for (std::size_t row = 0; row < rows.size(); ++row)
    for (std::size_t column = 0; column < rows[row].size(); ++column)
      if (*rows[row][column] != '\0')
        cell(static_cast<int>(row), static_cast<int>(column), rows[row][column]);
  std::ofstream(folder.path("m.gnumeric"))
      << "<gnm:Workbook "
         "xmlns:gnm=\"http://www.gnumeric.org/v10.dtd\"><gnm:SheetNameIndex><gnm:SheetName "
         "gnm:Cols=\"256\" "
         "gnm:Rows=\"65536\">M</gnm:SheetName></gnm:SheetNameIndex><gnm:Sheets><gnm:Sheet><gnm:Name>M</"
         "gnm:Name>"
         "<gnm:Cells>"
      << cells
      << "</gnm:Cells><gnm:MergedRegions><gnm:Merge>H2:H3</gnm:Merge></gnm:MergedRegions></gnm:Sheet></"
         "gnm:Sheets>"
         "</gnm:Workbook>";
  REQUIRE(
      std::system(("cd '" + folder.path("") + "' && ssconvert m.gnumeric m.xls >/dev/null 2>&1").c_str()) ==
      0);
  const ToolRun run = folder.site().run(
      {"set", "build", folder.path("m.xls"), "--site", folder.site().site(), "--out", folder.path("none")});
  CHECK(run.exitCode == 3);
  CHECK(run.errors.find(", row 2, column load: the table has no 12 HP") != std::string::npos);
  CHECK(
      run.errors.find(", row 2, column location: its cell is merged with others, to row 3") !=
      std::string::npos);
  CHECK(std::count(run.errors.begin(), run.errors.end(), '\n') == 2); // 10 HP is there
}

TEST_CASE("a disk that gets full leaves what is whole, and the next run goes on") {
  const SetFolder folder(goodRows);
  const ToolRun one = folder.set("build", "one");
  fs::create_directories(folder.path("disk"));
  const std::string build = "'" + toolPath() + "' set build '" + folder.path("list.csv") + "' --site '" +
                            folder.site().site() + "' --out '" + folder.path("disk/set") + "' --keep-going";
  std::ofstream(folder.path("run.sh"))
      << "mount -t tmpfs -o size=400k none '" << folder.path("disk") << "' || exit 77\n"
      << build << " 2>'" << folder.path("errors") << "'; echo $? >'" << folder.path("full")
      << "'\nmount -o remount,size=20m '" << folder.path("disk") << "'\n"
      << build << "; cp -r '" << folder.path("disk/set") << "' '" << folder.path("kept") << "'\n";
  if (std::system(("unshare -rm sh '" + folder.path("run.sh") + "' >/dev/null 2>&1").c_str()) != 0 &&
      !fs::exists(folder.path("full"))) {
    MESSAGE("skipped: no disk can be mounted");
    return;
  }
  CHECK(folder.site().folder().read("full") == "4\n");
  CHECK(folder.site().folder().read("errors").find("No space left on device") != std::string::npos);
  auto kept = filesOf(folder.path("kept"));
  auto files = filesOf(folder.path("one"));
  // They name the list as seen from their folders.
  CHECK((kept.erase("set.json") == 1 && files.erase("set.json") == 1));
  CHECK((kept == files));
  CHECK(one.exitCode != 4);
}

TEST_CASE("location begins sheets, a smaller scale needs fewer, and an unattended build sizes itself") {
  const SetFolder folder("P-1,Three-phase motors,Direct on line,,10,HP,460,3,1800,900,FT,,,A,\n"
                         "P-2,Three-phase motors,Direct on line,,10,HP,460,3,1800,900,FT,,,B,\n");
  const auto sheets = [&](const std::string& out, const std::vector<std::string>& more) {
    const ToolRun run = folder.set("build", out, more);
    CHECK_MESSAGE((run.exitCode == 0 || run.exitCode == 5), run.errors);
    return linesOf(folder.site().folder().read(out + "/out/lists/sheets.csv")).size() - 1;
  };
  CHECK(sheets("a", {}) == 2);
  CHECK(sheets("b", {"--scale", "0.8"}) == 1);
  CHECK(folder.set("build", "c", {"--scale", "0"}).exitCode == 3);
  // The lookup proposes a size for the voltage drop of 900 feet; an unattended build looks at the current alone.
  sheets("d", {"--sizing", "build"});
  const std::string motors = folder.site().folder().read("d/out/lists/motors.csv");
  CHECK(motors.find("12AWG") != std::string::npos);
  CHECK(motors != folder.site().folder().read("a/out/lists/motors.csv"));
  folder.writeList("");
  std::string list = folder.site().folder().read("list.csv");
  list.insert(0, "location,");
  list += "L-2,P-1,Three-phase motors,Direct on line,,10,HP,460,3,1800,90,FT,,,A,\n"
          "L-1,P-2,Three-phase motors,Direct on line,,10,HP,460,3,1800,90,FT,,,B,\n"
          "L-2,P-3,Power feeds,Three-phase,Heater,15,kW,480,3,,140,FT,,,C,\n";
  std::ofstream(folder.path("list.csv")) << list;
  CHECK(sheets("e", {"--order", "location", "--frame", "A1"}) == 2);
  CHECK(folder.site().folder().read("e/out/lists/sheets.csv").find("\n002,P-1 - P-3,") != std::string::npos);
  // Where a line goes on: from the first circuit of a location to the next one.
  CHECK(folder.site().folder().read("e/sheets/002.json").find(">002.") != std::string::npos);
}

TEST_CASE("the lines for Slurm and GNU parallel in the manual build the same set") {
  const SetFolder folder(goodRows);
  const auto expected = [&] {
    static_cast<void>(folder.set("build", "one"));
    return filesOf(folder.path("one"));
  }();
  fs::rename(folder.path("list.csv"), folder.path("motors.csv"));
  std::ofstream(folder.path("machines")) << ":\n"; // this one
  const auto manual = linesOf(test::bytesOf("docs/set.md"));
  const std::string cluster = "bash '" + fs::absolute("tests/site/one_machine_cluster.sh").string() + "' '" +
                              folder.path("cluster") + "' ";
  for (const auto& [program, before] :
       {std::pair<std::string, std::string>("sbatch", cluster), {"parallel", ""}}) {
    CAPTURE(program);
    const auto line = std::find_if(manual.begin(), manual.end(), [&](const std::string& one) {
      return one.starts_with("    " + program + " ");
    });
    REQUIRE(line != manual.end());
    if (!hasProgram(program + " --version")) continue;
    const int status = std::system(("cd '" + folder.path("") + "' && rm -rf plant && PATH=\"" +
                                    fs::path(toolPath()).parent_path().string() +
                                    ":$PATH\" && export PATH && " + before + *line + " >/dev/null 2>&1")
                                       .c_str());
    constexpr int skipped = 77;
    if (WEXITSTATUS(status) == skipped) continue;
    REQUIRE(status == 0);
    static_cast<void>(folder.site().run(
        {"set", "join", folder.path("motors.csv"), "--site", folder.site().site(), "--out",
         folder.path("plant")}));
    auto files = filesOf(folder.path("plant"));
    CHECK(files.erase("set.json") == 1); // names its list
    auto others = expected;
    others.erase("set.json");
    CHECK((files == others));
  }
}
