// The sample site from end to end: each of its circuits drawn by the tool from workbook, template and LISP.
#include "site_tool.h"
#include "tests/support/golden.h"
#include "tests/support/processes.h"
#include "text/encoding.h"
#include "text/split.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

using namespace brenvolt;

namespace {

const SampleCircuit& motorDirect = sampleCircuits().front();

/// How often a block is placed in a drawing file.
int placed(const std::string& drawing, const std::string& block) {
  const std::string mark = "\"block\":\"" + block + "\"";
  int count = 0;
  for (std::size_t at = drawing.find(mark); at != std::string::npos; at = drawing.find(mark, at + 1))
    ++count;
  return count;
}

} // namespace

TEST_CASE("each sample circuit gives its golden drawing and history, and its own history gives it again") {
  for (const SampleCircuit& sample : sampleCircuits()) {
    CAPTURE(std::string(sample.name));
    const SiteCopy site;
    const std::string drawing =
        site.drawn(sample, "a.json", {"--history", sample.history, "--save-history", "Kept"});
    const std::string golden = std::string("tests/site/golden/") + sample.name;
    CHECK(test::matchesGolden(golden + ".json", drawing));
    CHECK(test::matchesGolden(golden + ".history.xml", historyEntry(site.history(), "Kept")));

    CHECK_MESSAGE((site.drawn(sample, "b.json", {"--history", sample.history}) == drawing), "the same build");
    // The drawing keeps the name of the configuration that it was built from.
    std::string fromSaved = site.drawn(sample, "c.json", {"--history", "Kept"});
    const std::string kept = "\"configuration\":\"Kept\"";
    REQUIRE(fromSaved.find(kept) != std::string::npos);
    fromSaved.replace(
        fromSaved.find(kept), kept.size(), "\"configuration\":\"" + std::string(sample.history) + "\"");
    CHECK_MESSAGE((fromSaved == drawing), "from the saved configuration");
  }
}

TEST_CASE("the sample circuits are wires between pins that exist, no net with two numbers") {
  const SiteCopy site;
  for (const SampleCircuit& sample : sampleCircuits()) {
    CAPTURE(std::string(sample.name));
    site.drawn(sample, "a.json", {"--history", sample.history});
    const std::string drawing = site.folder().path("a.json");
    const std::string wires = site.done({"report", "wires", drawing, "--format", "csv"});
    CHECK(std::count(wires.begin(), wires.end(), '\n') > 4);
    CHECK(wires.find('?') == std::string::npos);
    const std::string sheets = site.run({"report", "sheets", drawing, "--format", "json"}).output;
    checkHolds(sheets, {"\"doubled\": 0"});
  }
}

TEST_CASE("a circuit is an object: what its build drew is listed, moved and erased as one") {
  const SiteCopy site;
  const std::string drawing = site.folder().path("a.json");
  site.drawn(motorDirect, "a.json", {"--history", motorDirect.history});
  const auto lisp = [&](const char* form) {
    return site.done({"lisp", "--site", site.site(), "--drawing", drawing, "--save", drawing, "-e", form});
  };
  // Drawn by hand: of no circuit. Built in the same drawing: another one.
  static_cast<void>(lisp("(draw-line '(0 0) '(1 1))"));
  REQUIRE(
      site.draw(motorDirect, "a.json", {"--drawing", drawing, "--at", "300,0"}).exitCode == 5); // no motor
  constexpr const char* count =
      "(list (length (entities-in-space)) (length (remove-if (lambda (e) (entity-data e \"CIRCUIT\")) "
      "(entities-in-space))))";
  const std::string before = lisp(count);
  CHECK(before.ends_with(" 1)\n"));
  const std::string list = site.done({"circuits", drawing, "--csv"});
  checkHolds(
      list, {"\n9,MTR1,Three-phase motors,Direct on line,zan_brenvolt.xls,M3_DOL,Pump 10 HP,\"0,0,0\"",
             "DISC=10,1", ",MTR2,", "\"300,0,0\""});

  const std::string there = site.run({"report", "wires", drawing, "--format", "csv"}).output;
  CHECK(site.run({"circuits", drawing, "--move", "MTR1", "--by", "10,-20"}).exitCode == 0);
  CHECK(site.folder().read("a.json").find("\"point\":\"10,-20,0\"") != std::string::npos);
  CHECK(site.run({"circuits", drawing, "--move", "9", "--by", "-10,20"}).exitCode == 0);
  CHECK(site.run({"circuits", drawing, "--csv"}).output == list);
  CHECK(site.run({"report", "wires", drawing, "--format", "csv"}).output == there);

  CHECK(site.run({"circuits", drawing, "--erase", "MTR3"}).exitCode == 3);
  for (const char* tag : {"MTR2", "CB1"})
    CHECK(site.run({"circuits", drawing, "--erase", tag}).exitCode == 0);
  CHECK(lisp(count) == "(1 1)\n");
  CHECK(site.folder().read("a.json").find("\"circuits\"") == std::string::npos);
}

