// Trees are written as "CODE/ORDER(children)"; a code in small letters is a marker without options.
#include "config/config_marker_bridge.h"

#include "text/compare.h"

#include <doctest/doctest.h>

using namespace brenvolt;

namespace {

class TreeText final {
public:
  explicit TreeText(const wchar_t* text) : text_(std::wstring(text) + L" ") {}

  void readInto(ZanDwgMarkerList& list, std::int32_t level = 1) {
    for (; at_ < text_.size() && text_[at_] != L')'; ++at_) {
      if (text_[at_] == L' ') continue;
      ZanDwgMarker marker;
      marker.level = level;
      marker.run = level - 1;
      marker.code = word();
      marker.order = text_[at_] == L'/' ? (++at_, word()) : L"1";
      if (marker.code != toLower(marker.code)) marker.record.groups.push_back({L"G", {{L"x", 1, true}}});
      list.Insert(std::move(marker));
      list.Finish();
      if (text_[at_] == L'(') {
        ++at_;
        readInto(list.markers().back().EnsureChildren(), level + 1);
      } else {
        --at_;
      }
    }
  }

private:
  std::wstring word() {
    const std::size_t start = at_;
    at_ = text_.find_first_of(L" /()", at_);
    return text_.substr(start, at_ - start);
  }

  std::wstring text_;
  std::size_t at_ = 0;
};

std::wstring describe(const ZanConfigUnitList& list) {
  std::wstring text;
  for (const auto& unit : list.units()) {
    if (!text.empty()) text += L' ';
    text += unit->code;
    if (unit->children() != nullptr) text += L"(" + describe(*unit->children()) + L")";
  }
  return text;
}

} // namespace

TEST_CASE("units nest as their markers do, past markers without options") {
  const struct {
    const wchar_t* markers;
    const wchar_t* units;
    const wchar_t* duplicates;
  } rows[] = {
      {L"", L"", L""},
      {L"a b", L"", L""},
      {L"A b C", L"A C", L""},
      {L"A(B(C) D) E", L"A(B(C) D) E", L""},
      {L"A(b c) D", L"A D", L""},           // a subtree without options leaves no trace
      {L"a(B) C", L"B C", L""},             // no unit ahead: into the same list
      {L"A b(C D) e(F)", L"A(C D) F", L""}, // below the unit ahead, which then no longer serves
      {L"A(b(C))", L"A(C)", L""},
      {L"A A/2 a(A)", L"A A(A)", L""},
      {L"A/1 AA/1 A/1(B)", L"A AA", L"A(B)"},
      {L"A(A)", L"A(A)", L""}, // another level asks again
  };
  for (const auto& row : rows) {
    CAPTURE(std::string(row.markers, row.markers + std::wcslen(row.markers)));
    ZanDwgMarkerList markers;
    ZanConfigUnitList units;
    ZanConfigUnitList duplicates;
    int made = 0;
    const UnitMaking making{[&made](ZanConfigUnit&) { ++made; }, duplicates};
    TreeText(row.markers).readInto(markers);
    BuildConfigUnits(markers, units, making);
    CHECK(describe(units) == row.units);
    CHECK(describe(duplicates) == row.duplicates);

    // A tree that has not grown is the same afterwards, and no manager is made again.
    const int before = made;
    RefreshConfigUnits(markers, units, making);
    CHECK(describe(units) == row.units);
    CHECK(describe(duplicates) == row.duplicates);
    CHECK(made == before);
  }
}
