// The subcommands on engineering tables as a user meets them: figures, forms of output, messages and exit codes.
#include "simhost/json/json_text.h"
#include "tool.h"

#include <doctest/doctest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

using brenvolt::ToolFolder;
using brenvolt::ToolRun;

namespace {

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

/// 40 hp at 460 V over 250 ft.
std::vector<std::string> wireCircuit(std::initializer_list<const char*> more = {}) {
  std::vector<std::string> words = {"wire",      "--site", "site",    "--fla", "52",
                                    "--voltage", "460",    "--phase", "3"};
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

nlohmann::ordered_json jsonOf(const ToolFolder& folder, std::vector<std::string> words) {
  words.emplace_back("--json");
  return simhost::parseJson(folder.run(words).output);
}

} // namespace

TEST_CASE("a formula gives its shortest value, an illegal one a message") {
  const ToolFolder folder;
  CHECK(folder.run({"expr", "if (i>10) then 3 else 4", "11"}).output == "3\n");
  CHECK(folder.run({"expr", "--", "-2^2"}).output == "4\n");
  CHECK(folder.run({"expr", "i/4", "3"}).output == "0.75\n");
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"expr", "abc"}, {"expr", "1", "two"}, {"expr", "--", "10^400"}}) {
    const ToolRun run = folder.run(words);
    CHECK(run.exitCode == 3);
    CHECK(contains(run.errors, "\""));
  }
  CHECK(folder.run({"expr"}).exitCode == 1);
}

TEST_CASE("the page of the wire manual is what the tool prints") {
  const ToolFolder folder;
  const ToolRun run = folder.run(wireCircuit(
      {"--length", "250", "--units", "FT", "--raceway", "PVC", "--power-factor", "0.85", "--drop-limit", "3",
       "--explain"}));
  REQUIRE(run.exitCode == 0);
  std::ifstream in("docs/wire-sizing.md", std::ios::binary);
  const std::string page((std::istreambuf_iterator<char>(in)), {});
  CHECK(contains(page, "```text\n" + run.output + "```\n"));
}

TEST_CASE("one circuit answers the same in text, CSV and JSON") {
  const ToolFolder folder;
  const nlohmann::ordered_json answer = jsonOf(folder, wireCircuit({"--length", "250"}));
  CHECK(answer["designCurrent"] == 65.0);
  CHECK(answer["proposed"] == "4 AWG");
  CHECK(answer["grounding"][0] == "6 AWG");
  CHECK(answer["circuit"]["power-factor"]["from"] == "OPT_NEC, row CODE = M_POWERFACTOR, column DEFAULT");
  CHECK(contains(folder.run(wireCircuit({"--csv"})).output, "\n*,,4 AWG,68,95.59\n"));
  CHECK(contains(folder.run(wireCircuit()).output, "* proposed: 4 AWG"));
}

TEST_CASE("factors, metals, standards and parallel runs choose the sizes that hand arithmetic gives") {
  struct Row {
    const char* arithmetic;
    std::vector<std::string> more;
    const char* size;
    const char* ampacity;
  };
  const Row rows[] = {
      {"no allowance twice: 75C column, 8 AWG 50, 6 AWG 65 is met and passed by",
       {"--continuous", "off"},
       "4 AWG",
       "85"},
      {"min(0.8, 0.7) x 0.88 of 130 A", {"--fill", "7", "--ambient", "40C"}, "2 AWG", "70.84"},
      {"aluminium: 65 / 0.8 needs more than 81.25 A", {"--metal", "AL"}, "2 AWG", "72"},
      {"52 x 1.25 + 20 = 85 needs more than 106.25 A", {"--extra", "20"}, "2 AWG", "92"},
      {"90C column", {"--insulation", "THHN"}, "4 AWG", "76"},
  };
  const ToolFolder folder;
  for (const Row& row : rows) {
    CAPTURE(row.arithmetic);
    std::vector<std::string> words = wireCircuit();
    words.insert(words.end(), row.more.begin(), row.more.end());
    const nlohmann::ordered_json answer = jsonOf(folder, words);
    CHECK(answer["proposed"] == row.size);
    for (const nlohmann::ordered_json& candidate : answer["rows"])
      if (candidate["proposed"] == "*") CHECK(simhost::jsonText(candidate["ampacity"]) == row.ampacity);
  }
  // 400 x 1.25 = 500 A: 1/0 AWG carries 150 A, so ceil(500 / 150) = 4 conductors, 600 A.
  const nlohmann::ordered_json parallel = jsonOf(
      folder,
      {"wire", "--site", "site", "--fla", "400", "--voltage", "480", "--phase", "3", "--parallel", "6"});
  CHECK(parallel["proposed"] == "1/0 AWG");
  CHECK(parallel["circuit"]["min-size"]["value"] == "1/0");
  const nlohmann::ordered_json metric = jsonOf(
      folder, {"wire", "--site", "site", "--standard-code", "IEC", "--fla", "60", "--voltage", "400",
               "--phase", "3", "--length", "80", "--units", "M"});
  CHECK(metric["circuit"]["metal"]["value"] == "CU");
  CHECK(contains(metric["proposed"].get<std::string>(), "mm2"));
}

