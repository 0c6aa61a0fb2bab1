// What has to come along when something is placed: attributes, layers, block definitions.
#include "simhost/drawing/insertion.h"

#include "simhost/drawing/entity_rules.h"
#include "simhost/drawing/geometry.h"
#include "text/assertion.h"
#include "text/compare.h"
#include "text/numbers.h"

#include <cmath>
#include <map>
#include <set>

namespace simhost {
namespace {

const std::wstring* textOf(const AttributeTexts& texts, const std::wstring& tag) {
  for (const auto& [name, text] : texts) {
    if (brenvolt::equalsOrdinalNoCase(name, tag)) return &text;
  }
  return nullptr;
}

bool definesTag(const BlockNode& block, const std::wstring& tag) {
  for (const EntityNode* entity = block.first; entity != nullptr; entity = entity->next) {
    const auto* definition = std::get_if<AttributeDefinition>(&entity->value.shape);
    if (definition != nullptr && brenvolt::equalsOrdinalNoCase(definition->tag, tag)) return true;
  }
  return false;
}

std::wstring mappedLayer(const DrawingInsertion& insertion, const std::wstring& name) {
  return insertion.layer ? insertion.layer(name) : name;
}

/// A placement can be so large or small that a value leaves the range of numbers or becomes 0.
Fault placementFault(const DrawingDatabase& source, const EntityNode& entity, const Placement& placement) {
  if (Fault fault = shapeFault({placed(entity.value.shape, placement)})) return fault;
  for (const KvDbHandle handle : entity.attributes) {
    const EntityNode* attribute = source.find(handle);
    if (attribute == nullptr) continue;
    if (Fault fault = placementFault(source, *attribute, placement)) return fault;
  }
  return std::nullopt;
}

Placement placementOf(const DrawingInsertion& insertion) {
  return {{}, insertion.position, insertion.scale, insertion.rotationDegrees};
}

Placement placementOf(const DrawingDatabase& drawing, const BlockReference& reference) {
  const BlockNode& block = *drawing.store().findBlock(reference.block);
  return {block.basePoint, reference.position, reference.scale, reference.rotationDegrees};
}

/// Carries entities from one drawing into another and, on the way, the layers and blocks that they use.
class Carrier final {
public:
  Carrier(DrawingDatabase& target, const DrawingDatabase& source, const DrawingInsertion& insertion)
      : target_(target), source_(source), insertion_(insertion) {}

  std::vector<KvDbHandle> carry(KvDbHandle from, KvDbHandle to, const Placement& placement) {
    std::vector<KvDbHandle> handles;
    for (const EntityNode* entity = source_.store().findBlock(from)->first; entity != nullptr;
         entity = entity->next) {
      Entity value = carried(entity->value, placement);
      carryOrigin(value, to, placement);
      const KvDbHandle handle = target_.addEntity(to, std::move(value));
      handles.push_back(handle);
      for (const KvDbHandle attribute : entity->attributes) {
        const EntityNode* text = source_.find(attribute);
        if (text != nullptr) target_.addEntity(handle, carried(text->value, placement));
      }
    }
    return handles;
  }

  /// Defines the blocks that a block of the source needs, inner ones before those that contain them.
  void carryBlocks(KvDbHandle from) {
    std::set<KvDbHandle> needed;
    noteBlocks(from, needed);
    // Blocks hold only such with lower handles, so walking down meets every block after all that need it.
    for (auto block = needed.rbegin(); block != needed.rend(); ++block) {
      if (ownBlock(*block) == nullptr) noteBlocks(*block, needed);
    }
    for (const KvDbHandle handle : needed) {
      if (const BlockNode* own = ownBlock(handle)) {
        blocks_.emplace(handle, own->handle);
        continue;
      }
      const BlockNode& block = *source_.store().findBlock(handle);
      const KvDbHandle copy = target_.addBlock(block.name, block.basePoint);
      blocks_.emplace(handle, copy);
      carry(handle, copy, Placement());
    }
  }

private:
  void noteBlocks(KvDbHandle from, std::set<KvDbHandle>& needed) const {
    for (const EntityNode* entity = source_.store().findBlock(from)->first; entity != nullptr;
         entity = entity->next) {
      const auto* reference = std::get_if<BlockReference>(&entity->value.shape);
      if (reference != nullptr) needed.insert(reference->block);
    }
  }

  /// The target's block of the same name, null when it has none.
  [[nodiscard]] const BlockNode* ownBlock(KvDbHandle handle) const {
    return target_.store().findBlock(source_.store().findBlock(handle)->name);
  }

  Entity carried(const Entity& entity, const Placement& placement) {
    Entity result{placed(entity.shape, placement), carriedLayer(entity.layer), entity.colour, entity.data};
    if (auto* reference = std::get_if<BlockReference>(&result.shape)) {
      reference->block = blocks_.at(reference->block);
    }
    return result;
  }

  /// A circuit comes as one of the target's own. Inside of a block there are no circuits, and what comes while a
  /// build draws belongs to the circuit that is built.
  void carryOrigin(Entity& entity, KvDbHandle to, const Placement& placement) {
    std::optional<Provenance> origin = provenanceOf(entity);
    if (!origin) return;
    const bool isInSpace = to == target_.modelSpace() || to == target_.paperSpace();
    if (!isInSpace || target_.stamp()) return setData(entity, provenanceApplication, {});
    const auto [place, isNew] =
        circuits_.try_emplace(origin->circuit, formatHandle(target_.store().nextHandle()));
    const CircuitRecords& known = source_.store().circuits();
    if (const auto record = known.find(origin->circuit); isNew && record != known.end())
      target_.putCircuit(place->second, placedCircuit(record->second, placement));
    origin->circuit = place->second;
    setProvenance(entity, *origin);
  }

