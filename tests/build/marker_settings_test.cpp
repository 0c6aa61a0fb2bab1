// Which motor's rows a marker gets in a tree that grows; the whole rule is tested in each way of building, by
// tests/flows/second_site_test.cpp.
#include "build/marker_settings.h"

#include <doctest/doctest.h>

using namespace brenvolt;

namespace {

void add(ZanDwgMarkerList& list, const wchar_t* order, const wchar_t* motor) {
  ZanDwgMarker marker;
  marker.order = order;
  if (*motor != L'\0') marker.controls.AddRow(ZanAnnotationData(motor));
  list.Insert(std::move(marker));
  list.Finish();
}

} // namespace

TEST_CASE("a list that has grown since it was asked for has its new motors") {
  ZanDwgMarkerList markers;
  add(markers, L"1", L"A");
  add(markers, L"2", L"");
  const ZanAnnotationDataList circuit;
  MarkerSettings settings(markers, rowsOfMarkers(), circuit);
  ZanDwgMarkerList& children = markers.markers().front().EnsureChildren();
  for (const wchar_t* motor : {L"", L"N"}) {
    add(children, L"1", motor);
    const RowsInForce inForce = settings.at(children.markers().front());
    CHECK(inForce.rows->items().front().row->name == (*motor == L'\0' ? L"A" : motor));
  }
}