TEST_CASE("a build's answer, a factor by hand, and why there is no proposal") {
  const ToolFolder folder;
  const auto answer = [&folder](std::vector<std::string> words) {
    const std::vector<std::string> site = {"wire", "--site", "site", "--voltage", "460", "--phase", "3"};
    words.insert(words.begin(), site.begin(), site.end());
    return jsonOf(folder, words);
  };
  struct Row {
    const char* arithmetic;
    std::vector<std::string> words;
    const char* proposed;
    const char* note;
  };
  const Row rows[] = {
      {"52 x 1.25 = 65 <= 85 x 0.8", {"--fla", "52", "--unattended"}, "4 AWG", ""},
      {"54.4 x 1.25 = 68 = 85 x 0.8: a build takes an exact meet",
       {"--fla", "54.4", "--unattended"},
       "4 AWG",
       ""},
      {"which the lookup passes by", {"--fla", "54.4"}, "3 AWG", ""},
      {"the largest for want of a larger one",
       {"--fla", "9000", "--unattended"},
       "2000 KCMIL",
       "no size is large enough for 11250 A: a build draws its wires without a size"},
      {"65 > 85 x 0.7, 65 < 100 x 0.7", {"--fla", "52", "--overall-factor", "0.7"}, "3 AWG", ""},
      {"a size without an impedance has no drop to compare with the limit",
       {"--fla", "52", "--length", "900", "--drop-limit", "0.01"},
       "700 KCMIL",
       "the tables have no impedance for 700 KCMIL: its voltage drop is not known, and the limit is not "
       "applied to it"},
      {"every metric size has one",
       {"--fla", "52", "--standard-code", "IEC", "--length", "900", "--units", "M", "--drop-limit", "0.01"},
       nullptr,
       "no size for 52 A meets the maximum voltage drop of 0.01 percent"},
      {"2 conductors carry no 500 A",
       {"--fla", "4000", "--parallel", "2"},
       nullptr,
       "no set of at most 2 conductors carries 5000 A"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.arithmetic);
    const nlohmann::json found = answer(row.words);
    CHECK(found["proposed"] == (row.proposed == nullptr ? nlohmann::json() : nlohmann::json(row.proposed)));
    CHECK(found.value("note", "") == row.note);
  }
  CHECK(folder.run(wireCircuit()).exitCode == 0);
  // 14 AWG by its conductors, where i*2.5 = 19 asks for 12 AWG.
  CHECK(contains(
      folder
          .run({"wire", "--site", "site", "--voltage", "460", "--phase", "3", "--fla", "7.6", "--unattended"})
          .output,
      "grounding conductor: 14 AWG"));
  for (const char* way : {"--unattended", "--hide-undersized"})
    CHECK(
        folder.run({"wire", "--site", "site", "--voltage", "460", "--phase", "3", "--fla", "9000", way})
            .exitCode == 5);
  const ToolRun refused = folder.run(wireCircuit({"--unattended", "--extra", "5", "--parallel", "3"}));
  CHECK(refused.exitCode == 3);
  CHECK(contains(refused.errors, "--extra: is not used when a build sizes a wire\n--parallel:"));
}

