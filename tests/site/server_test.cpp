// A site whose tables and project are on a server: the product's statements work there as on its own files, many
// sessions at once lose and double nothing, and a lost server costs a build and nothing else.
#include "postgres_server.h"
#include "site_tool.h"
#include "tests/support/golden.h"
#include "text/encoding.h"
#include "text/split.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <thread>
#include <vector>

using namespace brenvolt;
using brenvolt::testing::PostgresServer;

namespace {

using Lines = std::vector<std::wstring>;

/// One server for all tests: starting it takes longer than they do.
const PostgresServer& server() {
  static const PostgresServer running;
  return running;
}

bool isSkipped() {
  if (server().isRunning()) return false;
  MESSAGE("skipped: no PostgreSQL server can be started");
  return true;
}

/// An empty database on the server, as a data source.
std::string newDatabase(const ToolFolder& folder, const std::string& name) {
  const std::string all = toUtf8(server().dataSource());
  static_cast<void>(folder.run({"sql", all, "DROP DATABASE IF EXISTS " + name, "--write"}));
  const ToolRun made = folder.run({"sql", all, "CREATE DATABASE " + name, "--write"});
  REQUIRE_MESSAGE(made.exitCode == 0, made.errors);
  return toUtf8(replaceAll(server().dataSource(), L"Database=postgres", fromUtf8("Database=" + name)));
}

/// The sample site on a server of its own.
class ServerSite final {
public:
  explicit ServerSite(const std::string& name) : database_(newDatabase(site_.folder(), name)) {
    const ToolRun published = run({"site", "publish", database_, "--site", site_.site()});
    REQUIRE_MESSAGE(published.exitCode == 0, published.errors);
    const std::string lisp = site_.folder().read("site/site.lsp");
    site_.folder().write("site/site.lsp", "(setq site-connection \"" + database_ + "\")\n" + lisp);
  }

  [[nodiscard]] const std::string& database() const { return database_; }
  [[nodiscard]] const SiteCopy& site() const { return site_; }
  [[nodiscard]] ToolRun run(const std::vector<std::string>& arguments) const { return site_.run(arguments); }
  [[nodiscard]] std::string query(const std::string& statement) const {
    const ToolRun run = site_.run({"sql", database_, statement, "--csv"});
    REQUIRE_MESSAGE(run.exitCode == 0, run.errors);
    return run.output;
  }
  /// The whole rows of each drawing, sorted. The index that a drawing was given is by turns: it is left out, and those
  /// of the drawings are sorted instead.
  [[nodiscard]] std::vector<std::vector<std::string>> written() const {
    std::map<std::string, std::vector<std::string>> drawings;
    for (const std::string table : {"BRENVOLT", "COMP", "TERMS"}) {
      const std::string text = query("SELECT * FROM " + table);
      REQUIRE(text.starts_with("DWGIX,"));
      for (const std::wstring& each : splitSkippingEmpty(fromUtf8(text.substr(text.find('\n') + 1)), L'\n')) {
        std::string row = toUtf8(each);
        const std::string index = row.substr(0, row.find(','));
        row.erase(0, index.size());
        // The key of a circuit begins with the index.
        if (const std::size_t key = row.rfind("," + index + "-");
            table == "BRENVOLT" && key != std::string::npos)
          row.erase(key + 1, index.size());
        drawings[index].push_back(table + row);
      }
    }
    std::vector<std::vector<std::string>> all;
    for (auto& [index, rows] : drawings) {
      std::sort(rows.begin(), rows.end());
      all.push_back(std::move(rows));
    }
    std::sort(all.begin(), all.end());
    return all;
  }
  /// The parts that were chosen, with the header.
  [[nodiscard]] std::vector<std::wstring> chosenParts() const {
    std::vector<std::wstring> rows =
        splitSkippingEmpty(fromUtf8(query("SELECT MARKER,UI_SEL,MFG,CAT FROM CATALOGSEL")), L'\n');
    std::sort(rows.begin(), rows.end());
    return rows;
  }

private:
  SiteCopy site_;
  std::string database_;
};

/// Sessions that write rows of a project, parts, or both.
constexpr const char* writingSessions[] = {"one_by_one", "two_motors", "all_at_once"};
/// One that chooses parts, and expects that nobody has chosen any before.
constexpr const char* partsSession = "part_lookup";

ToolRun replay(
    const std::string& site, const std::string& session, const std::vector<std::string>& environment = {}) {
  const ToolFolder folder;
  return folder.run(
      {"replay", site, std::string("tests/site/sessions/") + session + "/session.json", "--work",
       folder.path("work")},
      {}, environment);
}

/// What a statement returns, or what it leaves in the tables that the product writes; it is taken back.
Lines answerOf(ZanOleDbConnection& engine, const std::wstring& statement) {
  const TableTransaction transaction(engine);
  REQUIRE(transaction.isOpen());
  Lines lines = testing::rowsOf(engine, statement);
  if (statement.starts_with(L"SELECT") || !lines.empty()) return lines;
  for (const wchar_t* table : {L"CATALOGSEL", L"BRENVOLT", L"COMP", L"TERMS", L"MOTOR_NEC"}) {
    Lines rows = testing::rowsOf(engine, L"SELECT * FROM [" + std::wstring(table) + L"]");
    std::sort(rows.begin(), rows.end()); // a server moves a row that is changed
    lines.insert(lines.end(), rows.begin(), rows.end());
  }
  return lines;
}

} // namespace