  std::wstring carriedLayer(const std::wstring& name) {
    std::wstring newName = mappedLayer(insertion_, name);
    if (target_.store().findLayer(newName) == nullptr) {
      Layer layer = *source_.store().findLayer(name);
      layer.name = newName;
      target_.putLayer(std::move(layer));
    }
    return newName;
  }

  DrawingDatabase& target_;
  const DrawingDatabase& source_;
  const DrawingInsertion& insertion_;
  std::map<KvDbHandle, KvDbHandle> blocks_;       ///< of the source to those of the target
  std::map<std::wstring, std::wstring> circuits_; ///< ids, likewise
};

} // namespace

CircuitFields placedCircuit(CircuitFields fields, const Placement& placement) {
  for (auto& [name, text] : fields) {
    if (name != L"point") continue;
    const std::optional<KvPoint3d> former = circuitPoint(fields);
    if (!former) continue;
    const KvPoint3d point = placement.apply(*former);
    const std::size_t height = text.find(L',', text.find(L',') + 1);
    const std::wstring rest = height == std::wstring::npos ? std::wstring() : text.substr(height);
    text = brenvolt::formatShortest(point.x) + L',' + brenvolt::formatShortest(point.y) + rest;
  }
  return fields;
}

Fault blockInsertionFault(
    const DrawingDatabase& drawing, KvDbHandle owner, const Entity& reference, const AttributeTexts& texts) {
  const auto* shape = std::get_if<BlockReference>(&reference.shape);
  if (shape == nullptr) return L"only a block can be placed";
  if (Fault fault = drawing.entityFault(owner, reference)) return fault;
  const BlockNode& block = *drawing.store().findBlock(shape->block);
  const Placement placement = placementOf(drawing, *shape);
  for (const EntityNode* entity = block.first; entity != nullptr; entity = entity->next) {
    if (entity->value.kind() != EntityKind::attributeDefinition) continue;
    if (Fault fault = placementFault(drawing, *entity, placement)) return fault;
  }
  for (const auto& [tag, text] : texts) {
    if (!definesTag(block, tag)) return L"block " + block.name + L" has no attribute " + tag;
  }
  return std::nullopt;
}

KvDbHandle insertBlock(
    DrawingDatabase& drawing, KvDbHandle owner, const Entity& reference, const AttributeTexts& texts) {
  const KvDbHandle handle = drawing.addEntity(owner, reference);
  const auto& shape = std::get<BlockReference>(reference.shape);
  const BlockNode& block = *drawing.store().findBlock(shape.block);
  const Placement placement = placementOf(drawing, shape);
  for (const EntityNode* entity = block.first; entity != nullptr; entity = entity->next) {
    const auto* definition = std::get_if<AttributeDefinition>(&entity->value.shape);
    if (definition == nullptr) continue;
    Attribute attribute{definition->tag, definition->text, definition->isVisible};
    if (const std::wstring* text = textOf(texts, definition->tag)) attribute.text.text = *text;
    drawing.addEntity(handle, {placed(attribute, placement), entity->value.layer, entity->value.colour});
  }
  return handle;
}

Fault drawingInsertionFault(
    const DrawingDatabase& target, KvDbHandle owner, const DrawingDatabase& source,
    const DrawingInsertion& insertion) {
  if (&target == &source) return L"a drawing cannot be inserted into itself";
  // Inside of a block the rule of the order of definition would depend on what the source holds.
  if (owner != target.modelSpace() && owner != target.paperSpace()) {
    return L"a drawing is inserted into a space, not into a block";
  }
  if (!std::isfinite(insertion.scale) || insertion.scale == 0.0) return L"the scale must not be 0";
  if (Fault fault = pointFault(insertion.position)) return fault;
  if (Fault fault = numberFault(insertion.rotationDegrees)) return fault;
  for (const Layer& layer : source.store().layers()) {
    if (Fault fault = nameFault(L"a layer's name", mappedLayer(insertion, layer.name))) return fault;
  }
  if (insertion.form == InsertionForm::asBlock) {
    // The source's own blocks come along and would take the name first.
    if (source.store().findBlock(insertion.blockName) != nullptr) {
      return L"the drawing itself contains a block " + insertion.blockName;
    }
    return target.blockFault(insertion.blockName, {});
  }
  const BlockNode& space = *source.store().findBlock(source.modelSpace());
  for (const EntityNode* entity = space.first; entity != nullptr; entity = entity->next) {
    if (Fault fault = placementFault(source, *entity, placementOf(insertion))) return fault;
  }
  return std::nullopt;
}

std::vector<KvDbHandle> insertDrawing(
    DrawingDatabase& target, KvDbHandle owner, const DrawingDatabase& source,
    const DrawingInsertion& insertion) {
  // Each entity is checked when it is added; all of them here once more would take as long as the insertion.
  BRENVOLT_ASSERT(
      &target != &source && (owner == target.modelSpace() || owner == target.paperSpace()),
      "an insertion must be checked for faults first");
  Carrier carrier(target, source, insertion);
  carrier.carryBlocks(source.modelSpace());
  if (insertion.form == InsertionForm::exploded) {
    return carrier.carry(source.modelSpace(), owner, placementOf(insertion));
  }
  const KvDbHandle block = target.addBlock(insertion.blockName, {});
  carrier.carry(source.modelSpace(), block, Placement());
  const Entity reference{
      BlockReference{block, insertion.position, insertion.scale, insertion.rotationDegrees}};
  return {insertBlock(target, owner, reference, {})};
}

} // namespace simhost
