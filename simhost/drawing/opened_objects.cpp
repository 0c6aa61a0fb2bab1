// The host API of the drawing: small objects for one record or entity between open and close. They contain only the
// handle and look it up at each call, so an undo while one is open does no harm.

#include "host/host_api_lisp.h"
#include "simhost/drawing/drawing_database.h"

#include <memory>
#include <utility>

// The destructors are defined here so that the host, and no module, contains the classes' type information.
KvDbObject::~KvDbObject() = default;
KvDbEntity::~KvDbEntity() = default;
KvDbBlockReference::~KvDbBlockReference() = default;
KvDbAttribute::~KvDbAttribute() = default;
KvDbAttributeDefinition::~KvDbAttributeDefinition() = default;
KvDbBlockTableRecordIterator::~KvDbBlockTableRecordIterator() = default;
KvDbBlockTableRecord::~KvDbBlockTableRecord() = default;
KvDbBlockTable::~KvDbBlockTable() = default;
KvDbUndoController::~KvDbUndoController() = default;
KvDbDatabase::~KvDbDatabase() = default;

namespace simhost {
namespace {

/// What all opened objects have in common, beneath the class of the host's face that they implement.
template <typename Face>
class OpenedObject : public Face {
public:
  OpenedObject(DrawingDatabase& database, KvDbHandle handle, KvOpenMode mode)
      : database_(database), handle_(handle), mode_(mode) {
    database_.countOpenObjects(1);
  }

  KvDbObjectId objectId() const override { return database_.idOf(handle_); }
  KvDbHandle handle() const override { return handle_; }
  /// Blocks and the block table stay: only entities can be erased.
  KvDbStatus erase() override { return KvDbStatus::notWritable; }
  KvResultBuffer* xData(const wchar_t* /*application*/) const override { return nullptr; }
  void close() override { delete this; }

protected:
  ~OpenedObject() override { database_.countOpenObjects(-1); }

  [[nodiscard]] DrawingDatabase& database() const { return database_; }
  [[nodiscard]] KvOpenMode mode() const { return mode_; }

private:
  DrawingDatabase& database_;
  KvDbHandle handle_;
  KvOpenMode mode_;
};

class ChainBuilder final {
public:
  void add(std::int16_t type, const std::wstring& text) {
    KvResultBuffer* node = kvutNewRb(type);
    if (node == nullptr) return;
    node->value.string = kvutNewString(text.c_str());
    (last_ == nullptr ? first_ : last_->next) = node;
    last_ = node;
  }
  [[nodiscard]] KvResultBuffer* first() const { return first_; }

private:
  KvResultBuffer* first_ = nullptr;
  KvResultBuffer* last_ = nullptr;
};

template <typename Face>
class OpenedEntity : public OpenedObject<Face> {
public:
  using OpenedObject<Face>::OpenedObject;

  KvDbStatus erase() override {
    if (this->mode() != KvOpenMode::forWrite) return KvDbStatus::notWritable;
    return this->database().eraseEntity(this->handle()) ? KvDbStatus::ok : KvDbStatus::wasErased;
  }

  /// The texts are between braces, as applications attach them.
  KvResultBuffer* xData(const wchar_t* application) const override {
    const EntityNode* entity = node();
    if (entity == nullptr || application == nullptr) return nullptr;
    const std::vector<std::wstring>* texts = findData(entity->value, application);
    if (texts == nullptr) return nullptr;
    ChainBuilder chain;
    chain.add(kvtype::applicationName, application);
    chain.add(kvtype::controlString, L"{");
    for (const std::wstring& text : *texts) {
      chain.add(kvtype::dataString, text);
    }
    chain.add(kvtype::controlString, L"}");
    return chain.first();
  }

protected:
  ~OpenedEntity() override = default;

  /// Null when an undo took the entity away while it was open.
  [[nodiscard]] const EntityNode* node() const { return this->database().store().findEntity(this->handle()); }

  template <typename Value>
  [[nodiscard]] const Value* value() const {
    const EntityNode* entity = node();
    return entity == nullptr ? nullptr : std::get_if<Value>(&entity->value.shape);
  }
};

class OpenedPlainEntity final : public OpenedEntity<KvDbEntity> {
public:
  using OpenedEntity::OpenedEntity;
};

class OpenedBlockReference final : public OpenedEntity<KvDbBlockReference> {
public:
  using OpenedEntity::OpenedEntity;

  KvPoint3d position() const override {
    const auto* reference = value<BlockReference>();
    return reference == nullptr ? KvPoint3d{} : reference->position;
  }

  KvDbObjectId blockTableRecord() const override {
    const auto* reference = value<BlockReference>();
    return reference == nullptr ? KvDbObjectId{} : database().idOf(reference->block);
  }

  std::vector<KvDbObjectId> attributes() const override {
    std::vector<KvDbObjectId> ids;
    const EntityNode* reference = node();
    if (reference == nullptr) return ids;
    for (const KvDbHandle attribute : reference->attributes) {
      if (database().find(attribute) != nullptr) ids.push_back(database().idOf(attribute));
    }
    return ids;
  }
};

/// Attribute and attribute definition: a tag and a text.
template <typename Face, typename Value>
class OpenedTagged final : public OpenedEntity<Face> {
public:
  using OpenedEntity<Face>::OpenedEntity;

  std::wstring tag() const override {
    const auto* tagged = this->template value<Value>();
    return tagged == nullptr ? std::wstring() : tagged->tag;
  }