TEST_CASE("a motor of another code has that code's parts, or others once the default tables are accepted") {
  const std::string motor = SiteCopy().drawn(
      motorDirect, "a.json",
      {"--standard-code", "IEC", "--preset", "MCTL=0;DISC=10,1", "--params",
       R"("Induction";"5.5";"kW";"400";"3";"50";"1500";"11.5";"1.0")"});
  checkHolds(motor, {"5.5 kW  400 V", "\"13A\"", "\"CB-3P-D13\"", "\"AC-3 12.5A\"", "\"7.2-13A\""});

  const SiteCopy site;
  for (const char* table : {"CALC", "DESC", "MAP"})
    std::filesystem::remove(site.site() + "/tables/MOTOR_I_" + table + "_IEC.csv");

  std::vector<std::string> sized = {"--standard-code", "IEC", "--history", motorDirect.history};
  const ToolRun asked = site.draw(motorDirect, "b.json", sized);
  CHECK(asked.exitCode == 3);
  checkHolds(asked.errors, {"--default-tables"});
  CHECK_FALSE(site.folder().has("b.json"));
  sized.emplace_back("--default-tables");
  const ToolRun drawn = site.draw(motorDirect, "b.json", sized);
  REQUIRE_MESSAGE(drawn.exitCode == 0, drawn.errors);
  CHECK(drawn.output.find("MOTOR_I_CALC_IEC is missing") != std::string::npos);
  CHECK(site.draw(motorDirect, "c.json", {"--standard-code", "NOPE"}).exitCode == 3);
}

TEST_CASE("options of a preset choose the symbols, also in templates two deep") {
  struct Row {
    const char* preset;
    const char* block;
    int count;
  };
  constexpr Row rows[] = {
      {"", "ZBREAK3", 1},          {"", "ZAN_BV_MARKER_BLOCK", 0}, {"DISC=20,1", "ZFUSE3", 1},
      {"DISC=20,1", "ZBREAK3", 0}, {"DISC=30,2", "ZFUSE3", 0},     {"OL=2", "ZSSOL3", 1},
      {"TERM=0", "ZTERM", 0},      {"CTRL=0", "ZCOIL", 0},         {"SOURCE=2", "ZTRANS", 0},
      {"OPER=2", "ZSELECT", 1},    {"LITE=1", "ZLIGHT", 1},        {"LITE=2;RUNL=2", "ZLIGHT", 2},
  };
  const SiteCopy site;
  for (const Row& row : rows) {
    CAPTURE(std::string(row.preset));
    CAPTURE(std::string(row.block));
    REQUIRE(site.draw(motorDirect, "a.json", {"--preset", row.preset}).exitCode == 5); // no motor
    CHECK(placed(site.folder().read("a.json"), row.block) == row.count);
  }
}

