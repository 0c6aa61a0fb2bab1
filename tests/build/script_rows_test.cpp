// Script rows with a real interpreter and drawing: arguments and values of forms, and failures.
#include "build/script_rows.h"

#include "host/resources.h"
#include "tests/build/build_site.h"

#include <doctest/doctest.h>

using namespace brenvolt;
using test::BuildSite;

namespace {

struct Built {
  std::unique_ptr<ZanBrenvolt> build;
  bool result = false;
  [[nodiscard]] std::string executed() const {
    return test::describeCodes(build->state().result.executedCodes);
  }
  [[nodiscard]] std::string selections() const { return test::describeSelections(build->state()); }
};

Built run(
    BuildSite& site, const std::vector<std::string>& sheet, std::string_view markers,
    BuildKind kind = BuildKind::direct) {
  site.writeSheet(sheet);
  site.eval(markers);
  Built built;
  built.build = site.prepared(site.arguments());
  REQUIRE(built.build);
  const ResourceScope resources;
  built.result = built.build->prepare(kind);
  CHECK_EQ(site.drawing().openObjectCount(), 0);
  return built;
}

} // namespace

TEST_CASE("forms get the variables of their marker, and symbols hold the same") {
  BuildSite site;
  site.eval("(setq GBL_qn_bv_data '(\"c\" nil 1.0 4.0 3.0 2.5 0))");
  const Built built =
      run(site,
          {"M1|Motor||Start|A|7|7|(note #xyz #MISC1 #scl #data #data2)|(look)", "||x||B|8|8|(look)",
           "|||Brake|On|20", "||x||Off|0", "M2|Lamp||||||(look)"},
          "(mark \"M1\" \"1\" \"free text\") (mark \"M2\" \"2\") (mark \"GONE\" \"3\")"
          // Neither a marker without a CODE nor another block counts.
          "(mark \"\" \"1\") (define-block \"OTHER\" '(0 0) (lambda ()"
          "  (draw-attribute-definition \"CODE\" '(0 0) \"\" 1.0)))"
          "(insert-block \"OTHER\" '(0 0) 1.0 0.0 \"0\" '((\"CODE\" . \"M2\")))");
  CHECK(built.result);
  CHECK_EQ(site.eval("ran"), "nil"); // option code 8: the row of 7 stays out
  CHECK_EQ(site.eval("(length seen)"), "2");
  CHECK_EQ(site.eval("(car (car seen))"), "(1.0 2.0)");
  CHECK_EQ(site.eval("(cadr (car seen))"), "2.5");
  CHECK_EQ(site.eval("(car (cadddr (car seen)))"), "0");
  CHECK_EQ(site.eval("(length (cadr (cadddr (car seen))))"), "3");
  CHECK_EQ(site.eval("(caddr (cadddr (car seen)))"), "(\"8\" \"0\")");
  CHECK_EQ(site.eval("(car (cadddr (cadr seen)))"), "1");
  CHECK_EQ(site.eval("(caddr (cadddr (cadr seen)))"), "(\"8\" \"0\")"); // no values: the third element stays
  CHECK_EQ(built.executed(), "");
  CHECK_EQ(built.selections(), "M1=8,0 M2=");
  CHECK_EQ(site.markersLeft(), "(\"GONE\" \"\")");
}

TEST_CASE("markers without rows note their choice; codes that LISP keeps stay with it") {
  BuildSite site;
  site.eval("(setq GBL_qn_bv_save_codehdl_combos '((\"m2\" \"1A\")))");
  const Built built = run(
      site,
      {"M1|Motor||Start|A|1", "||x||B|2", "|||Brake|Off|0", "M2|Kept||||||(note 2)",
       "M3|Plain|||||1|(note 3)", "M4|Two|x|G|A|1|9|(note 4)", "||x||B|2|9|(note 4)"},
      "(mark \"M1\" \"1\") (mark \"M2\" \"2\") (mark \"M3\" \"3\") (mark \"M4\" \"4\") (mark \"m1\" \"5\")");
  CHECK(built.result);
  CHECK_EQ(site.eval("ran"), "((2))");
  CHECK_EQ(built.executed(), "M2");
  CHECK_EQ(built.selections(), "M1=2,-1 M4=1,2");
  CHECK_EQ(site.markersLeft(), "(\"M1\" \"M3\" \"M4\" \"m1\")");
}