TEST_CASE("what is published answers every subcommand as the site's own tables do") {
  if (isSkipped()) return;
  const ServerSite shared("brenvolt_same");
  const SiteCopy own;
  const std::vector<std::vector<std::string>> commands = {
      {"wire", "--fla", "52", "--voltage", "460", "--phase", "3", "--length", "250", "--units", "FT",
       "--explain"},
      {"wire", "--standard-code", "IEC", "--fla", "60", "--voltage", "400", "--phase", "3", "--csv"},
      {"motors", "--csv"},
      {"loads", "--standard-code", "IEC", "--csv"},
      {"components", "--type", "induction", "--fla", "28"},
      {"components", "--standard-code", "IEC", "--type", "Induction", "--fla", "28"},
      {"standards"}};
  for (std::vector<std::string> command : commands) {
    CAPTURE(command.front());
    command.insert(command.begin() + 1, {"--site", own.site()});
    const ToolRun expected = own.run(command);
    command[2] = shared.site().site();
    const ToolRun answer = shared.run(command);
    REQUIRE_MESSAGE(answer.exitCode == 0, answer.errors);
    CHECK(answer.output == expected.output);
    CHECK(answer.errors == expected.errors);
  }
  // A second time only with --replace, and what users saved stays.
  CHECK(
      shared
          .run(
              {"sql", shared.database(), "INSERT INTO [CATALOGSEL] ([MARKER],[UI_SEL]) VALUES ('X',3)",
               "--write"})
          .exitCode == 0);
  const std::vector<std::string> publish = {"site", "publish", shared.database(), "--site", own.site()};
  CHECK(shared.run(publish).exitCode == 3);
  std::vector<std::string> replacing = publish;
  replacing.emplace_back("--replace");
  CHECK(shared.run(replacing).exitCode == 0);
  CHECK(shared.query("SELECT MARKER, UI_SEL FROM CATALOGSEL") == "MARKER,UI_SEL\nX,3\n");
}

