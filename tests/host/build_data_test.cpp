// The symbol of build data: read by position for any value in LISP, written without damage to foreign elements.
#include "host/build_data.h"

#include "tests/support/lisp_session.h"
#include "text/encoding.h"
#include "text/numbers.h"

#include <doctest/doctest.h>

#include <string>

using namespace brenvolt;

namespace {

BuildData sample() {
  BuildData data;
  data.point = {7, 8, 9};
  data.trace = true;
  data.workbook = L"old";
  return data;
}

std::string show(const BuildData& data) {
  std::wstring text;
  for (const double number :
       {data.point.x, data.point.y, data.point.z, data.scaleA, data.scaleB, data.scaleC, data.scaleD}) {
    text += formatShortest(number) + L' ';
  }
  return toUtf8(text + (data.trace ? L"on " : L"off ") + data.workbook);
}

} // namespace

TEST_CASE("build data is read by position, and false changes nothing") {
  const std::string untouched = show(sample());
  struct Row {
    const char* symbol;
    bool isRead;
    std::string data; ///< point, scales a b c d, trace, workbook
  };
  const Row rows[] = {
      {"'(\"M\" (1.0 2.0 3.0) 1.5 4.5 3.5 2.5 0 \"w.xls\")", true, "1 2 3 1.5 2.5 3.5 4.5 off w.xls"},
      {"'(\"M\" (1.0 2.0) 1.5 4.5 3.5 2.5 1 \"w.xls\" \"more\")", true, "1 2 0 1.5 2.5 3.5 4.5 on w.xls"},
      {"'(nil nil 1.5 4.5 3.5 2.5 0 \"w.xls\")", true, "7 8 9 1.5 2.5 3.5 4.5 off w.xls"},
      {"'(\"M\" (1 2 3) 1.5 4.5 3.5 2.5 0 \"w.xls\")", true, "7 8 9 1.5 2.5 3.5 4.5 off w.xls"},
      {"'((1 2) 5 1.5 4.5 3.5 2.5)", true, "7 8 9 1.5 2.5 3.5 4.5 on old"},
      {"'(\"M\" nil 2 \"3\" nil (1 2) 100000 5)", true, "7 8 9 1 1 1 1 off old"},
      {"'(\"M\" nil 1.5 4.5 3.5 2.5 nil nil)", true, "7 8 9 1.5 2.5 3.5 4.5 on old"},
      {"'(\"M\" nil 1.5 4.5 3.5)", false, untouched},
      {"'(\"M\" nil 2.0)", false, untouched},
      {"'(\"M\")", false, untouched},
      {"nil", false, untouched},
      {"\"M\"", false, untouched},
      {"'(1.0 2.0 3.0)", false, untouched},
  };
  test::LispSession lisp;
  for (const Row& row : rows) {
    CAPTURE(row.symbol);
    lisp.eval("(setq GBL_qn_bv_data " + std::string(row.symbol) + ")");
    BuildData data = sample();
    CHECK_EQ(readBuildData(data), row.isRead);
    CHECK_EQ(show(data), row.data);
  }
}

TEST_CASE("build data is written into the list that LISP has, or into a new one") {
  struct Row {
    const char* before;
    bool isWritten;
    const char* after;
  };
  const Row rows[] = {
      {"nil", true, "(\"N\" nil 2.0 5.0 4.0 3.0 1)"},
      {"\"text\"", true, "(\"N\" nil 2.0 5.0 4.0 3.0 1)"},
      {"'(\"M\" (1.0 2.0 3.0) 1.0 1.0 1.0 1.0 0 \"w.xls\" (9 (8)))", true,
       "(\"N\" (1.0 2.0 3.0) 2.0 5.0 4.0 3.0 1 \"w.xls\" (9 (8)))"},
      {"'(nil (1 (2) 3) \"x\" nil (1 2) 7 nil)", true, "(\"N\" (1 (2) 3) 2.0 5.0 4.0 3.0 1)"},
      {"'(\"M\" nil 1.0 1.0 1.0 1.0)", true, "(\"N\" nil 2.0 5.0 4.0 3.0 1)"},
      {"'(\"M\" nil 1.0 1.0 1.0)", false, "(\"M\" nil 1.0 1.0 1.0)"},
      {"'(\"M\")", false, "(\"M\")"},
      {"'(\"M\" nil 1.0 1.0 1.0 1.0 0 some-symbol)", true, "(\"N\" nil 2.0 5.0 4.0 3.0 1)"},
  };
  BuildData data;
  data.scaleA = 2;
  data.scaleB = 3;
  data.scaleC = 4;
  data.scaleD = 5;
  data.trace = true;
  test::LispSession lisp;
  for (const Row& row : rows) {
    CAPTURE(row.before);
    lisp.eval("(setq GBL_qn_bv_data " + std::string(row.before) + ")");
    CHECK_EQ(writeBuildData(L"N", data), row.isWritten);
    CHECK_EQ(lisp.eval("GBL_qn_bv_data"), row.after);
  }
}
