#include "config/config_units.h"

#include "config_support.h"

using namespace brenvolt;
using namespace brenvolt::test;

namespace {

ZanConfigUnit* addUnit(ZanConfigUnitList& list, const wchar_t* code, std::int32_t id, std::int32_t run = 0) {
  ZanConfigUnit* unit = list.Add(std::make_unique<ZanConfigUnit>(id));
  unit->code = code;
  unit->ownerStep = run;
  return unit;
}

/// A (B (C) D) E
void fillTree(ZanConfigUnitList& list) {
  ZanConfigUnit* a = addUnit(list, L"A", 1);
  ZanConfigUnit* b = addUnit(a->EnsureChildren(), L"B", 2, 1);
  addUnit(b->EnsureChildren(), L"C", 3, 2);
  addUnit(*a->children(), L"D", 4, 1);
  addUnit(list, L"E", 5, 2);
}

std::wstring walkOf(const ZanConfigUnitList& list) {
  std::wstring text;
  ZanConfigUnitListIterator walk(&list);
  for (walk.First(); !walk.IsDone(); walk.Next()) {
    const ZanConfigUnit* parent = walk.Parent();
    text += walk.Current()->code + L"<" + (parent == nullptr ? L"-" : parent->code) + L" ";
  }
  return text;
}

} // namespace

TEST_CASE("the walk is pre-order and knows each unit's parent") {
  ZanConfigUnitList list;
  ZanConfigUnitListIterator empty(&list);
  CHECK_FALSE(empty.First());
  CHECK(empty.IsDone());
  CHECK(empty.Current() == nullptr);
  empty.Next();
  CHECK_FALSE(ZanConfigUnitListIterator(nullptr).First());

  fillTree(list);
  list.units().back()->EnsureChildren(); // an empty child list is stepped over
  CHECK(walkOf(list) == L"A<- B<A C<B D<A E<- ");
}

TEST_CASE("units are found by marker or by page, parents ahead of children") {
  ZanConfigUnitList list;
  fillTree(list);
  CHECK(list.Add(nullptr) == nullptr);
  list.Find(3, FindUnitBy::marker)->page = 7;
  list.Find(5, FindUnitBy::marker)->page = 7;
  CHECK(list.Find(7, FindUnitBy::page)->code == L"C");
  CHECK(list.Find(0, FindUnitBy::page)->code == L"A"); // no page yet
  CHECK(list.Find(7, FindUnitBy::marker) == nullptr);
}

TEST_CASE("undoing a run removes exactly its units, from every level") {
  ZanConfigUnitList list;
  fillTree(list);
  list.RemoveUnitsOfRun(0);
  CHECK(walkOf(list) == L"A<- B<A C<B D<A E<- ");
  list.RemoveUnitsOfRun(2);
  CHECK(walkOf(list) == L"A<- B<A D<A ");
  list.RemoveUnitsOfRun(1);
  CHECK(walkOf(list) == L"A<- ");
}

TEST_CASE("a manager serves the codes it was bound to, once each") {
  CountingManager breaker(L"(breaker)");
  CountingManager relay(L"(relay)");
  CountingManager keyless;
  ZanConfigUnit unit(1);
  unit.BindManager(7, &breaker);
  unit.BindManager(8, &breaker);
  unit.BindManager(8, &breaker);
  unit.BindManager(8, &relay);
  unit.BindManager(9, nullptr);
  unit.BindManager(-100, &keyless);

  CHECK(unit.managers().size() == 3);
  CHECK(unit.managers()[0].codes == std::vector<std::int32_t>{7, 8});
  CHECK(unit.FindManager(8) == &breaker);
  CHECK(unit.FindManager(-100) == &keyless);
  CHECK(unit.FindManager(9) == nullptr);
  CHECK(unit.FindManagerByKey(L"(RELAY)") == &relay);
  CHECK(unit.FindManagerByKey(L"") == nullptr);
  unit.AddManagersToWindow(nullptr);
  CHECK(breaker.attached == 1);
  CHECK(relay.attached == 1);
}

TEST_CASE("unit and manager forget each other, whichever dies first") {
  CountingManager outlives;
  {
    ZanConfigUnit unit(1);
    unit.code = L"MOTOR";
    unit.order = L"3";
    outlives.SetUnit(&unit);
    unit.BindManager(-100, &outlives);
    CHECK(outlives.GetUnitCode() == L"MOTOR");
    CHECK(outlives.GetUnitOrder() == L"3");

    {
      CountingManager dies;
      unit.BindManager(1, &dies);
    }
    CHECK(unit.FindManager(1) == nullptr);
    CHECK(unit.managers().size() == 1);
  }
  CHECK(outlives.unit() == nullptr);
  CHECK(outlives.GetUnitCode().empty());
}