TEST_CASE("a failing form is told and the next one runs; the last row decides over the walk") {
  struct Row {
    const char* forms;
    int errors;
    bool result;
    const char* ran;
  };
  const Row rows[] = {
      {"(broken 1)(note 1)", 1, true, "((1) (9))"},
      {"(note 1)(broken 1)", 1, false, "((1))"},
      {"(missing)(broken 1)(note 1)", 2, true, "((1) (9))"},
      {"(note 1) (", 0, true, "((1) (9))"},
      {"()", 1, false, "nil"},
      {"(give nil)", 0, true, "((9))"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.forms);
    BuildSite site(row.errors);
    const Built built =
        run(site, {std::string("M1|Motor||||||") + row.forms, "M9|Last||||||(note 9)"},
            "(mark \"M1\" \"1\") (mark \"M9\" \"2\")");
    CHECK_EQ(built.result, row.result);
    CHECK_EQ(site.eval("ran"), row.ran);
    CHECK_EQ(site.shown().size(), static_cast<std::size_t>(row.errors));
    // The failing marker is done with nevertheless.
    CHECK_EQ(built.selections(), row.result ? "M1= M9=" : "M1=");
    CHECK_EQ(site.markersLeft(), row.result ? "nil" : "(\"M9\")");
  }
  BuildSite site(1);
  static_cast<void>(run(site, {"M1|Motor||||||(broken 1)"}, "(mark \"M1\" \"1\")"));
  CHECK_EQ(
      site.shown().front(),
      "failed: (broken 1) in zan_brenvolt.xls S 2 8 M1: BROKEN takes 0 arguments, not 1");
}

TEST_CASE("a marker that an earlier form erased is passed over") {
  BuildSite site;
  const Built built =
      run(site, {"M1|Motor||||||(wipe \"M1\")(wipe \"M2\")", "M2|Lamp||||||(note 2)", "M3|End||||||(note 3)"},
          "(mark \"M1\" \"1\") (mark \"M2\" \"2\") (mark \"M3\" \"3\")");
  CHECK(built.result);
  CHECK_EQ(site.eval("ran"), "((3))");
  CHECK_EQ(built.selections(), "M1= M3=");
}

TEST_CASE("the answer 2 brings the markers of a nested template, which run at once") {
  BuildSite site;
  const Built built =
      run(site,
          {"M1|Motor||||||(nest \"N1\")(nest \"N2\" \"WT01\")(look)(give 2)", "N1|Inner||||||(nest \"D1\")",
           "N2|Inner||||||(note n2)", "D1|Deep||||||(note d1)(look)", "M2|End||||||(note m2)(look)"},
          "(mark \"M1\" \"1\") (mark \"M2\" \"2\")");
  CHECK(built.result);
  // The second row does not meet the markers of the first one again.
  CHECK_EQ(site.eval("ran"), "((\"N1\") (\"D1\") (\"d1\") (\"N2\" \"WT01\") (\"n2\") (\"m2\"))");
  // The index counts the whole tree of its moment, and addresses the handles.
  CHECK_EQ(site.eval("(mapcar '(lambda (each) (car (cadddr each))) seen)"), "(2 0 5)");
  CHECK_EQ(site.eval("(mapcar '(lambda (each) (length (cadr (cadddr each)))) seen)"), "(4 6 6)");
  CHECK_EQ(built.selections(), "D1= M1= M2= N1= N2=");
  CHECK_EQ(built.executed(), "");
  CHECK_EQ(site.markersLeft(), "(\"WT01\")");
  CHECK_EQ(built.build->state().maker.wires().formats(SamePosition::eachCounts).GetWireCodes(L"").size(), 1);
}

