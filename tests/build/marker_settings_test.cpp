// Which motor's rows a marker gets, by its order against the orders of the motors.
#include "build/marker_settings.h"

#include "tests/build/build_site.h"

#include <doctest/doctest.h>

using namespace brenvolt;

namespace {

ZanAnnotationDataList sourceOf(int motors) {
  ZanAnnotationDataList source;
  for (int motor = 1; motor <= motors; ++motor) {
    ZanAnnotationData row;
    row.AddText(std::wstring(L"M") + static_cast<wchar_t>(L'0' + motor), {});
    source.AddRow(std::move(row));
    ZanAnnotationData wire;
    wire.AddText(std::wstring(L"W") + static_cast<wchar_t>(L'0' + motor), {});
    ZanAnnotationDataList wires;
    wires.AddRow(std::move(wire));
    source.AddList(std::move(wires));
  }
  return source;
}

/// The motor whose rows each marker of these orders gets, as digits; "-" for none.
std::string walk(int motors, std::vector<std::wstring> orders, const std::vector<const wchar_t*>& markers) {
  MarkerSettings settings(sourceOf(motors), std::move(orders));
  std::string got;
  for (const wchar_t* order : markers) {
    ZanDwgMarker marker;
    marker.order = order;
    settings.advanceTo(marker);
    got += settings.groupData().isEmpty() ? '-' : test::describeRows(settings.groupData())[3];
  }
  return got;
}

} // namespace

TEST_CASE("markers get the rows of the motor that their order has reached") {
  struct Row {
    const char* promise;
    int motors;
    std::vector<std::wstring> orders;
    std::vector<const wchar_t*> markers;
    const char* got;
  };
  const Row rows[] = {
      {"one motor serves all", 1, {L"5"}, {L"1", L"9"}, "11"},
      {"no motor serves none", 0, {}, {L"1", L"9"}, "--"},
      {"the second begins at its order", 2, {L"1", L"10"}, {L"1", L"9", L"10", L"11"}, "1122"},
      {"or behind it", 2, {L"1", L"10"}, {L"9.5", L"10.5"}, "12"},
      {"an order is met as text too", 2, {L"1", L"A"}, {L"0", L"a"}, "12"},
      {"the third is reached at once by a marker behind the second's order",
       3,
       {L"1", L"10", L"20"},
       {L"1", L"10", L"11", L"20"},
       "1233"},
      {"a first marker behind all goes to the last", 3, {L"1", L"10", L"20"}, {L"30"}, "3"},
      {"fewer rows than orders: none", 1, {L"1", L"10"}, {L"1", L"10"}, "1-"},
      {"an odd source gives no half pair", 0, {L"1", L"10"}, {L"10"}, "-"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    CHECK_EQ(walk(row.motors, row.orders, row.markers), row.got);
  }
}

TEST_CASE("a marker's own rows stand from it on in a direct build") {
  const ZanAnnotationDataList circuit = sourceOf(1);
  MarkerSettings settings(circuit);
  ZanDwgMarker plain;
  ZanDwgMarker own;
  own.controls = sourceOf(2);
  CHECK_FALSE(settings.takeOwnRows(plain));
  CHECK_EQ(settings.groupData().items().size(), 2);
  CHECK(settings.takeOwnRows(own));
  CHECK_FALSE(settings.takeOwnRows(plain));
  CHECK_EQ(settings.groupData().items().size(), 4);
}
