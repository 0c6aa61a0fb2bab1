// Calls into LISP: their arguments, the used part of each result, and the lines that trace them.
#include "host/lisp_calls.h"

#include "host/host_api_lisp.h"
#include "host/script_form.h"
#include "tests/support/chain_text.h"
#include "tests/support/lisp_session.h"
#include "text/encoding.h"
#include "text/split.h"

#include <doctest/doctest.h>

#include <string>

using namespace brenvolt;
using test::LispSession;
using test::textOf;

namespace {

/// Defines a function that returns `value` and records its arguments in `asked`, callable from native code.
void answerWith(LispSession& lisp, const std::string& name, const std::string& value) {
  lisp.eval("(setq asked nil) (defun " + name + " (&rest all) (setq asked all) " + value + ")");
  exposeFunction(fromUtf8(name));
}

std::string joined(const std::vector<std::wstring>& texts) {
  return toUtf8(join(texts, L"|"));
}

} // namespace

TEST_CASE("a function is reachable once it is exposed, unless it is a command") {
  LispSession lisp;
  ResultList answer;
  lisp.eval("(defun zan_native (x) (list x \"b\")) (defun c:zan_command () 5)");
  const ResultList call = test::chainOf("\"zan_native\" 1");
  CHECK_EQ(invoke(call, answer), kvstatus::rejected);
  CHECK_EQ(exposeFunction(L"zan_native"), kvstatus::normal);
  CHECK_EQ(invoke(call, answer), kvstatus::normal);
  CHECK_EQ(textOf(answer), "( 1 \"b\" )");
  CHECK_EQ(invoke(test::chainOf("\"c:zan_command\""), answer), kvstatus::normal);
  CHECK_EQ(textOf(answer), "5");
  CHECK_EQ(invoke(ResultList(), answer), kvstatus::rejected);
  CHECK(answer.isEmpty());
  CHECK_EQ(exposeFunction(std::wstring(200, L'x')), kvstatus::rejected);
}

TEST_CASE("without a document nothing is evaluated") {
  LispSession lisp;
  lisp.host().documents().close(*lisp.host().documents().current());
  ResultList answer;
  CHECK_EQ(evalString(L"(list 1)", answer), kvstatus::lispNotReady);
  CHECK_FALSE(findFile(L"a.xls"));
}

TEST_CASE("a file is found when LISP answers a text that is not empty") {
  struct Row {
    const char* answer;
    const char* path; ///< null: nothing
  };
  const Row rows[] = {
      {"\"/x/zan.xls\"", "/x/zan.xls"},
      {"\"\"", nullptr},
      {"nil", nullptr},
      {"7", nullptr},
      {"'(\"a\")", nullptr},
      {"(car 5)", nullptr}};
  LispSession lisp;
  CHECK_FALSE(findFile(L"zan.xls"));
  for (const Row& row : rows) {
    CAPTURE(row.answer);
    answerWith(lisp, "c:zan_find_file", row.answer);
    const auto path = findFile(L"zan.xls");
    CHECK_EQ(path.has_value(), row.path != nullptr);
    if (row.path != nullptr) CHECK_EQ(toUtf8(*path), row.path);
    CHECK_EQ(lisp.eval("asked"), "(\"zan.xls\" 3)");
  }
}

TEST_CASE("wire types and settings keep their positions") {
  LispSession lisp;
  CHECK(getActiveWireTypes().empty());
  answerWith(lisp, "zan_get_active_dwg_wiretype", "'(\"RED\" nil \"BLU\" 5 (\"x\" \"y\") \"GRN\")");
  CHECK_EQ(joined(getActiveWireTypes()), "RED||BLU|||GRN");
  CHECK_EQ(lisp.eval("asked"), "nil");

  answerWith(
      lisp, "zan_get_activedrawing_wiretype_settings",
      "(list (cons 1 \"a\") (cons 4 \"b\") (cons 90 100000) nil (cons 290 1) 1.5 \"c\")");
  CHECK_EQ(joined(getWireTypeSettings(L"RED")), "a|b|100000||1||c");
  CHECK_EQ(lisp.eval("asked"), "(\"RED\")");
  answerWith(lisp, "zan_get_activedrawing_wiretype_settings", "nil");
  CHECK(getWireTypeSettings(L"RED").empty());
}

TEST_CASE("the project database comes with backslashes") {
  LispSession lisp;
  CHECK_FALSE(getProjectDatabase());
  answerWith(lisp, "qn_mdb_proj_dbfnam", "\"c:/a/b.mdb\"");
  CHECK(getProjectDatabase() == L"c:\\a\\b.mdb");
  CHECK_EQ(lisp.eval("asked"), "(nil)");
  answerWith(lisp, "qn_mdb_proj_dbfnam", "5");
  CHECK(getProjectDatabase() == L"");
  answerWith(lisp, "qn_mdb_proj_dbfnam", "nil");
  CHECK_FALSE(getProjectDatabase());
}

TEST_CASE("codes and handles are handed over, rows of another length are not") {
  LispSession lisp;
  answerWith(lisp, "qn_bv_save_codehdl", "1");
  CHECK(saveCodeHandles({{L"M1", L"1A"}, {L"short"}, {L"a", L"b", L"c"}, {L"M2", L""}}));
  CHECK_EQ(lisp.eval("asked"), "(((\"M1\" nil \"1A\") (\"M2\" nil \"\")))");
  lisp.eval("(setq asked nil)");
  CHECK_FALSE(saveCodeHandles({{L"short"}}));
  CHECK_FALSE(saveCodeHandles({}));
  CHECK_EQ(lisp.eval("asked"), "nil");
  answerWith(lisp, "qn_bv_save_codehdl", "nil");
  CHECK_FALSE(saveCodeHandles({{L"M1", L"1A"}}));
}

TEST_CASE("a form runs with its variables; nil is an answer, an error is none") {
  LispSession lisp;
  ResultList answer;
  answerWith(lisp, "zan_form", "2");
  const std::vector<ZanScriptVariable> none;
  CHECK(runForm(L"(zan_form (list 1 2) \"a\" b)", none, answer));
  CHECK_EQ(textOf(answer), "2");
  CHECK_EQ(lisp.eval("asked"), "((1 2) \"a\" \"b\")");
  answerWith(lisp, "zan_form", "nil");
  CHECK(runForm(L"zan_form", none, answer));
  CHECK(answer.isEmpty());
  for (const wchar_t* form :
       {L"", L"()", L"(1 2)", L"(zan_unknown)", L"(zan_form (list 1)", L"(zan_form 1))"}) {
    CAPTURE(toUtf8(form));
    CHECK_FALSE(runForm(form, none, answer));
    CHECK(answer.isEmpty());
  }
}

TEST_CASE("a traced call prints a line before it and one after it, whatever signs its text has") {
  LispSession lisp;
  lisp.takePrinted();
  setTrace(true);
  static_cast<void>(findFile(L"100%s.xls"));
  setTrace(false);
  CHECK_EQ(
      lisp.takePrinted(),
      "\nEXEC IN: (c:zan_find_file \"100%s.xls\" 3)\nEXEC OUT: (c:zan_find_file \"100%s.xls\" 3)");
}
