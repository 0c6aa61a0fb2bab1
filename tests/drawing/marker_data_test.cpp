#include "drawing/marker_data.h"

#include "drawing_support.h"
#include "tests/simhost/host_fixture.h"

using namespace brenvolt;
using namespace brenvolt::test;

TEST_CASE("each marker's index and values are put into the symbol") {
  const struct {
    const wchar_t* before; ///< a LISP form
    std::int32_t index;
    std::vector<std::int32_t> values;
    bool done;
    const wchar_t* after;
  } rows[] = {
      {L"'(0 (\"A\" \"B\") (\"-1\"))", 5, {1, -1, 20}, true, L"(5 (\"A\" \"B\") (\"1\" \"-1\" \"20\"))"},
      {L"'(0 (\"A\") (\"7\"))", 2, {}, true, L"(2 (\"A\") (\"7\"))"},
      {L"'(0 (\"A\") (\"7\") \"more\")", 2, {3}, true, L"(2 (\"A\") (\"3\") \"more\")"},
      {L"'(0 nil (\"7\"))", 1, {3}, true, L"(1 nil (\"3\"))"},
      {L"'(4 (\"A\"))", 1, {3}, true, L"(1 (\"A\"))"},
      {L"'(4)", 1, {3}, true, L"(1 0)"},
      {L"'(4)", 1, {}, true, L"(1)"},
      {L"'(\"x\" (\"A\"))", 1, {3}, false, L"(\"x\" (\"A\"))"},
      {L"'(1.5 (\"A\"))", 1, {3}, false, L"(1.5 (\"A\"))"},
      {L"\"text\"", 1, {3}, false, L"\"text\""},
      {L"nil", 1, {3}, false, L"nil"},
  };
  for (const auto& row : rows) {
    CAPTURE(std::wstring(row.before));
    simhost::HostFixture host;
    ZanDwgMarkerList none;
    REQUIRE(PublishMarkerData(none));
    host.eval(std::wstring(L"(setq GBL_qn_bv_marker_data ") + row.before + L")");
    CHECK(SetMarkerData(row.index, row.values) == row.done);
    CHECK(host.eval(L"GBL_qn_bv_marker_data") == row.after);
    CHECK(host.printed.empty());
  }
}

TEST_CASE("what a script changes between two markers stays changed") {
  simhost::HostFixture host;
  ZanDwgMarkerList list;
  list.Insert(makeMarker(L"A", L"1", 1, 0xABC));
  list.Insert(makeMarker(L"B", L"0", 1, 0x1F));
  list.Finish();
  REQUIRE(PublishMarkerData(list));
  CHECK(host.eval(L"GBL_qn_bv_marker_data") == L"(0 (\"1F\" \"ABC\") (\"-1\"))");
  list.Insert(makeMarker(L"D")); // no handle
  list.Finish();
  CHECK_FALSE(PublishMarkerData(list));
  CHECK(SetMarkerData(1, {8}));
  CHECK(SetMarkerData(2, {9}));
  CHECK(host.eval(L"GBL_qn_bv_marker_data") == L"(2 (\"1F\" \"ABC\") (\"9\"))");
  CHECK(SetMarkerData(3, {}));
  CHECK(host.eval(L"GBL_qn_bv_marker_data") == L"(3 (\"1F\" \"ABC\") (\"9\"))");
  host.eval(L"(setq GBL_qn_bv_marker_data '(0 (\"B\" \"C\") (\"-1\") 5))");
  CHECK(SetMarkerData(4, {7}));
  CHECK(host.eval(L"GBL_qn_bv_marker_data") == L"(4 (\"B\" \"C\") (\"7\") 5)");
  CHECK(SetMarkerData(5, {6}));
  CHECK(host.eval(L"GBL_qn_bv_marker_data") == L"(5 (\"B\" \"C\") (\"6\") 5)");
  host.eval(L"(setq GBL_qn_bv_marker_data nil)");
  CHECK_FALSE(SetMarkerData(6, {5}));
}

TEST_CASE("a list that a script has kept stays as it was") {
  simhost::HostFixture host;
  ZanDwgMarkerList none;
  CHECK_FALSE(SetMarkerData(3, {8})); // no run has begun
  REQUIRE(PublishMarkerData(none));
  host.eval(L"(setq GBL_qn_bv_marker_data '(0 (\"A\") (\"-1\")) kept GBL_qn_bv_marker_data)");
  CHECK(SetMarkerData(3, {8}));
  CHECK(host.eval(L"kept") == L"(0 (\"A\") (\"-1\"))");
  host.session.documents().allowLisp(false);
  CHECK_FALSE(SetMarkerData(4, {9}));
  host.session.documents().allowLisp(true);
  CHECK(host.eval(L"GBL_qn_bv_marker_data") == L"(3 (\"A\") (\"8\"))");
}