TEST_CASE("every fault of a circuit is named by its option") {
  const ToolFolder folder;
  struct Row {
    std::vector<std::string> words;
    const char* message;
  };
  const Row rows[] = {
      {{"--voltage", "0", "--phase", "2", "--fla", "x"},
       "--voltage: \"0\" must be a number above 0\n--phase"},
      {{"--power-factor", "1.1"}, "--power-factor: \"1.1\" must be a number above 0 and at most 1"},
      {{"--metal", "FE"}, "--metal: there is no table AMP_FE_AWG_NEC"},
      {{"--insulation", "WOOL"}, "--insulation: INSUL_CU_AWG_NEC has no row with INSUL or INSUL_DESC = WOOL"},
      {{"--insulation", "TH'WN"}, "--insulation: \"TH'WN\" must not contain quotes"},
      {{"--length", "10", "--raceway", "WOOD"},
       "is not a column of XL&R_CU_AWG_NEC, which has PVC, AL, STEEL"},
      {{"--length", "10", "--units", "feet"}, "--units: \"feet\" must be FT or M"},
      {{"--standard-code", "NOPE"}, "--standard-code: no tables of \"NOPE\" exist; choose one of IEC, NEC"},
      {{"--overall-factor", "80"}, "--overall-factor: \"80\" must be a number above 0 and at most 2"},
      {{"--multiplier", "0.01"}, "--multiplier: \"0.01\" must be a number from 1 to 3"},
      {{"--ambient", "90C"}, "has no factor for 90 degrees"},
      {{"--parallel", "4", "--min-size", "9/0"}, "AMP_CU_AWG_NEC has no row with SIZE = 9/0"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.message);
    std::vector<std::string> words = {"wire", "--site", "site"};
    words.insert(words.end(), row.words.begin(), row.words.end());
    for (const char* needed : {"--fla", "--voltage", "--phase"})
      if (std::find(words.begin(), words.end(), needed) == words.end())
        words.insert(words.end(), {needed, needed == std::string("--phase") ? "3" : "52"});
    const ToolRun run = folder.run(words);
    CHECK(run.exitCode == 3);
    CHECK_MESSAGE(contains(run.errors, row.message), run.errors);
  }
  CHECK(contains(folder.run({"wire", "--site", "site"}).errors, "--fla: is missing\n--voltage: is missing"));
  CHECK(folder.run({"wire", "--fla", "5"}).exitCode == 1);
}

TEST_CASE("a list of circuits is sized as its circuits one by one, and every bad cell is named in one pass") {
  const ToolFolder folder;
  const std::string list = folder.write(
      "list.csv", "tag,fla,voltage,phase,length\nM1,52,460,3,250\n\"M,2\",12.5,230,1,\nM3,9000,460,3,\n");
  const std::string out = folder.path("result.csv");
  REQUIRE(folder.run({"wire", "--site", "site", "--batch", list, "--out", out}).exitCode == 5);
  CHECK(
      folder.read("result.csv") ==
      "tag,fla,voltage,phase,length,size,count,fill-range,ampacity,load-percent,drop,drop-percent,loss,"
      "yearly-cost,ground,note\n"
      "M1,52,460,3,250,4 AWG,,,68,95.59,6.52,1.42,0.59,$ 413.76,6 AWG,\n"
      "\"M,2\",12.5,230,1,,14 AWG,,,16,97.66,,,,,10 AWG,\n"
      "M3,9000,460,3,,,,,,,,,,,,no size is large enough for the design current of 11250 A\n");

  const std::string bad =
      folder.write("bad.csv", "fla,voltage,phase,raceway\n52,zero,3,\n52,460,3\n,460,5,\n52,460,3,\n");
  const ToolRun run =
      folder.run({"wire", "--site", "site", "--batch", bad, "--out", folder.path("none.csv")});
  CHECK(run.exitCode == 3);
  CHECK(contains(run.errors, "bad.csv, row 2, column voltage: \"zero\""));
  CHECK(contains(run.errors, "bad.csv, row 3: has 3 cells, the header has 4"));
  CHECK(contains(run.errors, "bad.csv, row 4, column fla: is missing"));
  CHECK(contains(run.errors, "bad.csv, row 4, column phase: \"5\" must be 1 or 3"));
  CHECK_FALSE(folder.has("none.csv"));
  const std::string twice = folder.write("twice.csv", "fla,fla,voltage,phase\n52,10,460,3\n");
  CHECK(contains(
      folder.run({"wire", "--site", "site", "--batch", twice, "--out", folder.path("none.csv")}).errors,
      "row 1: names the column fla twice"));
  const std::string open = folder.write("open.csv", "fla,voltage,phase\n52,\"460,3\n52,460,3\n");
  CHECK(contains(
      folder.run({"wire", "--site", "site", "--batch", open, "--out", folder.path("none.csv")}).errors,
      "open.csv, line 2: a closing quote is missing"));
  CHECK(folder.run({"wire", "--site", "site", "--batch", list, "--out", "/proc/none.csv"}).exitCode == 4);
}

