// Markers as a scan finds them in a drawing.
#include "build/marker_scan.h"

#include "tests/build/build_site.h"

#include <doctest/doctest.h>

using namespace brenvolt;
using test::BuildSite;

namespace {

struct Scan {
  BuildSite site;
  ScanPlace place = {L"*Model_Space", {}, 1, 0};
  ZanDwgMarkerList list;
  ZanWireFormatter wires; ///< of the last scan

  /// Scans into a list; whether any marker came.
  bool run(ZanDwgMarkerList& into, std::uint64_t after = 0) {
    place.afterHandle = KvDbHandle(after);
    MarkerScan found = scanMarkers(site.drawing(), place, list);
    wires = found.wires;
    const bool isAny = !found.markers.empty();
    for (ZanDwgMarker& marker : found.markers)
      into.Insert(std::move(marker));
    into.Finish();
    return isAny;
  }
  std::uint64_t last() {
    return std::stoull(
        site.eval("(progn (mark \"X\" \"0\") (entity-handle (entity-last)))").substr(1), nullptr, 16);
  }
};

std::string describe(const ZanDwgMarkerList& list) {
  std::vector<std::wstring> texts;
  for (const ZanDwgMarker& marker : list.markers())
    texts.push_back(marker.GetKey());
  return test::describeCodes(texts);
}

} // namespace

TEST_CASE("markers come in order of their numbers, equal ones in drawing order, others not at all") {
  Scan scan;
  const std::uint64_t before = scan.last();
  scan.site.eval("(mark \"B\" \"10\") (mark \"A\" \"2\") (mark \"\" \"1\" \"_WIRETYPE=LOST;\")"
                 "(draw-line '(0 0) '(1 1)) (define-block \"OTHER\" '(0 0) (lambda ()"
                 "  (draw-attribute-definition \"CODE\" '(0 0) \"\" 1.0)))"
                 "(insert-block \"OTHER\" '(0 0) 1.0 0.0 \"0\" '((\"CODE\" . \"O\")))"
                 "(mark \"A\" \"2.0\") (mark \"C\" \"first\") (mark \"WT01\" \"-1\" \"_WIRETYPE=L_@S@;\")");
  CHECK(scan.run(scan.list, before));
  CHECK_EQ(describe(scan.list), "WT01.1.1 C.1.1 A.1.1 A.2.1 B.1.1");
  const ZanDwgMarker& wire = scan.list.markers().front();
  CHECK_EQ(wire.misc1, L"_WIRETYPE=L_@S@;");
  CHECK_EQ(wire.position.y, 2.0);
  CHECK_EQ(scan.wires.GetWireFormat(L"WT01").pattern, L"L_*");
  CHECK_FALSE(scan.run(scan.list, before)); // they are in the tree by now
  CHECK_EQ(scan.site.drawing().openObjectCount(), 0);
}

TEST_CASE("a scan that cannot begin finds nothing") {
  Scan scan;
  scan.site.eval("(setq line (draw-line '(0 0) '(1 1)))");
  const std::uint64_t erased = scan.last();
  scan.site.eval("(mark \"A\" \"1\") (wipe \"X\")");
  CHECK_FALSE(scan.run(scan.list, erased));
  CHECK_FALSE(scan.run(scan.list, 0xFFFF));
  scan.place.spaceName = L"*Paper_Space";
  CHECK_FALSE(scan.run(scan.list));
  scan.place.spaceName = L"nowhere";
  CHECK_FALSE(scan.run(scan.list));
  scan.place.spaceName = L"*Model_Space";
  CHECK(scan.run(scan.list));
}
