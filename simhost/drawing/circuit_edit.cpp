// Finding what belongs to a circuit, and changing all of it or nothing.
#include "simhost/drawing/circuit_edit.h"

#include "simhost/drawing/geometry.h"
#include "simhost/drawing/insertion.h"

#include <optional>

namespace simhost {

namespace {

/// Everything of it, attributes too: an attribute's place does not hang on that of its reference.
std::vector<KvDbHandle> withAttributes(const DrawingDatabase& drawing, std::wstring_view circuit) {
  std::vector<KvDbHandle> all;
  for (const KvDbHandle handle : entitiesOfCircuit(drawing, circuit)) {
    all.push_back(handle);
    for (const KvDbHandle attribute : drawing.find(handle)->attributes)
      if (drawing.find(attribute) != nullptr) all.push_back(attribute);
  }
  return all;
}

} // namespace

std::vector<KvDbHandle> entitiesOfCircuit(const DrawingDatabase& drawing, std::wstring_view circuit) {
  const auto isOfCircuit = [circuit](const EntityNode& node) {
    const auto origin = provenanceOf(node.value);
    return origin && origin->circuit == circuit;
  };
  // The id is the handle of the first entity, so the search of the last circuit of a large drawing is short. Of a circuit
  // that was built again that entity is gone.
  const std::optional<KvDbHandle> id = parseHandle(circuit);
  const EntityNode* first = id ? drawing.find(*id) : nullptr;
  if (first != nullptr && !isOfCircuit(*first)) first = nullptr;
  std::vector<KvDbHandle> entities;
  for (const KvDbHandle space : {drawing.modelSpace(), drawing.paperSpace()}) {
    const bool isFirstHere = first != nullptr && first->owner == space;
    const EntityNode* node = isFirstHere ? first : drawing.store().findBlock(space)->first;
    for (; node != nullptr; node = node->next)
      if (isOfCircuit(*node)) entities.push_back(node->handle);
  }
  return entities;
}

void eraseCircuit(DrawingDatabase& drawing, const std::wstring& circuit) {
  for (const KvDbHandle handle : entitiesOfCircuit(drawing, circuit))
    drawing.eraseEntity(handle);
  drawing.putCircuit(circuit, {});
}

Fault moveCircuit(DrawingDatabase& drawing, const std::wstring& circuit, double dx, double dy) {
  const Placement placement({}, {dx, dy, 0.0}, 1.0, 0.0);
  const std::vector<KvDbHandle> all = withAttributes(drawing, circuit);
  const auto moved = [&](KvDbHandle handle) {
    Entity value = drawing.find(handle)->value;
    value.shape = placed(value.shape, placement);
    return value;
  };
  for (const KvDbHandle handle : all)
    if (Fault fault = drawing.changeFault(handle, moved(handle))) return fault;
  for (const KvDbHandle handle : all)
    drawing.changeEntity(handle, moved(handle));
  const auto record = drawing.store().circuits().find(circuit);
  if (record == drawing.store().circuits().end()) return std::nullopt;
  drawing.putCircuit(circuit, placedCircuit(record->second, placement));
  return std::nullopt;
}

} // namespace simhost
