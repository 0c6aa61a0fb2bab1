#include "drawing/marker_tree.h"

#include <algorithm>

namespace brenvolt {

namespace {

struct Stretch {
  std::int32_t fromId;
  std::int32_t toId;
  bool started;
};

/// True when the end of the stretch was met.
bool collectStretch(const ZanDwgMarkerList& list, Stretch& stretch, std::vector<ZanExecRecord>& items) {
  for (const ZanDwgMarker& marker : list.markers()) {
    if (marker.id == stretch.fromId) stretch.started = true;
    if (stretch.started) {
      items.push_back(execRecordOf(marker));
      if (marker.id == stretch.toId) return true;
    }
    if (marker.children() != nullptr && collectStretch(*marker.children(), stretch, items)) return true;
  }
  return false;
}

/// Where `collectLevel` begins: the size of the list when there is nothing to walk.
std::size_t startOf(const ZanDwgMarkerList& list, std::int32_t fromId) {
  if (fromId == firstMarker) return 0;
  const auto place = list.placeOf(fromId);
  return place && place->list == &list ? place->position : list.size();
}

} // namespace

ZanExecRecord execRecordOf(const ZanDwgMarker& marker) {
  ZanExecRecord record;
  record.rows = marker.record.scriptRows();
  record.markerId = marker.id;
  return record;
}

bool AttachRecords(ZanDwgMarkerList& list, const RecordLookup& recordOf) {
  bool anyHasRecord = list.isEmpty();
  for (ZanDwgMarker& marker : list.markers()) {
    if (!marker.hasRecord) {
      const ZanCodeRecord* record = recordOf(marker.code);
      if (record == nullptr) continue;
      marker.record = *record;
      marker.hasRecord = true;
    }
    anyHasRecord = true;
  }
  return anyHasRecord;
}

void NumberMarkers(ZanDwgMarkerList& list) {
  std::int32_t number = 0;
  ZanDwgMarkerListIterator walk(&list);
  for (walk.First(); !walk.Done(); walk.Next())
    walk.Current()->index = number++;
}

bool HasOptions(const ZanDwgMarkerList& list, bool recursive) {
  return std::any_of(list.markers().begin(), list.markers().end(), [recursive](const ZanDwgMarker& marker) {
    if (marker.hasOptions()) return true;
    return recursive && marker.children() != nullptr && HasOptions(*marker.children(), true);
  });
}

bool collectLevel(const ZanDwgMarkerList& list, std::int32_t fromId, std::vector<ZanExecRecord>& items) {
  for (std::size_t position = startOf(list, fromId); position < list.size(); ++position) {
    const ZanDwgMarker& marker = list.markers()[position];
    if (marker.hasOptions()) break;
    items.push_back(execRecordOf(marker));
  }
  return !items.empty();
}

bool CollectRange(
    const ZanDwgMarkerList& list, std::int32_t fromId, std::int32_t toId, std::vector<ZanExecRecord>& items) {
  Stretch stretch{fromId, toId, fromId == firstMarker};
  return collectStretch(list, stretch, items) || toId == endOfMarkers;
}

void DropChildrenOfRun(ZanDwgMarkerList& list, std::int32_t run) {
  if (run <= 0) return;
  for (ZanDwgMarker& marker : list.markers()) {
    if (marker.children() == nullptr || marker.children()->isEmpty()) continue;
    if (marker.children()->markers().front().run == run)
      marker.DropChildren();
    else
      DropChildrenOfRun(*marker.children(), run);
  }
}

} // namespace brenvolt
