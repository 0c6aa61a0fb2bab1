#include "drawing/marker_tree.h"
#include "drawing_support.h"

#include <map>

using namespace brenvolt;
using namespace brenvolt::test;

namespace {

std::wstring keysInOrder(ZanDwgMarkerList& list) {
  std::wstring keys;
  ZanDwgMarkerListIterator walk(&list);
  for (walk.First(); !walk.Done(); walk.Next())
    keys += (keys.empty() ? L"" : L" ") + walk.Current()->GetKey();
  return keys;
}

ZanDwgMarkerList& addChildren(
    ZanDwgMarker& parent, std::initializer_list<const wchar_t*> codes, int run = 0) {
  ZanDwgMarkerList& children = parent.EnsureChildren();
  for (const wchar_t* code : codes) {
    ZanDwgMarker marker = makeMarker(code, L"1", parent.level + 1);
    marker.run = run;
    children.Insert(std::move(marker));
  }
  children.Finish();
  return children;
}

/// A (B (C) D) E, of which D and E have option groups.
void fillTree(ZanDwgMarkerList& list) {
  list.Insert(makeMarker(L"E", L"2"));
  list.Insert(makeMarker(L"A", L"1"));
  list.Finish();
  ZanDwgMarkerList& below = addChildren(list.markers()[0], {L"B", L"D"});
  addChildren(below.markers()[0], {L"C"});
  below.markers()[1].record.groups = {makeGroup(L"G", {{L"x", 1, true}})};
  list.markers()[1].record.groups = {makeGroup(L"G", {{L"x", 1, true}})};
}

std::wstring codesOf(const ZanDwgMarkerList& list, const std::vector<ZanExecRecord>& items) {
  std::wstring codes;
  for (const ZanExecRecord& item : items)
    codes += list.findById(item.markerId)->code;
  return codes;
}

} // namespace

TEST_CASE("a walk goes depth first and sees children that come during it") {
  ZanDwgMarkerList list;
  CHECK_FALSE(ZanDwgMarkerListIterator(&list).First());
  CHECK_FALSE(ZanDwgMarkerListIterator(nullptr).First());
  CHECK(ZanDwgMarkerListIterator(nullptr).Current() == nullptr);

  fillTree(list);
  CHECK(keysInOrder(list) == L"A.1.1 B.1.2 C.1.3 D.1.2 E.1.1");
  NumberMarkers(list);
  CHECK(list.markers()[1].index == 4);

  ZanDwgMarkerListIterator walk(&list);
  std::wstring codes;
  for (walk.First(); !walk.Done(); walk.Next()) {
    codes += walk.Current()->code;
    if (walk.Current()->code == L"E") addChildren(*walk.Current(), {L"F"});
  }
  CHECK(codes == L"ABCDEF");
}

TEST_CASE("stretches of the tree are collected from id to id") {
  ZanDwgMarkerList list;
  fillTree(list);
  std::map<std::wstring, std::int32_t> ids = {
      {L"first", firstMarker}, {L"end", endOfMarkers}, {L"none", 99999}};
  ZanDwgMarkerListIterator walk(&list);
  for (walk.First(); !walk.Done(); walk.Next())
    ids[walk.Current()->code] = walk.Current()->id;

  const struct {
    const wchar_t* from;
    const wchar_t* to;
    const wchar_t* codes;
    bool ended;
  } ranges[] = {
      {L"first", L"end", L"ABCDE", true}, {L"first", L"C", L"ABC", true}, {L"B", L"D", L"BCD", true},
      {L"C", L"end", L"CDE", true},       {L"D", L"B", L"DE", false},     {L"none", L"end", L"", true},
  };
  for (const auto& range : ranges) {
    std::vector<ZanExecRecord> items;
    CHECK(CollectRange(list, ids[range.from], ids[range.to], items) == range.ended);
    CHECK(codesOf(list, items) == range.codes);
  }

  const struct {
    const wchar_t* from;
    const wchar_t* codes;
  } levels[] = {{L"first", L"A"}, {L"A", L"A"}, {L"E", L""}, {L"end", L""}, {L"B", L""}, {L"none", L""}};
  for (const auto& level : levels) {
    std::vector<ZanExecRecord> items;
    collectLevel(list, ids[level.from], items);
    CHECK(codesOf(list, items) == level.codes);
  }
}

TEST_CASE("records are attached once, and a template of another workbook is told") {
  ZanCodeRecord known;
  known.groups = {makeGroup(L"G", {{L"x", 1, true}, {L"y", 2, false}})};
  known.firstRules = {{L"(x)", 1, {}}, {L"(y)", 2, {}}};
  const RecordLookup lookup = [&](std::wstring_view code) { return code == L"A" ? &known : nullptr; };

  ZanDwgMarkerList list;
  CHECK(AttachRecords(list, lookup)); // a template without markers passes
  list.Insert(makeMarker(L"Z"));
  list.Finish();
  CHECK_FALSE(AttachRecords(list, lookup));
  list.Insert(makeMarker(L"A"));
  list.Finish();
  CHECK(AttachRecords(list, lookup));
  CHECK_FALSE(list.markers()[0].hasOptions());
  CHECK(execRecordOf(list.markers()[1]).rows.at(0)->text == L"(x)");

  list.markers()[1].record.groups[0].selectValue(2);
  CHECK(AttachRecords(list, lookup)); // a later scan of the list keeps what was selected
  CHECK(execRecordOf(list.markers()[1]).rows.at(0)->text == L"(y)");
  CHECK(execRecordOf(list.markers()[0]).rows.empty());
}
