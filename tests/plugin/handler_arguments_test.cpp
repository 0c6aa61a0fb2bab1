// Arguments and results of the pickers by position.
#include "plugin/handlers/rating_select.h"

#include "tests/support/chain_text.h"

#include <doctest/doctest.h>

using namespace brenvolt;
using test::chainOf;
using test::textOf;

TEST_CASE("a picker takes its arguments by position and steps over those of a wrong type") {
  struct Row {
    const char* arguments;
    const char* motor;
    const char* load;
  };
  const Row rows[] = {
      {"\"AC\" \"3\" \"480\" \"1800\" \"10\" \"HP\" 14.0 \"60\" 1.25",
       "( \"AC\" \"10\" \"HP\" \"480\" \"3\" \"60\" \"1800\" 14.0 1.25 )",
       "( \"AC\" \"1800\" \"10\" \"480\" \"3\" \"\" 0.0 0.0 )"},
      {"\"H\" \"1\" \"230\" \"5\" \"KW\" 21.5 \"50\" 1.5 \"more\" 9.0",
       "( \"H\" \"KW\" \"\" \"230\" \"1\" \"\" \"5\" 0.0 0.0 )",
       "( \"H\" \"5\" \"KW\" \"230\" \"1\" \"50\" 21.5 1.5 )"},
      {"nil 3 ( \"480\" ) T \"10\" <1,2> 14 1.0 \"1.25\" \"AC\"",
       "( \"\" \"10\" \"\" \"\" \"\" \"\" \"\" 0.0 0.0 )", "( \"\" \"\" \"10\" \"\" \"\" \"\" 0.0 1.0 )"},
      {"", "( \"\" \"\" \"\" \"\" \"\" \"\" \"\" 0.0 0.0 )", "( \"\" \"\" \"\" \"\" \"\" \"\" 0.0 0.0 )"},
      {"( \"AC\"", "( \"\" \"\" \"\" \"\" \"\" \"\" \"\" 0.0 0.0 )",
       "( \"\" \"\" \"\" \"\" \"\" \"\" 0.0 0.0 )"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.arguments);
    const ResultList arguments = chainOf(row.arguments);
    CHECK_EQ(textOf(motorPlaces.listOf(motorPlaces.read(arguments))), row.motor);
    CHECK_EQ(textOf(loadPlaces.listOf(loadPlaces.read(arguments))), row.load);
  }
}
