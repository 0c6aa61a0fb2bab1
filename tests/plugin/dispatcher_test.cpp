// The dispatcher between LISP and the handlers: results in their form, clean after every end, unharmed by any
// arguments of LISP.
#include "plugin/dispatcher.h"

#include "data/table_names.h"
#include "data/table_query.h"
#include "host/host_api_lisp.h"
#include "host/lisp_calls.h"
#include "host/resources.h"
#include "platform/table_import.h"
#include "plugin/function_table.h"
#include "plugin/process_record.h"
#include "simhost/host/resource_module.h"
#include "tests/support/lisp_session.h"
#include "tests/support/temporary_folder.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>

using namespace brenvolt;
using test::LispSession;

namespace {

/// What the handler under test is to do, and what it saw.
struct {
  LispFunction function{};
  std::string behaviour;
  int depthInside = 0;
  std::string database{};
  bool isInside = false;
} probe;

/// What a service does that meets a table of other columns, one of another code and a standard without a name.
void readBadTables() {
  ZanOleDbConnection connection(lentTables().observer);
  REQUIRE(
      connection.OpenFromInitializationString(
          ZanOleDbHelper::FormatConnectString(fromUtf8(probe.database), L"", L""), false, true) >= 0);
  for (const wchar_t* column : {L"[MAX]", L"[MIN]", L"[NO]", L"[NO]"})
    static_cast<void>(
        TableQuery(&connection).run(L"SELECT %s FROM [MOTOR_I_MAP_NEC] ORDER BY [MAX]", {column}));
  static_cast<void>(TableQuery(&connection, Refusal::answer).run(L"SELECT [PROBED] FROM [MOTOR_I_MAP_NEC]"));
  static_cast<void>(
      TableQuery(&connection).run(L"SELECT [MAX] FROM [MOTOR_I_MAP_NEC] WHERE [MAX]='%s'", {L"'"}));
  std::wstring name;
  const ZanDbReaderUtils tables(&connection);
  for (const wchar_t* code : {L"IEC", L"iec", L"NEC", L""})
    static_cast<void>(tables.ResolveTable(name, ZanTableKind::componentMap, code));
}

ResultList probeHandler(const ResultList& arguments) {
  probe.depthInside = kvDocManagerPtr()->resourceDepth();
  if (probe.behaviour == "throw") throw std::runtime_error("a handler failed");
  if (probe.behaviour == "throw a number") throw 5;
  if (probe.behaviour == "nil") return ResultList();
  if (probe.behaviour == "tables") {
    readBadTables();
    // A function that is called inside reports nothing itself: all of it belongs to the call that began.
    if (std::exchange(probe.isInside, true)) return ListBuilder().addT().take();
    ResultList ignored;
    evalString(L"(zan_probe)", ignored);
    return ListBuilder().addT().take();
  }
  if (probe.behaviour == "echo") {
    ListBuilder list;
    list.beginList().splice(arguments.clone()).endList();
    return list.take();
  }
  return ListBuilder().addT().take();
}

int serveProbe() {
  serveCall(probe.function);
  return 1;
}

} // namespace

TEST_CASE("a result is returned in its form, and the resource stack is as before on every way out") {
  struct Row {
    const char* behaviour;
    AnswerForm form;
    ResourceUse resources;
    const char* answer;
  };
  const Row rows[] = {
      {"echo", AnswerForm::list, ResourceUse::pushed, "(1 \"a\" (2.5 nil))"},
      {"echo", AnswerForm::truth, ResourceUse::pushed, "T"},
      {"echo", AnswerForm::list, ResourceUse::none, "(1 \"a\" (2.5 nil))"},
      {"nil", AnswerForm::list, ResourceUse::pushed, "nil"},
      {"nil", AnswerForm::truth, ResourceUse::pushed, "nil"},
      {"throw", AnswerForm::list, ResourceUse::pushed, "nil"},
      {"throw a number", AnswerForm::truth, ResourceUse::pushed, "nil"},
      {"throw", AnswerForm::list, ResourceUse::none, "nil"},
  };
  LispSession lisp;
  KvResourceModule resources;
  setResourceModule(&resources);
  REQUIRE_EQ(kvedDefun(L"zan_probe", 900), kvstatus::normal);
  REQUIRE_EQ(kvedRegFunc(serveProbe, 900), kvstatus::normal);
  for (const Row& row : rows) {
    CAPTURE(row.behaviour);
    probe = {{L"zan_probe", 900, row.form, row.resources, probeHandler}, row.behaviour, -1};
    CHECK_EQ(lisp.eval("(zan_probe 1 \"a\" (list 2.5 nil))"), row.answer);
    CHECK_EQ(probe.depthInside, row.resources == ResourceUse::pushed ? 1 : 0);
    CHECK_EQ(lisp.host().documents().resourceDepth(), 0);
  }
  setResourceModule(nullptr);
}

