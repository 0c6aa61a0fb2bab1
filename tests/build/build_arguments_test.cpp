// The arguments of a build by position, as LISP of different products writes them.
#include "build/build_arguments.h"

#include "tests/support/chain_text.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/split.h"

#include <doctest/doctest.h>

using namespace brenvolt;

namespace {

std::string parsed(std::string_view chain) {
  const auto args = parseBuildArguments(test::chainOf(chain));
  if (!args) return "refused";
  return toUtf8(join(
      {args->workbook, args->worksheet, args->circuit, args->type, args->historyName,
       args->directBuild ? L"direct" : L"asks", args->lastHandleText, formatInt(args->undoPosition),
       args->presetText, args->codeHandleText, args->drawingIndex, args->wireText},
      L"|"));
}

} // namespace

TEST_CASE("arguments come as one list or bare, and a wrong type costs one item or the build") {
  struct Row {
    const char* chain;
    const char* result;
  };
  const Row rows[] = {
      {R"(( "w" "s" "c" "t" "h" T "1A" 7 "p" "n" "d" "x" ))", "w|s|c|t|h|direct|1A|7|p|n|d|x"},
      {R"("w" "s" "c" "t" "h" T "1A" 70000L "p" "n" "d" "x")", "w|s|c|t|h|direct|1A|70000|p|n|d|x"},
      {R"(( "w" "s" ))", "w|s||||asks||0||||"},
      {R"(( "w" "s" "c" ) "t" "h" 1)", "w|s|c|t|h|direct||0||||"},
      {R"(( "w" "s" "c" "t" "h" nil "" 7 "p" "n" "d" "x" "more" 5 ))", "w|s|c|t|h|asks||7|p|n|d|x"},
      {R"(( "w" "s" 1 2.5 nil T "" "7" 5 6 T nil ))", "w|s||||direct||0||||"},
      {R"(( "w" "s" ( "c" "d" ) "t" ))", "w|s||t||asks||0||||"},
      {R"(( "w" "s" "c" "t" "h" T 26 ))", "refused"},
      {R"(( 1 "s" ))", "refused"},
      {R"(( "w" nil ))", "refused"},
      {R"(( "w" "" "c" ))", "refused"},
      {R"(( "w" ))", "refused"},
      {"( )", "refused"},
      {"", "refused"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.chain);
    CHECK_EQ(parsed(row.chain), row.result);
  }
}

TEST_CASE("a build is direct for T, for one and for the text of one") {
  struct Row {
    const char* item;
    bool isDirect;
  };
  const Row rows[] = {{"T", true},       {"1", true},      {"1L", true},     {"\"1\"", true},
                      {"\" 1x\"", true}, {"\"2\"", false}, {"\"T\"", false}, {"2", false},
                      {"nil", false},    {"1.0", false},   {"<1,2>", false}};
  for (const Row& row : rows) {
    CAPTURE(row.item);
    const auto args = parseBuildArguments(test::chainOf(R"("w" "s" "" "" "" )" + std::string(row.item)));
    REQUIRE(args);
    CHECK_EQ(args->directBuild, row.isDirect);
  }
}
