// Sets of drawings from a list, as a designer makes them.
#include "site_tool.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

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
    "M-801,Three-phase motors,Direct on line,,5.5,kW,400,3,1500,40,M,,,DOSING,IEC\n";

/// All files below a folder with their bytes, without what names the folder of the run.
std::map<std::string, std::string> filesOf(const fs::path& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    std::ifstream in(entry.path(), std::ios::binary);
    files[entry.path().lexically_relative(folder).generic_string()] =
        std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
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

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);)
    lines.push_back(line);
  return lines;
}

} // namespace

TEST_CASE("a set is the same bytes whatever the number of processes or shards, and what is built stays") {
  const SetFolder folder(goodRows);
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

  CHECK(folder.status("one").exitCode == 0);
  std::string changed = goodRows;
  changed.replace(changed.find("P-102"), 5, "P-112");
  changed.replace(changed.find(",15,kW"), 6, ",20,kW");
  folder.writeList(changed);
  const ToolRun status = folder.status("one");
  CHECK(status.exitCode == 5);
  for (const char* part :
       {"P-112: is new in the list\n", "H-601: its row has changed\n", "P-102: is not in the list any more"})
    CHECK_MESSAGE(status.output.find(part) != std::string::npos, status.output);
}

TEST_CASE(
    "each net of a set has one number, each terminal is there once, and the lists name what the list names") {
  const SetFolder folder(goodRows);
  const ToolRun run = folder.set("build", "set", {"--title", "PUMP STATION", "--date", "2026-01-31"});
  REQUIRE_MESSAGE((run.exitCode == 0 || run.exitCode == 5), run.errors);
  const auto files = filesOf(folder.path("set"));
  for (const char* fault : {"have no number", "drawn more than once", "without data", "have no length"})
    CHECK_MESSAGE(run.errors.find(fault) == std::string::npos, run.errors);
  const std::string& wires = files.at("out/lists/wires.csv");
  CHECK(wires.find('?') == std::string::npos);
  for (const std::string& line : linesOf(wires))
    if (line.find(",GRN,") == std::string::npos) CHECK_MESSAGE(line.front() != ',', line);
  const std::string& motors = files.at("out/lists/motors.csv");
  for (const char* row :
       {"\nP-101,\"Three-phase motors, Direct on line\",Induction,10,HP,460,3,60,1800,14,\"12AWG, PE "
        "10AWG\",120 FT,1.1 %,",
        "\nM-801,\"Three-phase motors, Direct on line\",Induction,5.5,kW,400,3,50,1500,"})
    CHECK_MESSAGE(motors.find(row) != std::string::npos, motors);
  CHECK(files.at("out/lists/cables.csv").find("\nW-P-101,TB1,P-101,") != std::string::npos);
  const std::string& sheet = files.at("sheets/001.json");
  for (const char* part :
       {"\"tag\":\"PROJECT\",\"position\"", "PUMP STATION",
        "\"tag\":\"P-101\",\"standard-code\":\"NEC\","
        "\"length\":\"120 FT\""})
    CHECK_MESSAGE(sheet.find(part) != std::string::npos, std::string(part));
  // Three terminals for each of three motors, four for star-delta and so on: numbered without a gap.
  std::vector<int> terminals;
  for (const std::string& line : linesOf(files.at("out/lists/terminals.csv")))
    if (line.starts_with("TB1,")) terminals.push_back(std::stoi(line.substr(4)));
  for (std::size_t place = 0; place < terminals.size(); ++place)
    CHECK(terminals[place] == static_cast<int>(place) + 1);
  CHECK(terminals.size() > 12);
}

TEST_CASE(
    "a circuit built again with its own choices is what it was; one that cannot be built changes nothing") {
  const SetFolder folder(goodRows);
  static_cast<void>(folder.set("build", "set"));
  const std::string sheet = folder.path("set/sheets/001.json");
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
  REQUIRE(rebuild({"--set", "load=15"}).exitCode == 0);
  CHECK(lists() != before);
  REQUIRE(rebuild({"--set", "load=10"}).exitCode == 0);
  CHECK((lists() == before));
  std::vector<std::string> one = linesOf(where);
  std::vector<std::string> other = linesOf(circuits());
  std::sort(one.begin(), one.end());
  std::sort(other.begin(), other.end());
  CHECK((one == other)); // ids, places and numbers of entities

  const auto bytes = filesOf(folder.path("set"));
  const ToolRun refused = rebuild({"--set", "load=12", "--set", "NONE=1"});
  CHECK(refused.exitCode == 3);
  for (const char* part : {"has no CODE NONE", "its neighbours are 10 and 15"})
    CHECK_MESSAGE(refused.errors.find(part) != std::string::npos, refused.errors);
  CHECK((filesOf(folder.path("set")) == bytes));

  REQUIRE(rebuild({"--copy", "P-150", "--at", "1000,1000"}).exitCode == 0);
  CHECK(linesOf(circuits()).size() == other.size() + 1);
  CHECK(rebuild({"--copy", "P-150", "--at", "2000,1000"}).exitCode == 3);
  CHECK(
      folder.site().run({"report", "terminals", sheet, "--format", "csv"}).errors.find("more than once") ==
      std::string::npos);
}

TEST_CASE("all bad cells of a list are reported at once and nothing is built; the good rows are, where that "
          "is asked for") {
  const SetFolder folder(
      std::string(goodRows) + "P-901,Three-phase motors,Direct on line,,12,HP,460,3,1800,,,,,,\n"
                              "P-902,Three-phase motors,Delta,,10,HP,460,3,1800,,,,,,\n"
                              "P-903,Motors,Direct on line,,10,HP,460,3,1800,,,,,,\n"
                              "P-904,Three-phase motors,Direct on line,,10,HP,470,3,1800,,,,,,\n"
                              "P-905,Three-phase motors,Direct on line,,10,HP,460,3,1800,,,DISC=40,Fuse,,\n"
                              "P-906,Three-phase motors,Direct on line,,,,,,,,,,,,\n"
                              "P-907,Three-phase motors,Direct on line,,10,HP,460,3,1800,,,,,,DIN\n");
  const ToolRun run = folder.set("build", "set");
  CHECK(run.exitCode == 3);
  for (const char* part :
       {"row 9, column load: the table has no 12 HP; its neighbours are 10 and 15",
        "row 10, column type: circuit \"Three-phase motors\" has no type \"Delta\": it has Direct on line, "
        "Reversing",
        "row 11, column circuit: the workbook has no circuit \"Motors\"",
        "row 12, column voltage: the table has no 470 for this load; it has ",
        "row 13, column options: CODE DISC has no option \"40\"", "CODE DISC has no option \"Fuse\"",
        "row 14, column load: is missing", "row 15, column standard-code: "})
    CHECK_MESSAGE(run.errors.find(part) != std::string::npos, run.errors);
  CHECK_FALSE(fs::exists(folder.path("set/sheets")));
  CHECK(folder.set("build", "set", {"--keep-going"}).exitCode == 5);
  CHECK(fs::exists(folder.path("set/sheets/001.json")));

  const std::string other = folder.path("other");
  fs::create_directories(other);
  std::ofstream(other + "/letter.txt") << "mine";
  CHECK(folder.set("build", "other").exitCode == 4);
}