TEST_CASE("every statement that the product sends runs on each engine, with the same answer") {
  if (isSkipped()) return;
  const ServerSite shared("brenvolt_statements");
  const SiteCopy own;
  const std::string log = own.folder().path("statements");
  const std::vector<std::string> logged = {"BRENVOLT_STATEMENTS=" + log};
  // A drawing with a project, each kind of session, and the subcommands.
  const std::string project = own.folder().path("project.db");
  REQUIRE(own.run({"import", project, own.folder().path("site/project")}).exitCode == 0);
  const auto run = [&](std::vector<std::string> words) {
    const ToolRun done = own.folder().run(words, {}, logged);
    REQUIRE_MESSAGE(done.exitCode == 0, done.errors);
  };
  for (const char* session : {"part_lookup", "takeover", "presets", "two_motors"})
    REQUIRE(replay(own.site(), session, logged).exitCode == 0);
  run(
      {"draw", "--site", own.site(), "--circuit", "Three-phase motors", "--type", "Star-delta", "--history",
       "Fan 40 HP", "--project", project, "--out", own.folder().path("out.json")});
  for (const char* code : {"NEC", "IEC"}) {
    run(
        {"wire", "--site", own.site(), "--standard-code", code, "--fla", "300", "--voltage", "400", "--phase",
         "3", "--length", "40", "--parallel", "4", "--csv"});
    run({"components", "--site", own.site(), "--standard-code", code, "--type", "Induction", "--fla", "28"});
  }
  run({"motors", "--site", own.site(), "--voltage", "460"});
  // Rows that are changed and added in a picker; the new one is the last of the shown ones.
  const std::string count = shared.query(
      "SELECT count(*) AS N FROM [MOTOR_NEC] WHERE [Voltage (V)]='460' AND [Type]='Synchronous'");
  const std::string last = std::to_string(std::stoi(count.substr(2)) + 1);
  const std::string edits = own.folder().write(
      "edits.json",
      R"~({"format": "brenvolt-answers", "version": 1, "steps": [{"dialog": "ZanDlgMotorSelect", "do": [
      {"choose": "typeFilter", "to": "Synchronous"}, {"choose": "voltageFilter", "to": "460"},
      {"tick": "edit", "to": true}, {"edit": "grid", "row": 1, "column": "FLA (A)", "to": "7.7"},
      {"select": "grid", "row": 2}, {"edit": "grid", "row": )~" +
          last + R"~(, "column": "Load", "to": "41"}, {"select": "grid", "row": 1},
      {"tick": "edit", "to": false}, {"press": "ok"}]}]})~");
  run({"lisp", "--site", own.site(), "--answers", edits, "-e", "(zan_bv_motor_select)"});

  const std::string tables = own.folder().path("tables.db");
  REQUIRE(own.folder().run({"standards", "--site", own.site()}, {}, {"BRENVOLT_DB=" + tables}).exitCode == 0);
  REQUIRE(own.run({"import", tables, own.folder().path("site/project")}).exitCode == 0);
  std::set<std::wstring> statements;
  for (const std::wstring& line : splitSkippingEmpty(fromUtf8(own.folder().read("statements")), L'\n')) {
    const std::vector<std::wstring> parts = splitKeepingEmpty(line, L'\t');
    REQUIRE(parts.size() == 2);
    if (!parts[0].ends_with(L".xls")) statements.insert(parts[1]);
  }
  // All kinds of them are there: lookups, parts, projects, edited rows.
  CHECK(statements.size() > 60);
  for (const wchar_t* kind :
       {L"UPDATE [MOTOR_NEC]", L"INSERT INTO [MOTOR_NEC]", L"DELETE FROM [CATALOGSEL]",
        L"INSERT INTO [CATALOGSEL]", L"INSERT INTO [BRENVOLT]", L"SELECT MFG,CAT"})
    CHECK_MESSAGE(
        std::any_of(
            statements.begin(), statements.end(),
            [kind](const std::wstring& statement) { return statement.starts_with(kind); }),
        toUtf8(kind));
  const auto embedded = testing::opened(fromUtf8(tables));
  const std::pair<const char*, std::wstring> engines[] = {
      {"the embedded database through ODBC", L"odbc:Driver=SQLite3;Database=" + fromUtf8(tables)},
      {"PostgreSQL", fromUtf8(shared.database())}};
  for (const auto& [name, dataSource] : engines) {
    CAPTURE(name);
    const auto connection = testing::opened(dataSource);
    for (const std::wstring& statement : statements) {
      CAPTURE(toUtf8(statement));
      const Lines expected = answerOf(*embedded, statement);
      const Lines answer = answerOf(*connection, statement);
      CHECK(testing::shown(answer) == testing::shown(expected));
      CHECK((answer.empty() || !answer.front().starts_with(L"error: ")));
    }
  }
}

TEST_CASE("sixteen sessions at once leave the rows of their single runs, none lost and none doubled") {
  if (isSkipped()) return;
  // Each designer has a drawing of the same handles in the one project.
  struct Designer {
    SiteCopy site;
    const char* session = nullptr;
    ToolRun run;
  };
  constexpr std::size_t count = 16;
  std::vector<Designer> designers(count);
  const auto connect = [&designers](const ServerSite& shared) {
    for (std::size_t number = 0; number < count; ++number) {
      Designer& designer = designers[number];
      designer.session = writingSessions[number % std::size(writingSessions)];
      designer.site.folder().write(
          "site/site.lsp",
          "(setq site-connection \"" + shared.database() + "\")\n" + test::bytesOf("site/site.lsp"));
    }
  };
  const auto work = [](Designer& designer) {
    const ToolFolder& folder = designer.site.folder();
    designer.run = folder.run(
        {"replay", designer.site.site(),
         std::string("tests/site/sessions/") + designer.session + "/session.json", "--work",
         folder.path("work")});
  };

  // A firm shares its choices of parts: what a page proposes depends on who was there before. So all choices of the
  // sessions are made first, and every row is the same in whatever order they work then.
  const auto chooseParts = [&](const ServerSite& shared) {
    connect(shared);
    Designer& first = designers.front();
    for (const char* session : {partsSession, writingSessions[0], writingSessions[1], writingSessions[2]}) {
      first.session = session;
      work(first);
      REQUIRE_MESSAGE(first.run.exitCode == 0, first.run.errors);
    }
    for (const char* rows : {"BRENVOLT", "COMP", "TERMS", "QN_M"})
      REQUIRE(
          shared.run({"sql", shared.database(), "DELETE FROM [" + std::string(rows) + "]", "--write"})
              .exitCode == 0);
    connect(shared);
  };

  const ServerSite single("brenvolt_single");
  chooseParts(single);
  for (Designer& designer : designers) {
    work(designer);
    REQUIRE_MESSAGE(designer.run.exitCode == 0, designer.run.errors);
  }
  const std::vector<std::vector<std::string>> expected = single.written();
  CHECK(expected.size() == count);

  const ServerSite shared("brenvolt_sixteen");
  chooseParts(shared);
  std::vector<std::thread> threads;
  threads.reserve(count);
  for (Designer& designer : designers)
    threads.emplace_back([&work, &designer] { work(designer); });
  for (std::thread& thread : threads)
    thread.join();
  for (const Designer& designer : designers)
    CHECK_MESSAGE(designer.run.exitCode == 0, designer.run.errors);
  CHECK(shared.written() == expected);
  CHECK(shared.chosenParts() == single.chosenParts());
}

