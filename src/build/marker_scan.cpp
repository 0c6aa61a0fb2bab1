#include "build/marker_scan.h"

#include "build/host_session.h"
#include "config/widget_manager_maker.h"
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

/// Stands the iterator behind the entity of the handle, or at the start for none.
bool seekBehind(KvDbDatabase& database, KvDbHandle handle, KvDbBlockTableRecordIterator& iterator) {
  iterator.start();
  if (handle.isNull()) return true;
  KvDbObjectId id;
  if (database.objectIdOf(handle, id) != KvDbStatus::ok || iterator.seek(id) != KvDbStatus::ok) return false;
  iterator.step();
  return true;
}

} // namespace

bool scanMarkers(
    BuildState& build, ZanDwgMarkerList& list, KvDbDatabase& database, KvDbHandle afterHandle,
    std::int32_t level) {
  const OpenObject<KvDbBlockTableRecord> space(findBlock(database, build.spaceName), KvOpenMode::forRead);
  if (!space) return false;
  const auto iterator = space->newIterator();
  if (!seekBehind(database, afterHandle, *iterator)) return false;
  const KvDbObjectId marked = findBlock(database, std::wstring(markerBlock));
  ZanWireFormatter formatter;
  for (; !iterator->done(); iterator->step()) {
    const OpenObject<KvDbBlockReference> reference(iterator->entityId(), KvOpenMode::forRead);
    if (!reference || marked.isNull() || reference->blockTableRecord() != marked) continue;
    // A second form at one marker must not find the markers of the first again.
    if (list.holdsHandle(reference->handle())) continue;
    ZanDwgMarker marker;
    readAttributes(*reference.operator->(), marker);
    if (marker.code.empty()) continue;
    marker.handle = reference->handle();
    marker.position = reference->position();
    marker.level = level;
    // The run that brought a marker takes it away again when it is undone.
    marker.run = build.undo.marks();
    formatter.AddMarker(marker.code, marker.misc1);
    list.Insert(std::move(marker));
  }
  if (ZanWidgetManagerMaker* maker = widgetManagerMaker()) maker->SetWireFormatter(formatter);
  build.wireFormatter.Merge(formatter);
  const std::size_t before = list.size();
  list.Finish();
  return list.size() > before;
}

} // namespace brenvolt
