// The host's face, drawing side: database, block table, entities, entity data, undo.
//
// Objects are reached by id and opened for a moment: `kvdbOpenKvDbObject` gives a pointer that is valid until its
// `close()`, which every opener calls exactly once. An erased object does not open.
#pragma once

#include "host/host_api_types.h"

#include <compare>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// The permanent number of an object in a drawing file; written as hexadecimal text. 0 means no object.
class KvDbHandle final {
public:
  constexpr KvDbHandle() = default;
  constexpr explicit KvDbHandle(std::uint64_t value) : value_(value) {}
  [[nodiscard]] constexpr bool isNull() const { return value_ == 0; }
  [[nodiscard]] constexpr std::uint64_t value() const { return value_; }
  // NOLINTNEXTLINE(modernize-use-nullptr): the linter takes the hidden 0 of the comparison for a pointer.
  friend constexpr auto operator<=>(KvDbHandle, KvDbHandle) = default;

private:
  std::uint64_t value_ = 0;
};

/// Names an object in memory, across all open drawings of a session.
class KvDbObjectId final {
public:
  constexpr KvDbObjectId() = default;
  constexpr explicit KvDbObjectId(std::uint64_t value) : value_(value) {}
  [[nodiscard]] constexpr bool isNull() const { return value_ == 0; }
  [[nodiscard]] constexpr std::uint64_t value() const { return value_; }
  friend constexpr auto operator<=>(KvDbObjectId, KvDbObjectId) = default;

private:
  std::uint64_t value_ = 0;
};

enum class KvOpenMode { forRead, forWrite };

/// The results of database operations; `ok` is success.
enum class KvDbStatus { ok, nullId, invalidId, wasErased, wrongType, keyNotFound, notWritable };

class KV_HOST_API KvDbObject {
public:
  KvDbObject(const KvDbObject&) = delete;
  KvDbObject& operator=(const KvDbObject&) = delete;
  [[nodiscard]] virtual KvDbObjectId objectId() const = 0;
  [[nodiscard]] virtual KvDbHandle handle() const = 0;
  /// Removes the object from the drawing; undo restores it. Needs `forWrite`.
  virtual KvDbStatus erase() = 0;
  /// The entity data of one application as a new chain that begins with its applicationName node; null when the
  /// object carries none. Caller releases.
  [[nodiscard]] virtual KvResultBuffer* xData(const wchar_t* application) const = 0;
  /// Ends the use of this pointer.
  virtual void close() = 0;

protected:
  KvDbObject() = default;
  virtual ~KvDbObject();
};

class KV_HOST_API KvDbEntity : public KvDbObject {
protected:
  ~KvDbEntity() override;
};

/// A placed block with its attributes.
class KV_HOST_API KvDbBlockReference : public KvDbEntity {
public:
  [[nodiscard]] virtual KvPoint3d position() const = 0;
  /// The block's record, whose name is the block's name.
  [[nodiscard]] virtual KvDbObjectId blockTableRecord() const = 0;
  /// The attributes in the order of their definition.
  [[nodiscard]] virtual std::vector<KvDbObjectId> attributes() const = 0;

protected:
  ~KvDbBlockReference() override;
};

/// The value that one block reference gives an attribute.
class KV_HOST_API KvDbAttribute : public KvDbEntity {
public:
  [[nodiscard]] virtual std::wstring tag() const = 0;
  [[nodiscard]] virtual std::wstring textString() const = 0;

protected:
  ~KvDbAttribute() override;
};

/// The definition of an attribute in a block or, not yet part of one, in a space.
class KV_HOST_API KvDbAttributeDefinition : public KvDbEntity {
public:
  [[nodiscard]] virtual std::wstring tag() const = 0;
  [[nodiscard]] virtual std::wstring textString() const = 0;

protected:
  ~KvDbAttributeDefinition() override;
};

/// Walks the entities of a block in drawing order; erased ones are stepped over.
class KV_HOST_API KvDbBlockTableRecordIterator {
public:
  virtual ~KvDbBlockTableRecordIterator();
  /// To the first entity, or to the last when `atBeginning` is false.
  virtual void start(bool atBeginning = true) = 0;
  [[nodiscard]] virtual bool done() const = 0;
  /// To the next entity, or to the one before when `forwards` is false.
  virtual void step(bool forwards = true) = 0;
  /// To the entity of this id; `keyNotFound` when the block does not hold it, the position then unchanged.
  virtual KvDbStatus seek(KvDbObjectId id) = 0;
  [[nodiscard]] virtual KvDbObjectId entityId() const = 0;
};

/// A block: model space, paper space, or one that references place.
class KV_HOST_API KvDbBlockTableRecord : public KvDbObject {
public:
  [[nodiscard]] virtual std::wstring name() const = 0;
  [[nodiscard]] virtual std::unique_ptr<KvDbBlockTableRecordIterator> newIterator() const = 0;

protected:
  ~KvDbBlockTableRecord() override;
};

class KV_HOST_API KvDbBlockTable : public KvDbObject {
public:
  /// The record of a block by name, without case ("*Model_Space", "*Paper_Space", a block's name).
  [[nodiscard]] virtual KvDbStatus getAt(const wchar_t* name, KvDbObjectId& record) const = 0;

protected:
  ~KvDbBlockTable() override;
};

/// Counts the undo records of a database. Every change between two group marks is one record. Reading the count sets
/// such a mark too: later changes belong to a later record, so undoing to that count restores that moment.
class KV_HOST_API KvDbUndoController {
public:
  virtual ~KvDbUndoController();
  [[nodiscard]] virtual int undoCount() const = 0;
  [[nodiscard]] virtual bool isOff() const = 0;
  /// Closes the open group, so that later changes make a new record. Harmless when none is open.
  virtual void closeGroup() = 0;
  /// Takes back the last `records` records. 0 on success; any other value: refused, nothing changed.
  virtual int undo(int records) = 0;
};

class KV_HOST_API KvDbDatabase {
public:
  virtual ~KvDbDatabase();
  [[nodiscard]] virtual KvDbObjectId blockTableId() const = 0;
  /// The record of the space that is current in the editor.
  [[nodiscard]] virtual KvDbObjectId currentSpaceId() const = 0;
  /// The object of a handle, erased or not.
  [[nodiscard]] virtual KvDbStatus objectIdOf(KvDbHandle handle, KvDbObjectId& id) const = 0;
  /// Null when the database keeps no undo.
  [[nodiscard]] virtual KvDbUndoController* undoController() = 0;
};

/// Opens an object. On `ok` the caller closes it; on anything else `object` is null.
KV_HOST_API KvDbStatus kvdbOpenKvDbObject(KvDbObject*& object, KvDbObjectId id, KvOpenMode mode);
/// The id of a LISP entity name; `invalidId` if no object has the name.
KV_HOST_API KvDbStatus kvdbGetObjectId(KvDbObjectId& id, KvEntityName name);
/// The LISP name of an object.
KV_HOST_API KvDbStatus kvdbGetEntityName(KvEntityName& name, KvDbObjectId id);
/// The database of operations without a database argument; null when there is none.
KV_HOST_API KvDbDatabase* kvdbWorkingDatabase();
KV_HOST_API void kvdbSetWorkingDatabase(KvDbDatabase* database);