TEST_CASE("a circuit leaves its row, its components and its terminals in the project database") {
  const SiteCopy site;
  const std::string project = site.newProject();
  site.drawn(motorDirect, "a.json", {"--history", motorDirect.history, "--project", project});
  struct Query {
    const char* statement;
    const char* rows;
  };
  for (const Query& query : {
           Query{"SELECT DWGIX,CIRCUITKEY FROM [BRENVOLT]", "DWGIX,CIRCUITKEY\n1,1-199\n"},
           Query{
               "SELECT CODES FROM [BRENVOLT]",
               "CODES\n\"COIL[=335]=;CTRL=1;DISC[=9F]=10,1;LITE=2;MCTL=0;MOTOR[=199]=;MS[=E4]=1;OL[=129]=1;"
               "OLC[=365]=;OPER[=2A1]=1;RUNC[=396]=;RUNL[=3CA]=1;SOURCE[=24A]=1;STPC[=3FB]=;STPL[=40A]=;"
               "TERM[=151]=1;TITLE=;WNUM=;WT01=;WT01E=;WT02=;WT03=\"\n"},
           Query{"SELECT HDL FROM [COMP] WHERE FAMILY='CB'", "HDL\nh=9F\n"},
           Query{"SELECT TAGNAME,RATING1 FROM [COMP] WHERE FAMILY='CB'", "TAGNAME,RATING1\nCB1,35A\n"},
           Query{"SELECT TAGSTRIP,TERM FROM [TERMS]", "TAGSTRIP,TERM\nTB1,1\nTB1,2\nTB1,3\n"},
       })
    CHECK_EQ(site.query(project, query.statement), query.rows);
}

TEST_CASE("the rows of the project say what the drawing says, and a takeover keeps all parts") {
  const SiteCopy site;
  const std::string project = site.newProject();
  const std::string drawing = site.folder().path("a.json");
  site.drawn(
      motorDirect, "a.json",
      {"--preset", "DISC=20,1", "--params", R"("Induction";"10";"HP";"460";"3";"60";"1800";"14";"1.25")",
       "--project", project});
  const auto query = [&](const std::string& statement) {
    const std::string output = site.query(project, statement);
    return output.substr(output.find('\n') + 1);
  };
  const auto lisp = [&](const std::string& form) {
    return site.done(
        {"lisp", "--site", site.site(), "--drawing", drawing, "-e",
         "(setq site-project-database \"" + project + "\")", "-e", "(read-project-rows)", "-e", form});
  };
  const std::string family =
      "(defun of (f) (find-if (lambda (e) (equal (cdr (assoc \"FAMILY\" (entity-attributes e))) f))"
      " (remove-if-not (lambda (e) (equal (entity-get e 'kind) \"block-reference\"))"
      " (entities-in-space))))";
  // Parts that a user gives the switch and its fuses later, one with a quote in its text.
  lisp(
      "(progn " + family +
      " (fill-attributes (of \"DS\") '((\"MFG\" . \"Nordhaven\") (\"CAT\" . \"DS-3060\") (\"RATING1\" . "
      "\"60A\")))"
      " (fill-attributes (of \"FU\") '((\"MFG\" . \"Fusewell\") (\"CAT\" . \"FT-030\") (\"DESC1\" . "
      "\"pump's\")))"
      " (site-sync-records))");
  CHECK(
      query("SELECT CAT,DESC1 FROM [COMP] WHERE FAMILY IN ('DS','FU') AND MFG<>'' AND CAT<>'CC-5' ORDER BY "
            "FAMILY") == "DS-3060,\nFT-030,pump's\n");

  const std::string record = query("SELECT CODES FROM [BRENVOLT]");
  CHECK(record.find("DISC[=") != record.rfind("DISC[="));
  const auto unquoted = [](std::string text) {
    // As CSV has it: one field, its quotes doubled.
    if (!text.empty() && text.back() == '\n') text.pop_back();
    if (text.size() < 2 || text.front() != '"') return text;
    text = text.substr(1, text.size() - 2);
    for (std::size_t at = 0; (at = text.find("\"\"", at)) != std::string::npos; ++at)
      text.erase(at, 1);
    return text;
  };
  const std::string again = site.drawn(
      motorDirect, "b.json",
      {"--preset", unquoted(record), "--params", unquoted(query("SELECT PARAMS FROM [BRENVOLT]")), "--wires",
       unquoted(query("SELECT WIRES FROM [BRENVOLT]")), "--project", project});
  checkHolds(again, {"\"DS-3060\"", "\"FT-030\"", "\"60A\""});

  // An erased circuit takes its rows with it; what is not in the drawing belongs to others.
  site.done({"sql", project, "INSERT INTO [COMP] (DWGIX,HDL) VALUES ('1','h=FFFF')", "--write"});
  lisp("(progn (mapc 'entity-erase (entities-in-space)) (site-sync-records))");
  CHECK(query("SELECT HDL FROM [BRENVOLT] WHERE DWGIX='1'").empty());
  CHECK(query("SELECT HDL FROM [TERMS] WHERE DWGIX='1'").empty());
  CHECK(query("SELECT HDL FROM [COMP] WHERE DWGIX='1'") == "h=FFFF\n");
  CHECK(query("SELECT DWGIX FROM [BRENVOLT]") == "2\n"); // of b.json
}

