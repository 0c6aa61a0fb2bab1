// `zan_bv_build_circuit` as LISP calls it: on every way out the resource stack is as before, no object is left open
// and no build is under way.
#include "plugin/dispatcher.h"
#include "plugin/function_table.h"
#include "plugin/handlers/build_circuit.h"
#include "plugin/process_record.h"
#include "tests/support/lisp_session.h"
#include "tests/support/sheets.h"
#include "tests/support/temporary_folder.h"

#include <doctest/doctest.h>

using namespace brenvolt;

namespace {

constexpr std::string_view product = R"lisp(
(define-block "ZAN_BV_MARKER_BLOCK" '(0 0) (lambda ()
  (draw-attribute-definition "CODE" '(0 0) "" 1.0) (draw-attribute-definition "ORDER" '(0 0) "" 1.0)))
(defun template (code)
  (entity-handle (prog1 (draw-line '(0 0) '(1 1))
    (insert-block "ZAN_BV_MARKER_BLOCK" '(0 0) 1.0 0.0 "0" (list (cons "CODE" code))))))
(setq ran nil)
(defun note (what) (setq ran what) T)
(defun build-again () (zan_bv_build_circuit book "DONE" "" "" "" T (template "M1")) (note "outer") T)
(setq depth 0)
(defun build-itself () (setq depth (+ depth 1))
  (zan_bv_build_circuit book "ENDLESS" "" "" "" T (template "M1")) (note (number->string depth)) T)
(vz-korvo-defun 'note)
(vz-korvo-defun 'throw-number)
(vz-korvo-defun 'build-again)
(vz-korvo-defun 'build-itself)
)lisp";

} // namespace

TEST_CASE("a direct build answers T or nil and leaves nothing behind, exceptions included") {
  struct Row {
    const char* promise;
    const char* arguments;
    const char* answer;
    const char* ran;
  };
  const Row rows[] = {
      {"done", "(list book \"DONE\" \"c\" \"t\" \"\" T (template \"M1\"))", "T", "\"done\""},
      {"bare arguments", "book \"DONE\" \"c\" \"t\" \"\" 1 (template \"m1\")", "T", "\"done\""},
      {"wrong arguments", "book 5", "nil", "nil"},
      {"no such sheet", "book \"MISSING\" \"\" \"\" \"\" T (template \"M1\")", "nil", "nil"},
      {"no such workbook", "\"no.xls\" \"DONE\" \"\" \"\" \"\" T (template \"M1\")", "nil", "nil"},
      {"no marker behind the handle", "book \"DONE\" \"\" \"\" \"\" T \"FFFF\"", "nil", "nil"},
      {"a foreign template", "book \"DONE\" \"\" \"\" \"\" T (template \"OTHER\")", "nil", "nil"},
      {"a failed form", "book \"FAILS\" \"\" \"\" \"\" T (template \"M1\")", "nil", "nil"},
      {"an exception of the host", "book \"THROWS\" \"\" \"\" \"\" T (template \"M1\")", "nil", "T"},
      {"a build inside of a build", "book \"AGAIN\" \"\" \"\" \"\" T (template \"M1\")", "T", "\"outer\""},
      {"a circuit that builds itself without end", "book \"ENDLESS\" \"\" \"\" \"\" T (template \"M1\")", "T",
       "\"17\""},
      {"a quit ahead of it", "(quit-host) \"DONE\" \"\" \"\" \"\" T (template \"M1\")", "nil", "nil"},
  };
  test::TemporaryFolder folder;
  std::vector<BookSheet> sheets;
  for (const auto& [name, form] :
       {std::pair{L"DONE", "(note done)"},
        {L"FAILS", "(missing)"},
        {L"THROWS", "(throw-number)"},
        {L"AGAIN", "(build-again)"},
        {L"ENDLESS", "(build-itself)"}})
    sheets.push_back(
        test::sheetOf(name, {"c|t|x|g|o|v|n|first|second", std::string("M1|Title||||||") + form}));
  const std::wstring book = test::writeBook(folder / "book.xls", sheets);

  test::LispSession lisp;
  auto& interpreter = lisp.host().documents().current()->interpreter();
  interpreter.setValue(L"book", simhost::lisp::Value::string(book));
  interpreter.define(L"throw-number", 0, 0, [&interpreter](auto&) -> simhost::lisp::Value {
    interpreter.setValue(L"ran", simhost::lisp::Value::truth(true));
    throw 5; // of no class that the host would catch
  });
  interpreter.define(L"quit-host", 0, 0, [&lisp](auto&) {
    lisp.windows().postQuit();
    return simhost::lisp::Value();
  });
  lisp.eval(product);
  registerFunctions();
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    lisp.eval("(setq ran nil)");
    CHECK_EQ(lisp.eval(std::string("(zan_bv_build_circuit ") + row.arguments + ")"), row.answer);
    CHECK_EQ(lisp.eval("ran"), row.ran);
    CHECK_EQ(lisp.host().documents().resourceDepth(), 0);
    CHECK_EQ(lisp.host().documents().current()->drawing().openObjectCount(), 0);
    CHECK(processRecord().build == nullptr);
  }
  resetProcessRecord();
}
