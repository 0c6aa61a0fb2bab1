// Finding what belongs to each circuit.
#include "circuits/provenance/circuit_objects.h"

#include "circuits/netlist/netlist.h"
#include "simhost/drawing/circuit_edit.h"
#include "simhost/drawing/display_list.h"
#include "text/compare.h"

#include <algorithm>
#include <utility>

namespace circuits {

using simhost::DrawingDatabase;
using simhost::EntityNode;

namespace {

std::wstring firstText(const simhost::Entity& entity, std::wstring_view application) {
  const std::vector<std::wstring>* texts = simhost::findData(entity, application);
  return texts == nullptr || texts->empty() ? std::wstring() : texts->front();
}

std::wstring attributeOf(const DrawingDatabase& drawing, const EntityNode& node, std::wstring_view tag) {
  for (const KvDbHandle handle : node.attributes) {
    const EntityNode* attribute = drawing.find(handle);
    if (attribute == nullptr) continue;
    const auto& value = std::get<simhost::Attribute>(attribute->value.shape);
    if (brenvolt::equalsOrdinalNoCase(value.tag, tag)) return value.text.text;
  }
  return {};
}

std::wstring tagOf(const DrawingDatabase& drawing, const EntityNode& node) {
  return attributeOf(drawing, node, L"TAG1");
}

/// What has a family is a component; PE, which every circuit shows, is none.
bool isComponent(const DrawingDatabase& drawing, const EntityNode& node) {
  return !attributeOf(drawing, node, L"FAMILY").empty();
}

/// Symbols of one tag are one motor or load.
void addLoad(CircuitObject& circuit, const DrawingDatabase& drawing, const EntityNode& node) {
  CircuitLoad load{
      tagOf(drawing, node),
      firstText(node.value, paramsApplication),
      firstText(node.value, wiresApplication),
      {node.handle}};
  if (load.params.empty()) return;
  const auto known =
      std::find_if(circuit.loads.begin(), circuit.loads.end(), [&load](const CircuitLoad& other) {
        return !load.tag.empty() && other.tag == load.tag;
      });
  if (known == circuit.loads.end()) return circuit.loads.push_back(std::move(load));
  known->symbols.push_back(node.handle);
  if (known->wires.empty()) known->wires = std::move(load.wires);
}

void measure(
    const DrawingDatabase& drawing, KvDbHandle space, const std::map<std::uint64_t, std::size_t>& places,
    std::vector<CircuitObject>& circuits) {
  const auto items = simhost::displayList(drawing, space);
  if (!items) return;
  for (const simhost::DisplayItem& item : *items)
    if (const auto place = places.find(item.entity.value()); place != places.end())
      circuits[place->second].extents.include(simhost::boxOf(item.shape));
}

} // namespace

std::wstring CircuitObject::name() const {
  std::wstring tag = simhost::circuitField(fields, L"tag");
  if (tag.empty()) tag = loadTag;
  return !tag.empty() || tags.empty() ? tag : tags.front();
}

std::vector<CircuitObject> circuitsOf(const DrawingDatabase& drawing, CircuitExtents extents) {
  std::vector<CircuitObject> circuits;
  std::map<std::wstring, std::size_t> known;
  for (const KvDbHandle space : {drawing.modelSpace(), drawing.paperSpace()}) {
    std::map<std::uint64_t, std::size_t> places;
    for (const EntityNode* node = drawing.store().findBlock(space)->first; node != nullptr;
         node = node->next) {
      const auto origin = simhost::provenanceOf(node->value);
      if (!origin) continue;
      const auto [place, isNew] = known.try_emplace(origin->circuit, circuits.size());
      if (isNew) {
        circuits.push_back({origin->circuit});
        const auto record = drawing.store().circuits().find(origin->circuit);
        if (record != drawing.store().circuits().end()) circuits.back().fields = record->second;
      }
      CircuitObject& circuit = circuits[place->second];
      circuit.entities.push_back(node->handle);
      ++circuit.byCode[origin->code];
      if (std::wstring tag = tagOf(drawing, *node);
          !tag.empty() && isComponent(drawing, *node) &&
          std::find(circuit.tags.begin(), circuit.tags.end(), tag) == circuit.tags.end())
        circuit.tags.push_back(std::move(tag));
      addLoad(circuit, drawing, *node);
      places[node->handle.value()] = place->second;
    }
    if (extents == CircuitExtents::measured && !places.empty()) measure(drawing, space, places, circuits);
  }
  for (CircuitObject& circuit : circuits)
    if (!circuit.loads.empty()) {
      const CircuitLoad& first = circuit.loads.front();
      circuit.loadTag = first.tag;
      circuit.params = first.params;
      circuit.wires = first.wires;
    }
  return circuits;
}

std::vector<const CircuitObject*> findCircuits(
    const std::vector<CircuitObject>& circuits, std::wstring_view text) {
  const auto are = [&](const auto& isMeant) {
    std::vector<const CircuitObject*> found;
    for (const CircuitObject& circuit : circuits)
      if (isMeant(circuit)) found.push_back(&circuit);
    return found;
  };
  const auto isText = [text](const std::wstring& other) {
    return brenvolt::equalsOrdinalNoCase(other, text);
  };
  std::vector<const CircuitObject*> found =
      are([&](const CircuitObject& circuit) { return isText(circuit.id) || isText(circuit.name()); });
  if (!found.empty()) return found;
  return are([&](const CircuitObject& circuit) {
    return std::any_of(circuit.tags.begin(), circuit.tags.end(), isText);
  });
}

void eraseCircuit(DrawingDatabase& drawing, const CircuitObject& circuit) {
  simhost::eraseCircuit(drawing, circuit.id);
}

simhost::Fault moveCircuit(DrawingDatabase& drawing, const CircuitObject& circuit, double dx, double dy) {
  return simhost::moveCircuit(drawing, circuit.id, dx, dy);
}

} // namespace circuits
