#include "drawing_support.h"
#include "tests/support/chain_text.h"

using namespace brenvolt;
using namespace brenvolt::test;

TEST_CASE("each field becomes the LISP value of its type") {
  ZanAnnotationData row(L"Catalog");
  row.Add(L"12.50", kvtype::real, L"a", false);
  row.Add(L"7 A", kvtype::shortInteger, L"b", false);
  row.Add(L"CB-40", kvtype::string, L"c", false);
  row.Add(L"100000", kvtype::longInteger, L"d", false);
  row.Add(L"anything", kvtype::nil, L"e", false);
  row.Add(L"", kvtype::t, L"f", false);
  row.Add(L"no number", kvtype::real, L"g", false);
  row.Add(L"unseen", kvtype::string, L"h", true);
  CHECK(row.Count() == 8);
  CHECK_EQ(textOf(row.ToLisp()), "( 12.5 7 \"CB-40\" 100000L nil T 0.0 )");
}

TEST_CASE("nothing to show is nil, and a type without a LISP form fails the whole") {
  ZanAnnotationData hidden(L"Catalog");
  hidden.Add(L"Breaker", kvtype::string, L"TITLE", true);
  ZanAnnotationData unknown(L"Catalog");
  unknown.AddText(L"first", L"a");
  unknown.Add(L"second", kvtype::point3d, L"b", false);

  CHECK_EQ(textOf(ZanAnnotationData().ToLisp()), "nil");
  CHECK_EQ(textOf(hidden.ToLisp()), "nil");
  CHECK_EQ(textOf(unknown.ToLisp()), "");
  CHECK_EQ(textOf(ZanAnnotationDataList().ToLisp()), "nil");

  ZanAnnotationDataList list;
  list.AddRow(makeRow(L"MotorSetup", {{L"Type", L"ARDEN"}}));
  list.AddRow(hidden);
  list.AddList({});
  CHECK_EQ(textOf(list.ToLisp()), "( ( \"ARDEN\" ) nil nil )");
  ZanAnnotationDataList nested;
  nested.AddRow(unknown);
  list.AddList(nested);
  CHECK_EQ(textOf(list.ToLisp()), "");
}
