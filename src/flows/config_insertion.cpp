#include "flows/config_insertion.h"

#include "flows/config_walk.h"
#include "text/compare.h"

#include <set>
#include <string>
#include <unordered_set>
#include <vector>

namespace brenvolt {

namespace {

/// What an undone run leaves in the units.
struct UndoneRun {
  std::set<std::wstring, CodeLess> codes;     ///< of the units that ran, and of those that came
  std::vector<const ZanConfigUnit*> newUnits; ///< parents before their children
  std::uint32_t parentPage = 0;               ///< of the first new unit, 0 at the root
};

UndoneRun freeUnits(const ZanConfigUnitList& units, std::int32_t run, ConfigPages& pages) {
  UndoneRun undone;
  std::unordered_set<const ZanConfigUnit*> gone;
  forEachUnit(units, [&](ZanConfigUnit& unit, const ZanConfigUnit* parent) {
    const bool ran = unit.insertStep == static_cast<std::uint32_t>(run);
    const bool isNew = unit.ownerStep == run || gone.contains(parent);
    if (ran || isNew) undone.codes.insert(unit.code);
    if (ran) {
      pages.SetWaiting(unit);
      unit.insertStep = 0;
    }
    if (!isNew) return;
    if (gone.empty() && parent != nullptr) undone.parentPage = parent->page;
    gone.insert(&unit);
    undone.newUnits.push_back(&unit);
  });
  return undone;
}

/// A code that another inserted unit has stays among those that were used.
void forgetCodes(ZanBrenvolt& build, std::set<std::wstring, CodeLess> codes) {
  forEachUnit(build.units(), [&codes](const ZanConfigUnit& unit, const ZanConfigUnit*) {
    if (unit.inserted) codes.erase(unit.code);
  });
  for (const std::wstring& code : codes)
    build.forgetUnit(code);
}

} // namespace

bool waits(const ZanConfigUnit& unit) {
  return !unit.inserted && unit.insertStep == 0;
}

bool markUnits(const ZanConfigUnitList& units, const ZanConfigUnit* current, InsertScope scope) {
  if (scope != InsertScope::all && current == nullptr) return false;
  bool isAnyMarked = false;
  bool isBehind = false;
  forEachUnit(units, [&](ZanConfigUnit& unit, const ZanConfigUnit*) {
    const bool isOutside = isBehind || (scope == InsertScope::current && &unit != current);
    // The units of a failed run keep their mark: it stays until the run is taken back.
    if (waits(unit)) unit.pending = !isOutside;
    if (isOutside) return;
    isAnyMarked = isAnyMarked || (waits(unit) && unit.pending);
    isBehind = scope != InsertScope::all && &unit == current;
  });
  return isAnyMarked;
}

void adoptRun(const ZanConfigUnitList& units, ConfigPages& pages, RunResult result) {
  std::uint32_t goTo = 0;
  std::uint32_t firstInserted = 0;
  std::vector<std::uint32_t> grown;
  forEachUnit(units, [&](ZanConfigUnit& unit, const ZanConfigUnit* parent) {
    if (unit.page == 0) {
      pages.AddUnit(unit, parent);
      if (parent != nullptr) grown.push_back(parent->page);
      // The first new unit is to be shown: the tree selects the item after its parent.
      if (goTo == 0) goTo = parent != nullptr ? parent->page : unit.page;
    }
    if (!unit.pending) return;
    // Units below a selected unit have not run: they can be inserted now.
    if (unit.insertStep == 0) {
      unit.pending = false;
      return;
    }
    if (result == RunResult::failed) return pages.Lock(unit);
    pages.SetInserted(unit);
    if (firstInserted == 0) firstInserted = unit.page;
  });
  for (const std::uint32_t page : grown)
    pages.tree().Expand(page);
  // New pages have been shown while they were created.
  pages.ShowSettings();
  pages.tree().SelectBehind(goTo != 0 ? goTo : firstInserted);
}

bool takeBackRun(ZanBrenvolt& build, ConfigPages& pages) {
  const std::int32_t run = build.level();
  if (!build.stepBack()) return false;
  UndoneRun undone = freeUnits(build.units(), run, pages);
  // From the last one on, so that each still has its place when its turn comes.
  for (auto unit = undone.newUnits.rbegin(); unit != undone.newUnits.rend(); ++unit)
    pages.RemoveUnit(**unit);
  const bool hasLost = !undone.newUnits.empty();
  build.truncateTo(run);
  forgetCodes(build, std::move(undone.codes));
  if (!hasLost) return true;
  if (undone.parentPage != 0)
    pages.tree().Select(undone.parentPage);
  else if (pages.CurrentUnit() == nullptr && !build.units().isEmpty())
    pages.tree().Select(build.units().units().front()->page);
  return true;
}

void takeRest(ZanBrenvolt& build) {
  markUnits(build.units(), nullptr, InsertScope::all);
  build.copyUnitsToMarkers();
  forEachUnit(build.units(), [](ZanConfigUnit& unit, const ZanConfigUnit*) { unit.pending = false; });
}

bool isEachInserted(const ZanConfigUnitList& units) {
  bool isEach = true;
  forEachUnit(units, [&isEach](const ZanConfigUnit& unit, const ZanConfigUnit*) {
    isEach = isEach && unit.inserted;
  });
  return isEach;
}

} // namespace brenvolt