TEST_CASE("a nested template that does not belong to the worksheet fails its row") {
  BuildSite site;
  const Built built =
      run(site, {"M1|Motor||||||(nest \"OTHER\")", "M2|End||||||(note 2)"},
          "(mark \"M1\" \"1\") (mark \"M2\" \"2\")");
  CHECK_FALSE(built.result);
  CHECK_EQ(site.shown(), std::vector<std::string>{"foreign template"});
  CHECK_EQ(site.eval("ran"), "((\"OTHER\"))");
}

TEST_CASE("a template that inserts itself without end is stopped with one message and leaves no marker") {
  struct Row {
    const char* forms;
    bool result;
    const char* ran;
  };
  const Row rows[] = {
      {"(nest \"SELF\")", false, "64"},
      {"(nest \"SELF\" \"SELF\")(give 1)", true,
       "127"}, // each level but the last has a second one, which is not nested
  };
  for (const Row& row : rows) {
    CAPTURE(row.forms);
    BuildSite site;
    const Built built = run(site, {std::string("SELF|Endless||||||") + row.forms}, "(mark \"SELF\" \"1\")");
    CHECK_EQ(built.result, row.result);
    CHECK_EQ(site.eval("(length ran)"), row.ran);
    const std::string printed = site.lisp().takePrinted();
    CHECK_EQ(printed.find("deeper than 64"), printed.rfind("deeper than 64"));
    CHECK(printed.find("SELF") != std::string::npos);
    built.build->finish();
    CHECK_EQ(site.markersLeft(), "nil");
  }
}

TEST_CASE("a quit that comes while messages are handled ends the walk and all around it") {
  BuildSite site;
  site.lisp().host().documents().current()->interpreter().define(L"quit-host", 0, 0, [](auto&) {
    kvdsPostQuit();
    return simhost::lisp::Value::truth(true);
  });
  site.eval("(vz-korvo-defun 'quit-host)");
  const Built built =
      run(site,
          {"M1|Motor||||||(nest \"N1\" \"N2\")(note 1)", "N1|Inner||||||(quit-host)(note n1)",
           "N2|Inner||||||(note n2)"},
          "(mark \"M1\" \"1\")");
  CHECK_FALSE(built.result);
  CHECK_FALSE(built.build->needsFinish());
  CHECK_EQ(site.eval("ran"), "((\"N1\" \"N2\") (\"n1\"))");
  CHECK_EQ(site.markersLeft(), "(\"M1\" \"N2\")");
}

TEST_CASE("an interactive build runs up to the first choice, and an undone run takes its markers with it") {
  BuildSite site;
  const Built built =
      run(site,
          {"M1|First||||||(note 1)", "M2|Choice|x|G|A|1|1|(nest \"N1\")", "M3|Last||||||(note 3)",
           "N1|In|x|H|B|1|1|(note n1)"},
          "(mark \"M1\" \"1\") (mark \"M2\" \"2\") (mark \"M3\" \"3\")", BuildKind::interactive);
  ZanBrenvolt& build = *built.build;
  CHECK(built.result);
  CHECK_EQ(site.eval("ran"), "((1))");
  CHECK_EQ(build.level(), 0);
  CHECK_FALSE(build.canGoBack());
  CHECK(build.runLevel()); // nothing is marked for insertion
  CHECK_EQ(build.level(), 0);

  REQUIRE_EQ(build.units().units().size(), 1);
  build.units().units().front()->pending = true;
  CHECK(build.runLevel());
  CHECK_EQ(site.eval("ran"), "((1) (\"N1\") (3))"); // N1 waits, the markers after the choice go with it
  CHECK_EQ(build.level(), 1);
  CHECK(build.canGoBack());
  CHECK(build.state().markers.markers()[1].children() != nullptr);

  const std::int32_t undone = build.level();
  CHECK(build.stepBack());
  build.truncateTo(undone);
  CHECK(build.state().markers.markers()[1].children() == nullptr);
  CHECK_EQ(site.markersLeft(), "(\"M2\" \"M3\")");
  build.forgetUnit(L"m2");
  CHECK_EQ(built.selections(), "M1= M3=");
  build.units().units().front()->pending = true;
  CHECK(build.runLevel());
  CHECK(build.rollback());
  CHECK_EQ(build.level(), 0);
  CHECK_EQ(site.markersLeft(), "nil");
}
