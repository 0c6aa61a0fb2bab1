#include "build/marker_scan.h"

#include "build/host_session.h"
#include "host/open_object.h"
#include "text/compare.h"

namespace brenvolt {

namespace {

struct MarkerAttribute {
  std::wstring_view tag;
  std::wstring ZanDwgMarker::*field;
};
constexpr MarkerAttribute markerAttributes[] = {
    {L"CODE", &ZanDwgMarker::code},
    {L"ORDER", &ZanDwgMarker::order},
    {L"MISC1", &ZanDwgMarker::misc1},
};

void readAttributes(const KvDbBlockReference& reference, ZanDwgMarker& marker) {
  for (const KvDbObjectId id : reference.attributes()) {
    const OpenObject<KvDbAttribute> attribute(id, KvOpenMode::forRead);
    if (!attribute) continue;
    const std::wstring tag = attribute->tag();
    for (const MarkerAttribute& known : markerAttributes)
      if (equalsOrdinalNoCase(tag, known.tag)) marker.*known.field = attribute->textString();
  }
}

/// Sets the iterator after the entity of the handle, or to the start for none.
bool seekBehind(KvDbDatabase& database, KvDbHandle handle, KvDbBlockTableRecordIterator& iterator) {
  iterator.start();
  if (handle.isNull()) return true;
  KvDbObjectId id;
  if (database.objectIdOf(handle, id) != KvDbStatus::ok || iterator.seek(id) != KvDbStatus::ok) return false;
  iterator.step();
  return true;
}

} // namespace

MarkerScan scanMarkers(KvDbDatabase& database, const ScanPlace& place, const ZanDwgMarkerList& known) {
  MarkerScan found;
  const OpenObject<KvDbBlockTableRecord> space(findBlock(database, place.spaceName), KvOpenMode::forRead);
  if (!space) return found;
  const auto iterator = space->newIterator();
  const KvDbObjectId marked = findBlock(database, std::wstring(markerBlock));
  if (marked.isNull() || !seekBehind(database, place.afterHandle, *iterator)) return found;
  for (; !iterator->done(); iterator->step()) {
    const OpenObject<KvDbBlockReference> reference(iterator->entityId(), KvOpenMode::forRead);
    if (!reference || reference->blockTableRecord() != marked) continue;
    // A second form at one marker must not find the markers of the first again.
    if (known.holdsHandle(reference->handle())) continue;
    ZanDwgMarker marker;
    readAttributes(*reference.operator->(), marker);
    if (marker.code.empty()) continue;
    marker.handle = reference->handle();
    marker.position = reference->position();
    marker.level = place.level;
    marker.run = place.run;
    found.wires.AddMarker(marker.code, marker.misc1);
    found.markers.push_back(std::move(marker));
  }
  return found;
}

} // namespace brenvolt