  std::wstring textString() const override {
    const auto* tagged = this->template value<Value>();
    return tagged == nullptr ? std::wstring() : tagged->text.text;
  }
};

/// Stays on an entity even when it is erased, so that the walk continues from its position.
class EntityIterator final : public KvDbBlockTableRecordIterator {
public:
  EntityIterator(const DrawingDatabase& database, KvDbHandle block) : database_(database), block_(block) {
    start();
  }

  void start(bool atBeginning = true) override {
    const BlockNode* block = database_.store().findBlock(block_);
    if (block == nullptr) {
      current_ = KvDbHandle();
    } else {
      standOn(atBeginning ? block->first : block->last);
    }
  }

  bool done() const override { return current_.isNull(); }

  void step(bool forwards = true) override {
    const EntityNode* entity = database_.store().findEntity(current_);
    if (entity == nullptr) {
      current_ = KvDbHandle();
    } else {
      standOn(forwards ? database_.store().following(*entity) : database_.store().preceding(*entity));
    }
  }

  KvDbStatus seek(KvDbObjectId id) override {
    const EntityNode* entity = database_.find(DrawingDatabase::handleOf(id));
    if (DrawingDatabase::of(id) != &database_ || entity == nullptr || entity->owner != block_) {
      return KvDbStatus::keyNotFound;
    }
    current_ = entity->handle;
    return KvDbStatus::ok;
  }

  KvDbObjectId entityId() const override { return database_.idOf(current_); }

private:
  void standOn(const EntityNode* entity) { current_ = entity == nullptr ? KvDbHandle() : entity->handle; }

  const DrawingDatabase& database_;
  KvDbHandle block_;
  KvDbHandle current_;
};

class OpenedBlockRecord final : public OpenedObject<KvDbBlockTableRecord> {
public:
  using OpenedObject::OpenedObject;

  std::wstring name() const override {
    const BlockNode* block = database().store().findBlock(handle());
    return block == nullptr ? std::wstring() : block->name;
  }

  std::unique_ptr<KvDbBlockTableRecordIterator> newIterator() const override {
    return std::make_unique<EntityIterator>(database(), handle());
  }
};

class OpenedBlockTable final : public OpenedObject<KvDbBlockTable> {
public:
  using OpenedObject::OpenedObject;

  KvDbStatus getAt(const wchar_t* name, KvDbObjectId& record) const override {
    const BlockNode* block = name == nullptr ? nullptr : database().store().findBlock(name);
    if (block == nullptr) return KvDbStatus::keyNotFound;
    record = database().idOf(block->handle);
    return KvDbStatus::ok;
  }
};

KvDbObject* openEntity(DrawingDatabase& database, const EntityNode& entity, KvOpenMode mode) {
  switch (entity.value.kind()) {
  case EntityKind::blockReference:
    return new OpenedBlockReference(database, entity.handle, mode);
  case EntityKind::attribute:
    return new OpenedTagged<KvDbAttribute, Attribute>(database, entity.handle, mode);
  case EntityKind::attributeDefinition:
    return new OpenedTagged<KvDbAttributeDefinition, AttributeDefinition>(database, entity.handle, mode);
  case EntityKind::line:
  case EntityKind::polyline:
  case EntityKind::circle:
  case EntityKind::arc:
  case EntityKind::text:
    break;
  }
  return new OpenedPlainEntity(database, entity.handle, mode);
}

} // namespace
} // namespace simhost

KvDbStatus kvdbOpenKvDbObject(KvDbObject*& object, KvDbObjectId id, KvOpenMode mode) {
  using namespace simhost;
  object = nullptr;
  if (id.isNull()) return KvDbStatus::nullId;
  DrawingDatabase* database = DrawingDatabase::of(id);
  if (database == nullptr) return KvDbStatus::invalidId;
  const KvDbHandle handle = DrawingDatabase::handleOf(id);
  if (handle == database->blockTable()) {
    object = new OpenedBlockTable(*database, handle, mode);
  } else if (database->store().findBlock(handle) != nullptr) {
    object = new OpenedBlockRecord(*database, handle, mode);
  } else if (const EntityNode* entity = database->store().findEntity(handle)) {
    if (entity->isErased) return KvDbStatus::wasErased;
    object = openEntity(*database, *entity, mode);
  } else {
    return KvDbStatus::invalidId;
  }
  return KvDbStatus::ok;
}

// An entity name is the object's id: both hold for one session and name no two objects.

KvDbStatus kvdbGetObjectId(KvDbObjectId& id, KvEntityName name) {
  const KvDbObjectId candidate(name.value);
  simhost::DrawingDatabase* database = simhost::DrawingDatabase::of(candidate);
  if (database == nullptr) return KvDbStatus::invalidId;
  KvDbObjectId found;
  if (database->objectIdOf(simhost::DrawingDatabase::handleOf(candidate), found) != KvDbStatus::ok) {
    return KvDbStatus::invalidId;
  }
  id = found;
  return KvDbStatus::ok;
}

KvDbStatus kvdbGetEntityName(KvEntityName& name, KvDbObjectId id) {
  if (id.isNull()) return KvDbStatus::nullId;
  KvDbObjectId found;
  const KvDbStatus status = kvdbGetObjectId(found, KvEntityName{id.value()});
  if (status == KvDbStatus::ok) name.value = found.value();
  return status;
}