namespace {

/// The connection of a role that is not an owner, and the site's LISP naming it; `more` runs after the site's own.
std::string connectAs(const ServerSite& shared, const std::string& role, const std::string& more = {}) {
  for (const std::string& statement : {"DROP ROLE IF EXISTS " + role, "CREATE ROLE " + role + " LOGIN"})
    static_cast<void>(shared.run({"sql", shared.database(), statement, "--write"}));
  const std::string connection =
      toUtf8(replaceAll(fromUtf8(shared.database()), L"Uid=brenvolt", fromUtf8("Uid=" + role)));
  shared.site().folder().write(
      "site/site.lsp",
      "(setq site-connection \"" + connection + "\")\n" + test::bytesOf("site/site.lsp") + more);
  return connection;
}

constexpr SampleCircuit motor = {"motor3_star_delta", "Three-phase motors", "Star-delta", "Fan 40 HP"};

} // namespace

TEST_CASE("a reader's change is refused in the server's words, and nothing of the circuit is kept") {
  if (isSkipped()) return;
  const ServerSite shared("brenvolt_roles");
  const std::string asReader = connectAs(shared, "brenvolt_reader");
  const ToolRun granted = shared.run(
      {"site", "publish", shared.database(), "--site", shared.site().site(), "--replace", "--readers",
       "brenvolt_reader"});
  REQUIRE_MESSAGE(granted.exitCode == 0, granted.errors);
  CHECK(shared.run({"motors", "--site", shared.site().site()}).exitCode == 0);
  const ToolRun edit = shared.run({"sql", asReader, "DELETE FROM [MOTOR_NEC]", "--write"});
  CHECK(edit.exitCode == 3);
  checkHolds(edit.errors, {"permission denied for table MOTOR_NEC"});
  const ToolRun drawn = shared.site().draw(motor, "out.json", {"--history", motor.history});
  CHECK(drawn.exitCode == 3);
  checkHolds(drawn.errors, {"permission denied"});
  CHECK_FALSE(shared.site().folder().has("out.json"));
  CHECK(shared.written().empty());
  CHECK(shared.chosenParts().size() == 1);
}

TEST_CASE("a server that goes away costs the build, and the next one reaches it again") {
  if (isSkipped()) return;
  const ServerSite shared("brenvolt_lost");
  // The second time that the build asks for its tables, the server has ended the role's sessions and lets it in no more.
  const std::string admin = "\"" + shared.database() + "\"";
  connectAs(
      shared, "brenvolt_lost_editor",
      "(setq times 0)\n(defun c:zan_bv_figure_mccdb_fnam ()\n  (setq times (+ times 1))\n  (when (= times "
      "2)\n"
      "    (sql-execute " +
          admin + " \"ALTER ROLE brenvolt_lost_editor NOLOGIN\")\n    (sql-execute " + admin +
          " \"SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE "
          "usename='brenvolt_lost_editor'\"))\n"
          "  (site-database))\n");
  REQUIRE(
      shared
          .run(
              {"site", "publish", shared.database(), "--site", shared.site().site(), "--replace", "--editors",
               "brenvolt_lost_editor"})
          .exitCode == 0);
  const ToolRun lost = shared.site().draw(motor, "out.json", {"--history", motor.history});
  CHECK(lost.exitCode == 3);
  checkHolds(lost.output + lost.errors, {"not permitted to log in"});
  CHECK_FALSE(shared.site().folder().has("out.json"));
  CHECK(shared.written().empty());

  REQUIRE(
      shared.run({"sql", shared.database(), "ALTER ROLE brenvolt_lost_editor LOGIN", "--write"}).exitCode ==
      0);
  connectAs(shared, "brenvolt_lost_editor");
  const ToolRun again = shared.site().draw(motor, "out.json", {"--history", motor.history});
  CHECK_MESSAGE(again.exitCode == 0, again.errors);
  CHECK_FALSE(shared.written().empty());
}
