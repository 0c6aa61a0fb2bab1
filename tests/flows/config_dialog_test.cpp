// Sessions of the configuration dialog, from LISP to the drawing, the history and what LISP is told at the end.
#include "tests/flows/config_site.h"
#include "tests/support/golden.h"

#include <doctest/doctest.h>

using namespace brenvolt::test;

namespace {

const std::string finish = pressing("ok");
const std::string undo = pressing("undo");
const std::string insert = pressing("insertCurrent");
const std::string insertUpToHere = pressing("insertUpToCurrent");
const std::string insertAll = pressing("insertAll");

} // namespace

TEST_CASE("units inserted as they stand give the drawing of a direct build, in whatever steps they go in") {
  const std::string markers = "((HEAD 1) (BRK 2) (HEAD 3) (CON 4) (LMP 5))";
  const ConfigResult direct = ConfigSite().run({.markers = markers, .steps = {}, .isDirect = true});
  CHECK_EQ(direct.drawn, R"(("head" "small" "head" "plain" "red"))");

  struct Row {
    const char* promise;
    std::string session;
  };
  const Row rows[] = {
      {"one by one", configStep(
                         {expectingUnits({"Breaker [1]", "Contactor", "Lamp"}), insert,
                          expectingUnits({"Breaker [2]", "Contactor [1]", "Lamp"}), insert, insert,
                          expectingUnits({"Breaker [2]", "Contactor [2]", "Lamp [2]"}),
                          expecting("insertAll", R"("enabled": false)"), finish})},
      {"all at once", configStep({insertAll, finish})},
      {"up to the current one, then the rest",
       configStep(
           {selecting({"Contactor"}), insertUpToHere,
            expectingUnits({"Breaker [2]", "Contactor [2]", "Lamp"}), insertAll, finish})},
      {"with an insertion that is taken back",
       configStep(
           {insert, insert, undo, expectingUnits({"Breaker [2]", "Contactor", "Lamp [1]"}), undo,
            expecting("undo", R"("enabled": false)"), insertAll, finish})},
  };
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    ConfigSite site;
    const ConfigResult result = site.run({.markers = markers, .steps = {row.session}});
    CHECK_EQ(result.failure, "");
    CHECK_EQ(result.answer, "T");
    CHECK_EQ(result.drawn, direct.drawn);
    CHECK_EQ(result.drawing, direct.drawing);
    CHECK_EQ(result.saved, direct.saved);
    CHECK_EQ(site.historyNames(), "Motor (001) [      ]");
  }
}
