// The dispatcher between LISP and the handlers: answers in their form, clean on every way out, unharmed by whatever
// LISP passes.
#include "plugin/dispatcher.h"

#include "host/host_api_lisp.h"
#include "host/resources.h"
#include "plugin/function_table.h"
#include "plugin/process_state.h"
#include "simhost/host/resource_module.h"
#include "tests/support/lisp_session.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

#include <stdexcept>
#include <string>

using namespace brenvolt;
using test::LispSession;

namespace {

/// What the handler under test is to do, and what it saw.
struct {
  LispFunction function{};
  std::string behaviour;
  int depthInside = 0;
} probe;

ResultList probeHandler(const ResultList& arguments) {
  probe.depthInside = kvDocManagerPtr()->resourceDepth();
  if (probe.behaviour == "throw") throw std::runtime_error("a handler failed");
  if (probe.behaviour == "throw a number") throw 5;
  if (probe.behaviour == "nil") return ResultList();
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

TEST_CASE(
    "a handler's result is answered in its form, and the resource stack is as before on every way out") {
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

TEST_CASE("eight functions stand in the table, each with its own code") {
  std::string table;
  for (const LispFunction& function : functionTable()) {
    table += toUtf8(function.name) + ' ' + std::to_string(function.code) + '\n';
    CHECK_EQ(findFunction(function.code), &function);
    CHECK_EQ(function.resources == ResourceUse::none, function.code == 104);
    CHECK_EQ(function.answer == AnswerForm::truth, function.code == 101);
  }
  CHECK_EQ(
      table, "zan_bv_select_circuit 100\nzan_bv_build_circuit 101\nzan_bv_motor_select 102\n"
             "zan_bv_power_feed_select 106\nzan_bv_wire_select 103\nzan_bv_code_std_desc 104\n"
             "zan_bv_edit_wiresize 107\nzan_bv_pf_wire_select 105\n");
  CHECK_EQ(findFunction(99), nullptr);
  CHECK_EQ(findFunction(108), nullptr);
  CHECK_EQ(findFunction(-1), nullptr);
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
  resetProcessState();
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