TEST_CASE("motors, loads and components come from their tables") {
  const ToolFolder folder;
  const nlohmann::ordered_json motors = jsonOf(
      folder, {"motors", "--site", "site", "--load", "40", "--voltage", "460", "--speed", "1800", "--type",
               "induction"});
  REQUIRE(motors.size() == 1);
  CHECK(motors[0]["fla"] == 52);
  CHECK(jsonOf(folder, {"loads", "--site", "site", "--type", "Heater"})[0]["units"] == "kW");
  // 52 x 2.5 = 130 A, the next breaker is 150 A.
  const std::vector<std::string> components = {"components", "--site", "site", "--type",
                                               "Induction",  "--fla",  "52"};
  CHECK(jsonOf(folder, components)[0]["rating"] == "150A");
  std::vector<std::string> iec = components;
  iec.insert(iec.end(), {"--standard-code", "IEC"});
  CHECK(jsonOf(folder, iec)[0]["rating"] == "63A"); // the next one above the current
  CHECK(folder.run({"components", "--site", "site", "--type", "Steam", "--fla", "52"}).exitCode == 3);
  CHECK(folder.run({"motors", "--site", "site", "--type", "it's"}).exitCode == 3);
}

TEST_CASE("a code standard is known by any of its tables, and what stands in for a missing one is reported") {
  const ToolFolder folder;
  std::filesystem::create_directory(folder.path("own"));
  std::filesystem::copy("site/tables", folder.path("own/tables"), std::filesystem::copy_options::recursive);
  std::string options = folder.read("own/tables/OPT_IEC.csv");
  const std::string name = "FULLNAME,IEC 60364-5-52,\n";
  REQUIRE(contains(options, name));
  folder.write("own/tables/OPT_IEC.csv", options.erase(options.find(name), name.size()));
  for (const char* table : {"FEED", "FILL", "MOTOR_I_MAP"})
    std::filesystem::remove(folder.path("own/tables/" + std::string(table) + "_IEC.csv"));
  struct Row {
    std::vector<std::string> words;
    const char* table; ///< whose fallback is reported; null for none
  };
  for (const Row& row :
       {Row{{"motors", "--voltage", "400"}, nullptr}, Row{{"loads", "--voltage", "480"}, "FEED"},
        Row{{"components", "--type", "Induction", "--fla", "52"}, "MOTOR_I_MAP"},
        Row{{"wire", "--fla", "60", "--voltage", "400", "--phase", "3", "--fill", "5"}, "FILL"}}) {
    std::vector<std::string> words = row.words;
    CAPTURE(words.front());
    words.insert(words.begin() + 1, {"--site", folder.path("own"), "--standard-code", "IEC"});
    const ToolRun run = folder.run(words);
    CHECK_MESSAGE(run.exitCode == 0, run.errors);
    const std::string line = row.table == nullptr ? std::string()
                                                  : std::string("table ") + row.table + "_IEC is missing; " +
                                                        row.table + "_NEC is used instead\n";
    CHECK_MESSAGE(contains(run.errors, line), run.errors);
    CHECK(run.errors.empty() == line.empty());
  }
}

