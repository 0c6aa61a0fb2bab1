// The rules of a drawing, and the registry by which object ids find their drawing.
#include "simhost/drawing/drawing_database.h"

#include "simhost/drawing/entity_rules.h"
#include "text/assertion.h"
#include "text/compare.h"

#include <array>
#include <map>
#include <memory>
#include <utility>

namespace simhost {
namespace {

constexpr KvDbHandle blockTableHandle{1};
constexpr KvDbHandle modelSpaceHandle{2};
constexpr KvDbHandle paperSpaceHandle{3};
constexpr unsigned handleBits = 40;

/// All open drawings of the process by number; numbers are not used again, so an old object id never finds another
/// drawing.
struct Registry {
  std::uint64_t lastNumber = 0;
  std::map<std::uint64_t, DrawingDatabase*> databases;
  KvDbDatabase* working = nullptr;
};

Registry& registry() {
  static Registry instance;
  return instance;
}

void assertPossible(const Fault& fault) {
  BRENVOLT_ASSERT(!fault, "a change of a drawing must be checked for faults first");
}

} // namespace

DrawingDatabase::DrawingDatabase() : number_(++registry().lastNumber) {
  static_assert(handleLimit == std::uint64_t{1} << handleBits);
  registry().databases.emplace(number_, this);
  for (const auto& [handle, name] :
       {std::pair{modelSpaceHandle, modelSpaceName}, std::pair{paperSpaceHandle, paperSpaceName}}) {
    store_.pushBlock(std::make_unique<BlockNode>(BlockNode{handle, std::wstring(name), KvPoint3d{}}));
  }
  store_.setNextHandle(KvDbHandle(paperSpaceHandle.value() + 1));
  store_.pushLayer(Layer{std::wstring(defaultLayer)});
  store_.variables().emplace(currentSpaceVariable, 1);
}

DrawingDatabase::~DrawingDatabase() {
  BRENVOLT_ASSERT(openObjectCount_ == 0, "a drawing must not go while objects of it are open");
  registry().databases.erase(number_);
  if (registry().working == this) registry().working = nullptr;
}

DrawingDatabase* DrawingDatabase::of(KvDbObjectId id) {
  const auto found = registry().databases.find(id.value() >> handleBits);
  return found == registry().databases.end() ? nullptr : found->second;
}

KvDbHandle DrawingDatabase::handleOf(KvDbObjectId id) {
  return KvDbHandle(id.value() & (handleLimit - 1));
}

KvDbObjectId DrawingDatabase::idOf(KvDbHandle handle) const {
  if (handle.isNull()) return {};
  return KvDbObjectId(number_ << handleBits | handle.value());
}

KvDbObjectId DrawingDatabase::blockTableId() const {
  return idOf(blockTableHandle);
}

KvDbObjectId DrawingDatabase::currentSpaceId() const {
  return idOf(currentSpace());
}

KvDbStatus DrawingDatabase::objectIdOf(KvDbHandle handle, KvDbObjectId& id) const {
  if (handle.isNull()) return KvDbStatus::nullId;
  const bool isKnown = handle == blockTableHandle || store_.findBlock(handle) != nullptr ||
                       store_.findEntity(handle) != nullptr;
  if (!isKnown) return KvDbStatus::keyNotFound;
  id = idOf(handle);
  return KvDbStatus::ok;
}

KvDbHandle DrawingDatabase::blockTable() const {
  return blockTableHandle;
}

KvDbHandle DrawingDatabase::modelSpace() const {
  return modelSpaceHandle;
}

KvDbHandle DrawingDatabase::paperSpace() const {
  return paperSpaceHandle;
}

KvDbHandle DrawingDatabase::currentSpace() const {
  return *variable(currentSpaceVariable) == VariableValue(0) ? paperSpaceHandle : modelSpaceHandle;
}

const EntityNode* DrawingDatabase::find(KvDbHandle handle) const {
  const EntityNode* entity = store_.findEntity(handle);
  return entity == nullptr || entity->isErased ? nullptr : entity;
}

Fault DrawingDatabase::blockFault(std::wstring_view name, const KvPoint3d& basePoint) const {
  if (Fault fault = nameFault(L"a block's name", name)) return fault;
  if (name.front() == L'*') return L"a block's name does not begin with *";
  if (store_.findBlock(name) != nullptr) return L"block " + std::wstring(name) + L" exists already";
  return pointFault(basePoint);
}

KvDbHandle DrawingDatabase::addBlock(std::wstring name, const KvPoint3d& basePoint) {
  assertPossible(blockFault(name, basePoint));
  const KvDbHandle handle = takeHandle();
  store_.pushBlock(std::make_unique<BlockNode>(BlockNode{handle, std::move(name), basePoint}));
  undoLog_.note(BlockCreation{handle});
  return handle;
}

Fault DrawingDatabase::entityFault(KvDbHandle owner, const Entity& entity) const {
  const bool isAttribute = entity.kind() == EntityKind::attribute;
  if (isAttribute) {
    const EntityNode* reference = find(owner);
    if (reference == nullptr || reference->value.kind() != EntityKind::blockReference) {
      return L"an attribute belongs to a block reference";
    }
  } else if (store_.findBlock(owner) == nullptr) {
    return L"an entity belongs to a block or a space";
  }
  const BlockReference* reference = std::get_if<BlockReference>(&entity.shape);
  const bool isInNamedBlock = owner != modelSpaceHandle && owner != paperSpaceHandle;
  // Blocks nest along the order of their definition only, so none can come to hold itself.
  if (reference != nullptr && isInNamedBlock && reference->block >= owner) {
    return L"a block can only contain references to blocks that were defined before it";
  }
  return valueFault(entity);
}

Fault DrawingDatabase::valueFault(const Entity& entity) const {
  if (const auto* reference = std::get_if<BlockReference>(&entity.shape)) {
    const BlockNode* block = store_.findBlock(reference->block);
    if (block == nullptr) return L"the block does not exist";
    if (block->handle == modelSpaceHandle || block->handle == paperSpaceHandle) {
      return L"a space cannot be placed as a block";
    }
  }
  return shapeFault(entity);
}

KvDbHandle DrawingDatabase::addEntity(KvDbHandle owner, Entity entity) {
  assertPossible(entityFault(owner, entity));
  useLayer(entity);
  markOrigin(entity, owner);
  const KvDbHandle handle = takeHandle();
  store_.attach(std::make_unique<EntityNode>(EntityNode{handle, owner, std::move(entity)}));
  undoLog_.note(EntityCreation{handle});
  return handle;
}

Fault DrawingDatabase::changeFault(KvDbHandle handle, const Entity& entity) const {
  const EntityNode* node = find(handle);
  if (node == nullptr) return L"the entity does not exist";
  if (node->value.kind() != entity.kind()) return L"an entity cannot become one of another kind";
  return entityFault(node->owner, entity);
}

void DrawingDatabase::changeEntity(KvDbHandle handle, Entity entity) {
  assertPossible(changeFault(handle, entity));
  useLayer(entity);
  EntityNode& node = *store_.findEntity(handle);
  if (node.value == entity) return;
  store_.exchange(node, entity);
  undoLog_.note(EntityReplacement{handle, std::move(entity)});
}

bool DrawingDatabase::eraseEntity(KvDbHandle handle) {
  EntityNode* node = store_.findEntity(handle);
  if (node == nullptr || node->isErased) return false;
  for (const KvDbHandle attribute : node->attributes) {
    eraseEntity(attribute);
  }
  // An entity that a form erases again at once, such as a symbol placed to load its block, takes no number: otherwise
  // the first symbol of its kind would be numbered differently from the next.
  if (stamp_ && !stamp_->code.empty() && provenanceOf(node->value) == stamp_) --stamp_->order;
  store_.setErased(*node, true);
  undoLog_.note(EntityErasure{handle});
  return true;
}

Fault DrawingDatabase::layerFault(const Layer& layer) {
  if (Fault fault = nameFault(L"a layer's name", layer.name)) return fault;
  if (!layer.wireSettings) return std::nullopt;
  for (const WireSetting& setting : *layer.wireSettings) {
    if (!isValid(setting)) return L"a wire setting has codes 1 to 4 for a text, 90 or 290 for an integer";
  }
  return std::nullopt;
}

void DrawingDatabase::putLayer(Layer layer) {
  assertPossible(layerFault(layer));
  Layer* known = store_.findLayer(layer.name);
  if (known == nullptr) {
    store_.pushLayer(std::move(layer));
    undoLog_.note(LayerCreation{});
    return;
  }
  layer.name = known->name;
  if (*known == layer) return;
  std::swap(*known, layer);
  undoLog_.note(LayerReplacement{std::move(layer)});
}

Fault DrawingDatabase::variableFault(std::wstring_view name, const VariableValue& value) {
  if (Fault fault = nameFault(L"a variable's name", name)) return fault;
  const bool isSpace = brenvolt::equalsOrdinalNoCase(name, currentSpaceVariable);
  if (isSpace && value != VariableValue(0) && value != VariableValue(1)) return L"TILEMODE is 0 or 1";
  const double* real = std::get_if<double>(&value);
  return real == nullptr ? std::nullopt : numberFault(*real);
}

void DrawingDatabase::setVariable(std::wstring_view name, VariableValue value) {
  assertPossible(variableFault(name, value));
  const std::wstring key = brenvolt::toUpper(name);
  auto& variables = store_.variables();
  const auto found = variables.find(key);
  if (found == variables.end()) {
    variables.emplace(key, std::move(value));
    undoLog_.note(VariableReplacement{key});
  } else if (found->second != value) {
    std::swap(found->second, value);
    undoLog_.note(VariableReplacement{key, std::move(value)});
  }
}

void DrawingDatabase::putCircuit(const std::wstring& id, CircuitFields fields) {
  BRENVOLT_ASSERT(parseHandle(id).has_value(), "the id of a circuit is the handle of its first entity");
  CircuitRecords& circuits = store_.circuits();
  const auto found = circuits.find(id);
  if (found == circuits.end() ? fields.empty() : found->second == fields) return;
  CircuitReplacement change{id};
  if (found != circuits.end()) change.other = std::move(found->second);
  if (fields.empty())
    circuits.erase(found);
  else
    circuits[id] = std::move(fields);
  undoLog_.note(std::move(change));
}

void DrawingDatabase::markOrigin(Entity& entity, KvDbHandle owner) {
  const bool isInSpace = owner == modelSpaceHandle || owner == paperSpaceHandle;
  if (!stamp_ || !isInSpace) return;
  if (!stamp_->code.empty()) ++stamp_->order;
  setProvenance(entity, *stamp_);
}

const VariableValue* DrawingDatabase::variable(std::wstring_view name) const {
  const auto found = store_.variables().find(brenvolt::toUpper(name));
  return found == store_.variables().end() ? nullptr : &found->second;
}

KvDbHandle DrawingDatabase::takeHandle() {
  const KvDbHandle handle = store_.nextHandle();
  BRENVOLT_ASSERT(handle.value() + 1 < handleLimit, "a drawing has run out of handles");
  store_.setNextHandle(KvDbHandle(handle.value() + 1));
  return handle;
}

void DrawingDatabase::useLayer(Entity& entity) {
  if (store_.findLayer(entity.layer) == nullptr) putLayer(Layer{entity.layer});
  entity.layer = store_.findLayer(entity.layer)->name;
}

std::wstring formatHandle(KvDbHandle handle) {
  constexpr std::wstring_view digits = L"0123456789ABCDEF";
  std::array<wchar_t, 16> text{};
  std::size_t start = text.size();
  std::uint64_t rest = handle.value();
  do {
    text[--start] = digits[rest % 16];
    rest /= 16;
  } while (rest != 0);
  return {text.begin() + start, text.end()};
}

std::optional<KvDbHandle> parseHandle(std::wstring_view text) {
  std::uint64_t value = 0;
  for (const wchar_t character : text) {
    const bool isDigit = character >= L'0' && character <= L'9';
    const bool isLower = character >= L'a' && character <= L'f';
    if (!isDigit && !isLower && (character < L'A' || character > L'F')) return std::nullopt;
    const wchar_t first = isLower ? L'a' : L'A';
    value = value * 16 + static_cast<std::uint64_t>(isDigit ? character - L'0' : character - first + 10);
    if (value >= DrawingDatabase::handleLimit) return std::nullopt;
  }
  if (value == 0) return std::nullopt;
  return KvDbHandle(value);
}

} // namespace simhost

KvDbDatabase* kvdbWorkingDatabase() {
  return simhost::registry().working;
}

void kvdbSetWorkingDatabase(KvDbDatabase* database) {
  simhost::registry().working = database;
}