TEST_CASE("drawings of one project have an index of their own, and keep each other's rows") {
  const SiteCopy site;
  const std::string project = site.newProject();
  const auto draw = [&](const std::string& out, std::vector<std::string> more) {
    more.insert(more.end(), {"--history", motorDirect.history, "--project", project});
    site.drawn(motorDirect, out, more);
  };
  const auto motors = [&] {
    return site.query(
        project,
        "SELECT DWGIX,TAGNAME FROM [COMP] WHERE FAMILY='MO' OR TAGNAME LIKE 'MTR%' ORDER BY DWGIX,TAGNAME");
  };
  draw("a.json", {});
  draw("b.json", {}); // the same handles as in a.json
  CHECK(motors() == "DWGIX,TAGNAME\n1,MTR1\n2,MTR1\n");
  draw("b.json", {"--drawing", site.folder().path("b.json"), "--at", "300,0"});
  CHECK(motors() == "DWGIX,TAGNAME\n1,MTR1\n2,MTR1\n2,MTR2\n");

  // A tag that is changed in the drawing reaches the rows of that drawing alone.
  site.done(
      {"lisp", "--site", site.site(), "--drawing", site.folder().path("a.json"), "-e",
       "(progn (setq site-project-database \"" + project +
           "\") (read-project-rows)"
           " (fill-attributes (find-if (lambda (e) (equal (cdr (assoc \"TAG1\" (entity-attributes e))) "
           "\"MTR1\"))"
           " (remove-if-not (lambda (e) (equal (entity-get e 'kind) \"block-reference\")) "
           "(entities-in-space)))"
           " '((\"TAG1\" . \"P7\"))) (site-sync-records))"});
  CHECK(site.query(project, "SELECT DWGIX FROM [COMP] WHERE TAGNAME='P7'") == "DWGIX\n1\n");
  CHECK(motors().find("2,MTR1\n2,MTR2\n") != std::string::npos);

  // A drawing of an earlier release has no index: the first one keeps 1, as long as no drawing was given it.
  const std::string old = site.folder().path("old.db");
  REQUIRE(site.run({"import", old, site.site() + "/project"}).exitCode == 0);
  const auto indexIn = [&](const char* file, const std::string& forget) {
    return site.done(
        {"lisp", "--site", site.site(), "--drawing", site.folder().path(file), "-e",
         "(progn (setq site-project-database \"" + old + "\")" + forget +
             " (need-project) (claim-drawing-index) (own-index))"});
  };
  site.done({"sql", old, "INSERT INTO [COMP] (DWGIX,HDL) SELECT '1','h=9F'", "--write"});
  const std::string forget = " (set-variable \"SITE_DWGIX\" \"\")";
  CHECK(indexIn("a.json", forget) == "\"1\"\n");
  CHECK(indexIn("b.json", forget) == "\"2\"\n");
  CHECK(indexIn("b.json", {}) == "\"2\"\n");
}