TEST_CASE("a database is made of tables, read with NULL told from empty, and changed only when allowed") {
  const ToolFolder folder;
  folder.write("tables/T.csv", "A,B\n1,\n\"x,\"\"y\",2\n");
  const std::string database = folder.path("out.db");
  // A cell that is not a number stops the import and the building of a site's database.
  folder.write("bad/tables/AMP_CU_AWG_NEC.csv", "SIZE,SIZE_DESC,75C\n14,14 AWG,2O\n12,12 AWG,25\n");
  const std::vector<std::string> bad = {"import", folder.path("bad.db"), folder.path("bad/tables")};
  for (const ToolRun& run : {folder.run(bad), folder.run({"standards", "--site", folder.path("bad")})}) {
    CHECK(run.exitCode == 3);
    CHECK_MESSAGE(
        contains(run.errors, "table AMP_CU_AWG_NEC: row 2, column 75C: \"2O\" is not a number\n"),
        run.errors);
  }
  CHECK_FALSE(folder.has("bad.db"));
  std::vector<std::string> kept = bad;
  kept.insert(kept.end(), {"--keep-bad", "--csv"});
  CHECK(contains(folder.run(kept).output, "is NULL now"));
  CHECK(
      folder.run({"sql", folder.path("bad.db"), "SELECT [75C] FROM [AMP_CU_AWG_NEC]", "--csv"}).output ==
      "75C\n\n25\n");
  const ToolRun import = folder.run({"import", database, folder.path("tables"), "--csv"});
  REQUIRE(import.exitCode == 0);
  CHECK(contains(import.output, "T,2,"));
  CHECK(folder.run({"sql", database, "SELECT * FROM [T]", "--csv"}).output == "A,B\n1,\n\"x,\"\"y\",2\n");
  CHECK(simhost::parseJson(folder.run({"sql", database, "SELECT * FROM [T]", "--json"}).output)[0]["B"]
            .is_null());
  // Numbers are numbers, and columns of one name stay apart.
  CHECK(
      simhost::parseJson(
          folder.run({"sql", database, "SELECT 1 AS N, 2.5 AS N, '3' AS N_2, NULL AS M", "--json"}).output) ==
      simhost::parseJson(R"([{"N": 1, "N_3": 2.5, "N_2": "3", "M": null}])"));
  // Nothing is changed, created or attached without permission, and a second statement is not run.
  const std::string before = folder.read("out.db");
  const std::string other = folder.path("other.db");
  const std::string quoted = "'" + other + "'";
  const std::string workbook = "site/zan_brenvolt.xls";
  for (const auto& [source, statement] :
       {std::pair{database, "ATTACH DATABASE " + quoted + " AS B"},
        {database, "/**/vacuum into " + quoted},
        {database, "SELECT 1; DELETE FROM [T]"},
        {database, "CREATE TEMP TABLE [U] ([A])"},
        {workbook, "ATTACH " + quoted + " AS B"},
        {workbook, "VACUUM INTO " + quoted}}) {
    CAPTURE(statement);
    CHECK(folder.run({"sql", source, statement}).exitCode == 3);
  }
  CHECK(folder.run({"sql", database, "SELECT 1; DELETE FROM [T]", "--write"}).exitCode == 3);
  CHECK(folder.run({"sql", database, "SELECT ';' -- ;\n;"}).exitCode == 0);
  CHECK_FALSE(folder.has("other.db"));
  CHECK(folder.read("out.db") == before);
  const std::string change = "UPDATE [T] SET [B]='3' WHERE [A]='1'";
  CHECK(folder.run({"sql", database, change}).exitCode == 3);
  CHECK(folder.run({"sql", database, change, "--write"}).exitCode == 0);
  CHECK(contains(folder.run({"sql", database, "SELECT [B] FROM [T]"}).output, "3"));
  CHECK(folder.run({"sql", database, "SELECT * FROM [U]"}).exitCode == 3);
  CHECK(folder.run({"import", database, folder.path("tables")}).exitCode == 3); // T is there already
  CHECK(folder.run({"import", database, folder.path("tables"), "--replace"}).exitCode == 0);
}

TEST_CASE("a site's database follows its tables, and several runs may build it at once") {
  const ToolFolder folder;
  folder.write("own/tables/OPT_NEC.csv", "CODE,DEFAULT,LIST\nFULLNAME,First,\n");
  const std::vector<std::string> words = {"standards", "--site", folder.path("own"), "--csv"};
  CHECK(folder.run(words).output == "code,name\nNEC,First\n");
  folder.write("own/tables/OPT_NEC.csv", "CODE,DEFAULT,LIST\nFULLNAME,Second,\n");
  CHECK(folder.run(words).output == "code,name\nNEC,Second\n");
  folder.write("own/tables/OPT_NEC.csv", "CODE,DEFAULT,LIST\nFULLNAME,Broken\n,,,\n");
  const ToolRun broken = folder.run(words);
  CHECK(broken.exitCode == 3);
  CHECK(contains(broken.errors, "OPT_NEC.csv"));
  CHECK(folder.run({"standards", "--site", folder.path("none")}).exitCode == 3);

  // Its own database takes precedence over the tables.
  folder.write("kept/tables/OPT_IEC.csv", "CODE,DEFAULT,LIST\nFULLNAME,Kept,\n");
  REQUIRE(
      folder.run({"import", folder.path("own/engineering.db"), folder.path("kept/tables")}).exitCode == 0);
  CHECK(folder.run(words).output == "code,name\nIEC,Kept\n");

  std::vector<std::thread> builders;
  std::vector<ToolRun> runs(8);
  for (ToolRun& run : runs) {
    const std::string home = folder.path("shared");
    builders.emplace_back([&run, home, site = folder.path("kept")] {
      const ToolFolder own;
      run = own.run({"standards", "--site", site, "--csv"}, "", {"XDG_CACHE_HOME=" + home});
    });
  }
  for (std::thread& builder : builders)
    builder.join();
  for (const ToolRun& run : runs) {
    CHECK(run.errors.empty());
    CHECK(run.output == "code,name\nIEC,Kept\n");
  }
}