TEST_CASE("failed statements and tables of another code are reported once, when the call ends") {
  const test::TemporaryFolder folder;
  std::filesystem::create_directory(folder.path() / "csv");
  std::ofstream(folder.path() / "csv/MOTOR_I_MAP_NEC.csv") << "CODE,MAX\nCB,15\n";
  LispSession lisp;
  setResourceModule(kvdsLoadResourceModule(resourceModuleName));
  REQUIRE_EQ(kvedDefun(L"zan_probe", 900), kvstatus::normal);
  REQUIRE_EQ(kvedRegFunc(serveProbe, 900), kvstatus::normal);
  probe = {{L"zan_probe", 900, AnswerForm::truth, ResourceUse::none, probeHandler}, "tables"};
  probe.database = (folder.path() / "tables.db").string();
  REQUIRE(importTables(fromUtf8(probe.database), {fromUtf8((folder.path() / "csv").string())}).isDone());
  for (int call = 0; call < 2; ++call) {
    probe.isInside = false;
    static_cast<void>(lisp.takePrinted());
    CHECK_EQ(lisp.eval("(zan_probe)"), "T");
    CHECK_EQ(
        lisp.takePrinted(),
        "\nFigures are missing, because the tables do not give them: " + probe.database +
            ": no such column: MIN\nQuery: SELECT [MIN] FROM [MOTOR_I_MAP_NEC] ORDER BY [MAX]\n"
            "\nFigures are missing, because the tables do not give them: " +
            probe.database +
            ": no such column: NO\nQuery: SELECT [NO] FROM [MOTOR_I_MAP_NEC] ORDER BY [MAX]\n"
            "\nTable MOTOR_I_MAP_IEC is missing; MOTOR_I_MAP_NEC is used instead.\n"
            "\nTable MOTOR_I_MAP_iec is missing; MOTOR_I_MAP_NEC is used instead.\n");
  }
  setResourceModule(nullptr);
}

TEST_CASE("arguments of wrong types harm no function") {
  const char* arguments[] = {
      "",
      "nil",
      "\"x\"",
      "5 100000 1.5 T",
      "'(1.0 2.0) '(1 (2 (3)))",
      "\"\" \"\" \"\" \"\" \"\" \"\" \"\" \"\" \"\" \"\" \"\" \"\" \"\" \"\"",
      "'(nil nil) nil",
      "'(\"no.xls\" 5 5 5 5 5 5 5 5 5 5 5 5 5)",
  };
  // Without an entity one function prompts for it.
  LispSession lisp({test::press("pick", kvui::cancel), test::press("pick", kvui::cancel)});
  // No windows: every dialog is cancelled, what counts is the walk through the arguments.
  simhost::setWindowSystem(nullptr);
  registerFunctions();
  for (const LispFunction& function : functionTable()) {
    for (const char* list : arguments) {
      const std::string form = "(" + toUtf8(function.name) + " " + list + ")";
      CAPTURE(form);
      CHECK_EQ(lisp.eval(form), "nil");
      CHECK_EQ(lisp.host().documents().resourceDepth(), 0);
      lisp.host().clearCancel();
    }
  }
  resetProcessRecord();
}

TEST_CASE("two functions of the parent product are made reachable with each registration") {
  LispSession lisp;
  lisp.eval("(defun qn_mdb_proj_dbfnam (x) \"p.mdb\") (defun qn_bv_save_codehdl (x) x)");
  registerFunctions();
  auto* document = lisp.host().documents().current();
  for (const wchar_t* name : {L"qn_mdb_proj_dbfnam", L"qn_bv_save_codehdl"}) {
    CHECK(document->isReachable(document->interpreter().symbols().intern(name)));
  }
}
