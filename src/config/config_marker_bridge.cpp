#include "config/config_marker_bridge.h"

#include "text/compare.h"

#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace brenvolt {

namespace {

enum class Existing { makeAnew, reuse };

class UnitMaker final {
public:
  UnitMaker(const UnitMaking& making, const ZanConfigUnitList& units, Existing existing) : making_(making) {
    if (existing == Existing::makeAnew) return;
    rememberTree(units);
    // A repeated unit is met again, too, or each run would make its managers once more.
    rememberTree(making.duplicates);
  }

  void makeUnits(ZanDwgMarkerList& list, ZanConfigUnitList& target) {
    ZanConfigUnit* last = nullptr;
    for (ZanDwgMarker& marker : list.markers()) {
      if (marker.hasOptions()) last = unitOf(marker, target);
      ZanDwgMarkerList* below = marker.children();
      if (below == nullptr || !HasOptions(*below, true)) continue;
      makeUnits(*below, last == nullptr ? target : last->EnsureChildren());
      last = nullptr;
    }
  }

private:
  void rememberTree(const ZanConfigUnitList& units) {
    ZanConfigUnitListIterator walk(&units);
    for (walk.First(); !walk.IsDone(); walk.Next())
      known_.emplace(walk.Current()->markerId, walk.Current());
  }

  ZanConfigUnit* unitOf(const ZanDwgMarker& marker, ZanConfigUnitList& target) {
    if (const auto found = known_.find(marker.id); found != known_.end()) return found->second;

    auto unit = std::make_unique<ZanConfigUnit>(marker.id);
    unit->code = marker.code;
    unit->options = marker.record;
    unit->order = marker.order;
    unit->catalogRows = marker.catalog;
    unit->controlRows = marker.controls;
    unit->ownerStep = marker.run;
    if (making_.makeManagers) making_.makeManagers(*unit);

    // Repeated markers of one list ask once: the same code at the same order text.
    const bool isNew = levelKeys(target).insert(keyOf(unit->code, unit->order)).second;
    return isNew ? target.Add(std::move(unit)) : making_.duplicates.Add(std::move(unit));
  }

  static std::wstring keyOf(const std::wstring& code, const std::wstring& order) {
    std::wstring key = toUpper(code);
    key += L'\0';
    key += toUpper(order);
    return key;
  }

  std::unordered_set<std::wstring>& levelKeys(const ZanConfigUnitList& level) {
    const auto [place, isNew] = keysOfLevel_.try_emplace(&level);
    if (isNew)
      for (const auto& unit : level.units())
        place->second.insert(keyOf(unit->code, unit->order));
    return place->second;
  }

  const UnitMaking& making_;
  std::unordered_map<std::int32_t, ZanConfigUnit*> known_;
  /// Searched, never walked: the addresses decide nothing.
  std::unordered_map<const ZanConfigUnitList*, std::unordered_set<std::wstring>> keysOfLevel_;
};

void copyToMarker(const ZanConfigUnit& unit, ZanDwgMarker& marker) {
  marker.record = unit.options;
  marker.catalog = unit.catalogRows;
  marker.controls = unit.controlRows;
}

/// Calls `apply` for each pending unit. Units below a pending unit wait: its markers come with the run.
template <typename Apply>
void forEachPending(const ZanConfigUnitList& units, const Apply& apply) {
  for (const auto& unit : units.units()) {
    if (unit->pending)
      apply(*unit);
    else if (unit->children() != nullptr)
      forEachPending(*unit->children(), apply);
  }
}

void collectWithFollowers(const ZanDwgMarkerList::Place& place, std::vector<ZanExecRecord>& items) {
  const ZanDwgMarkerList::Markers& markers = place.list->markers();
  items.push_back(execRecordOf(markers[place.position]));
  const std::size_t next = place.position + 1;
  collectLevel(*place.list, next < markers.size() ? markers[next].id : endOfMarkers, items);
}

} // namespace

void BuildConfigUnits(ZanDwgMarkerList& markers, ZanConfigUnitList& units, const UnitMaking& making) {
  UnitMaker(making, units, Existing::makeAnew).makeUnits(markers, units);
}

void RefreshConfigUnits(ZanDwgMarkerList& markers, ZanConfigUnitList& units, const UnitMaking& making) {
  UnitMaker(making, units, Existing::reuse).makeUnits(markers, units);
}

void ApplyConfigUnits(
    ZanDwgMarkerList& markers, const ZanConfigUnitList& units, std::uint32_t step,
    std::vector<ZanExecRecord>& items) {
  forEachPending(units, [&](ZanConfigUnit& unit) {
    unit.insertStep = step;
    const auto place = markers.placeOf(unit.markerId);
    if (!place) return;
    copyToMarker(unit, place->list->markers()[place->position]);
    collectWithFollowers(*place, items);
  });
}

void CopyUnitsToMarkers(ZanDwgMarkerList& markers, const ZanConfigUnitList& units) {
  ZanConfigUnitListIterator walk(&units);
  for (walk.First(); !walk.IsDone(); walk.Next())
    if (const ZanConfigUnit& unit = *walk.Current(); unit.pending)
      if (ZanDwgMarker* marker = markers.findById(unit.markerId)) copyToMarker(unit, *marker);
}

} // namespace brenvolt