TEST_CASE("programs that come into one project at the same moment get an index each") {
  const SiteCopy site;
  const std::string project = site.newProject();
  std::vector<pid_t> programs;
  for (int program = 0; program < 4; ++program)
    programs.push_back(test::startProcess([&] {
      return ToolFolder()
          .run(
              {"lisp", "--site", site.site(), "-e",
               "(progn (setq site-project-database \"" + project +
                   "\") (dotimes (n 5) (set-variable \"SITE_DWGIX\" \"\") (need-project) "
                   "(claim-drawing-index)))"})
          .exitCode;
    }));
  for (const pid_t program : programs)
    CHECK(test::waitFor(program) == 0);
  CHECK(
      site.query(
          project,
          "SELECT COUNT(DISTINCT ATTR_VAL) AS N, COUNT(*) AS M FROM [QN_M] WHERE ATTR_NAME='DRAWING'") ==
      "N,M\n20,20\n");

  // Through a server's driver. Where one transaction at a time is not certain, a refused lock gives no index.
  const auto claim = [&](const std::string& before) {
    return site.run(
        {"lisp", "--site", site.site(), "-e",
         "(progn " + before + " (setq site-project-database \"odbc:Driver=SQLite3;Database=" + project +
             "\") (set-variable \"SITE_DWGIX\" \"\") (need-project) (claim-drawing-index) (own-index))"});
  };
  if (const ToolRun run = claim({}); run.errors.find("driver") == std::string::npos)
    CHECK_MESSAGE(run.output == "\"21\"\n", run.errors);
  const ToolRun refused = claim("(defun takes-turns? () nil)");
  CHECK(refused.exitCode == 3);
  checkHolds(refused.errors, {"LOCK"});
}

TEST_CASE("rows that cannot be written cost the circuit, and leave everything else as it was") {
  const SiteCopy site;
  const std::string project = site.newProject();
  REQUIRE(site.run({"sql", project, "DROP TABLE [TERMS]", "--write"}).exitCode == 0);
  // Indentation is the file's, not the entry's.
  const auto entries = [&site] {
    std::wstring text;
    for (const std::wstring& line : splitKeepingEmpty(fromUtf8(site.history()), L'\n'))
      text += trim(line);
    return toUtf8(text);
  };
  const std::string before = entries();
  for (const char* name : {"New", "Pump 10 HP"}) {
    CAPTURE(std::string(name));
    const ToolRun run = site.draw(
        motorDirect, "a.json",
        {"--preset", "OL=2", "--params", R"("Induction";"5";"HP";"460";"3";"60";"1800";"7.6";"1.25")",
         "--save-history", name, "--project", project});
    CHECK(run.exitCode == 3);
    checkHolds(run.output + run.errors, {"TERMS"});
    CHECK_FALSE(site.folder().has("a.json"));
    CHECK(entries() == before);
    CHECK(site.query(project, "SELECT HDL FROM [COMP]") == "HDL\n");
  }
  CHECK(site.run({"history", "log", "--site", site.site()}).output.find("restored") != std::string::npos);
}

TEST_CASE("the part lookup of a load takes the next standard rating above what it has to carry") {
  const SiteCopy site;
  CHECK(site.done({"lisp", "--site", site.site(), "-e", R"((progn (defun pick-entity (&rest texts) nil)
        (mapcar (lambda (row) (setq site-current (first row) site-load (second row))
                  (second (site_part_lookup (third row) "" "" "" (nth 3 row))))
          '((12.5 "Heater" "CB" 2) (48.1 "Heater" "CB") (83.3 "Lighting" "FU" 2) (20.0 "Receptacle" "CB" 2)
            (14.0 nil "CB")))))"}) == "(\"CB2-020\" \"CB3-070\" \"FT-110\" \"CB2-020\" \"CB3-035\")\n");
}

