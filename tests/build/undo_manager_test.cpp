// Steps back and the way to the start over a real undo log.
#include "build/undo_manager.h"

#include "tests/support/lisp_session.h"

#include <doctest/doctest.h>

using namespace brenvolt;
using test::LispSession;

namespace {

KvDbDatabase& drawingOf(LispSession& lisp) {
  return lisp.host().documents().current()->drawing();
}

constexpr const char* draw = "(undo-count) (draw-line '(0 0) '(1 1)) (undo-count)";
constexpr const char* count = "(length (entities-in-space))";

} // namespace

TEST_CASE("each step goes back to its mark, the last mark first") {
  LispSession lisp;
  KvDbDatabase& drawing = drawingOf(lisp);
  ZanUndoManager undo;
  REQUIRE(undo.bind(&drawing, 0));
  lisp.eval(draw);
  for (int mark = 1; mark <= 2; ++mark) {
    undo.mark();
    lisp.eval(draw);
    lisp.eval(draw);
  }
  CHECK_EQ(undo.marks(), 2);
  CHECK_EQ(lisp.eval(count), "5");
  CHECK(undo.stepBack());
  CHECK_EQ(lisp.eval(count), "3");
  CHECK(undo.stepBack());
  CHECK_EQ(lisp.eval(count), "1");
  CHECK_EQ(undo.marks(), 0);
  CHECK_FALSE(undo.stepBack());
  CHECK_EQ(undo.marks(), 0);
  CHECK_EQ(lisp.eval(count), "1");

  undo.mark();
  CHECK(undo.stepBack()); // nothing was drawn: no record is undone, and that is a step
  CHECK_EQ(lisp.eval(count), "1");
}

TEST_CASE("a refusal of the host costs the mark") {
  LispSession lisp;
  ZanUndoManager undo;
  REQUIRE(undo.bind(&drawingOf(lisp), 100)); // beyond the count: the difference wraps in 16 bits
  lisp.eval(draw);
  undo.mark();
  lisp.eval("(undo 1)"); // the user went back before the mark
  CHECK_FALSE(undo.stepBack());
  CHECK_EQ(undo.marks(), 0);
  CHECK_FALSE(undo.hasSteps());
  undo.mark();
  CHECK_FALSE(undo.rollback());
  CHECK_EQ(undo.marks(), 0);
  CHECK_EQ(lisp.eval(count), "0");
}