TEST_CASE("a saved part with three poles stays in a circuit with two, also where its page is visited") {
  const SiteCopy site;
  const auto drawn = [&site](const char* history, const char* onPage, const char* savedAs) {
    std::string answers = R"({"format": "brenvolt-answers", "version": 1,
      "run": {"circuit": "Power feeds", "type": "Single-phase", "history": "HISTORY", "language": "en"},
      "steps": [{"dialog": "ZanDlgConfig", "do": [{"select": "units", "path": ["Disconnecting means"]}, STEP,
        {"select": "units", "path": ["Load and wires"]}, {"press": "insertAll"},
        {"set": "historyName", "to": "NAME"}, {"press": "ok"}]}]})";
    for (const auto& [word, text] : {std::pair{"HISTORY", history}, {"STEP", onPage}, {"NAME", savedAs}})
      answers.replace(answers.find(word), std::string(word).size(), text);
    answers = site.folder().write("answers.json", answers);
    const SampleCircuit heater = {"", "Power feeds", "Single-phase", history};
    const std::string drawing =
        site.drawn(heater, std::string(savedAs) + ".json", {"--history", history, "--answers", answers});
    CHECK_MESSAGE(drawing.find("\"CB3-040\"") != std::string::npos, drawing);
    checkHolds(site.history(), {"Name=\"TABLE\" Value=\"CB\""});
  };
  drawn(
      "Heater 2 kW", R"({"edit": "settings/Circuit breaker", "row": "Catalog number", "to": "CB3-040"})",
      "Chosen");
  drawn(
      "Chosen [Heater 2 kW 240 1 60 ]",
      R"({"expect": "settings/Circuit breaker", "row": "Catalog number", "texts": ["Catalog number", "CB3-040"]})",
      "Visited");
}

TEST_CASE("a project's row has the first of two motors, also when the second was inserted first, and lends "
          "it to no other") {
  const SiteCopy site;
  const std::string project = site.newProject();
  constexpr SampleCircuit two = {"", "Three-phase motors", "Two motors, one feeder", "Two pumps 10 and 5 HP"};
  const std::string answers = site.folder().write("b_first.json", R"({
    "format": "brenvolt-answers", "version": 1,
    "run": {"circuit": "Three-phase motors", "type": "Two motors, one feeder",
            "history": "Two pumps 10 and 5 HP", "language": "en"},
    "steps": [
      {"dialog": "ZanDlgConfig", "do": [
        {"select": "units", "path": ["Motor B and its wires"]}, {"press": "insertCurrent"},
        {"select": "units", "path": ["Field terminals B"]}, {"press": "insertCurrent"},
        {"press": "insertAll"}, {"press": "insertAll"}, {"press": "ok"}]},
      {"dialog": "ZanBrenvolt.DuplicateCircuitName", "do": [{"press": 1001}]}]})");
  site.drawn(two, "a.json", {"--history", two.history, "--project", project, "--answers", answers});
  const std::string rows = site.query(project, "SELECT PARAMS FROM BRENVOLT");
  CHECK_MESSAGE(rows.find("\"Induction\"\";\"\"10\"\"") != std::string::npos, rows);

  const ToolRun run = site.draw(
      two, "b.json",
      {"--preset", "MCTL-A=0;MCTL-B=0", "--params",
       R"("Induction";"10";"HP";"460";"3";"60";"1800";"14";"1.25")"});
  CHECK(run.exitCode == 5);
  CHECK(run.output.find("marker MCTL-B: its wires have no size") != std::string::npos);
  const std::string motors = site.done({"report", "motors", site.folder().path("b.json"), "--format", "csv"});
  CHECK_MESSAGE(
      motors.find("\nMTR1B,\"Three-phase motors, Two motors, one feeder\",,,,") != std::string::npos, motors);
}
