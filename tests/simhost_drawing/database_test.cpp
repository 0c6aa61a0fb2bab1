#include "drawing_fixtures.h"
#include "host/host_api_lisp.h"

#include <doctest/doctest.h>

#include <limits>
#include <memory>
#include <vector>

using namespace simhost;
using namespace simhost::testing;

namespace {

/// Closes what it opened, so that a failed check leaves nothing open.
template <typename Face>
class Opened final {
public:
  explicit Opened(KvDbObjectId id, KvOpenMode mode = KvOpenMode::forRead) {
    status = kvdbOpenKvDbObject(object_, id, mode);
  }
  ~Opened() {
    if (object_ != nullptr) object_->close();
  }
  Opened(const Opened&) = delete;
  Opened& operator=(const Opened&) = delete;
  Face* operator->() const { return dynamic_cast<Face*>(object_); }
  [[nodiscard]] bool isOfType() const { return dynamic_cast<Face*>(object_) != nullptr; }

  KvDbStatus status = KvDbStatus::ok;

private:
  KvDbObject* object_ = nullptr;
};

std::vector<std::uint64_t> walk(const DrawingDatabase& drawing, bool forwards) {
  Opened<KvDbBlockTableRecord> space(drawing.currentSpaceId());
  std::vector<std::uint64_t> handles;
  const auto iterator = space->newIterator();
  for (iterator->start(forwards); !iterator->done(); iterator->step(forwards)) {
    handles.push_back(DrawingDatabase::handleOf(iterator->entityId()).value());
  }
  return handles;
}

std::vector<KvDbHandle> addLines(DrawingDatabase& drawing, int count) {
  std::vector<KvDbHandle> handles;
  handles.reserve(static_cast<std::size_t>(count));
  for (int index = 0; index < count; ++index) {
    handles.push_back(drawing.addEntity(drawing.modelSpace(), makeLine(index, 0.0, index, 1.0)));
  }
  return handles;
}

} // namespace

TEST_CASE("entities come in drawing order in both directions and erased ones are stepped over") {
  DrawingDatabase drawing;
  const std::vector<KvDbHandle> lines = addLines(drawing, 5);
  const std::uint64_t first = lines[0].value();
  drawing.eraseEntity(lines[4]);
  drawing.eraseEntity(lines[2]);
  drawing.eraseEntity(lines[1]);
  CHECK(walk(drawing, true) == std::vector<std::uint64_t>{first, first + 3});
  CHECK(walk(drawing, false) == std::vector<std::uint64_t>{first + 3, first});
  REQUIRE(drawing.undoLog().undo(1) == 0);
  CHECK(walk(drawing, true).empty());
}

TEST_CASE("an iterator goes on from an entity that is erased beneath it") {
  DrawingDatabase drawing;
  const std::vector<KvDbHandle> lines = addLines(drawing, 4);
  Opened<KvDbBlockTableRecord> space(drawing.currentSpaceId());
  const auto iterator = space->newIterator();
  REQUIRE(iterator->seek(drawing.idOf(lines[1])) == KvDbStatus::ok);
  drawing.eraseEntity(lines[1]);
  drawing.eraseEntity(lines[2]);
  CHECK(iterator->seek(drawing.idOf(lines[2])) == KvDbStatus::keyNotFound);
  iterator->step();
  CHECK(iterator->entityId() == drawing.idOf(lines[3]));

  // The last entity is erased while the iterator is on it, then more are added.
  drawing.eraseEntity(lines[3]);
  const std::vector<KvDbHandle> later = addLines(drawing, 2);
  iterator->step();
  CHECK(iterator->entityId() == drawing.idOf(later[0]));
  iterator->step(false);
  CHECK(iterator->entityId() == drawing.idOf(lines[0]));
  iterator->step(false);
  CHECK(iterator->done());
}

TEST_CASE("opening tells apart what exists, what was erased and what never was") {
  auto drawing = std::make_unique<DrawingDatabase>();
  const KvDbHandle line = addLines(*drawing, 1).front();
  const KvDbObjectId id = drawing->idOf(line);
  CHECK(Opened<KvDbEntity>(id).isOfType());
  CHECK_FALSE(Opened<KvDbBlockReference>(id).isOfType());
  CHECK(Opened<KvDbObject>(KvDbObjectId()).status == KvDbStatus::nullId);
  CHECK(Opened<KvDbObject>(drawing->idOf(KvDbHandle(999))).status == KvDbStatus::invalidId);
  CHECK(Opened<KvDbEntity>(id)->erase() == KvDbStatus::notWritable);
  CHECK(Opened<KvDbEntity>(id, KvOpenMode::forWrite)->erase() == KvDbStatus::ok);
  CHECK(Opened<KvDbEntity>(id).status == KvDbStatus::wasErased);
  KvDbObjectId found;
  CHECK(drawing->objectIdOf(line, found) == KvDbStatus::ok); // erased or not
  CHECK(found == id);
  CHECK(drawing->objectIdOf(KvDbHandle(999), found) == KvDbStatus::keyNotFound);
  CHECK(drawing->openObjectCount() == 0);

  KvEntityName name{};
  REQUIRE(kvdbGetEntityName(name, id) == KvDbStatus::ok);
  REQUIRE(kvdbGetObjectId(found, name) == KvDbStatus::ok);
  CHECK(found == id);
  kvdbSetWorkingDatabase(drawing.get());
  drawing.reset();
  CHECK(kvdbWorkingDatabase() == nullptr);
  DrawingDatabase next;
  addLines(next, 1);
  CHECK(kvdbGetObjectId(found, name) == KvDbStatus::invalidId);
  CHECK(Opened<KvDbObject>(id).status == KvDbStatus::invalidId);
}

TEST_CASE("a block reference that is open outlives an undo without harm") {
  DrawingDatabase drawing;
  const KvDbHandle block = drawing.addBlock(L"HMS1", {});
  const KvDbHandle reference = drawing.addEntity(drawing.modelSpace(), makeReference(block, 3.0, 4.0));
  drawing.addEntity(reference, makeAttribute(L"TAG1", L"M1"));
  const KvDbHandle gone = drawing.addEntity(reference, makeAttribute(L"MFG", L"x"));
  drawing.eraseEntity(gone);
  Opened<KvDbBlockReference> opened(drawing.idOf(reference));
  CHECK(opened->attributes().size() == 1);
  REQUIRE(drawing.undoLog().undo(1) == 0);
  CHECK(opened->attributes().empty());
  CHECK(opened->blockTableRecord().isNull());
}

TEST_CASE("the block table finds blocks without case and TILEMODE chooses the current space") {
  DrawingDatabase drawing;
  const KvDbHandle block = drawing.addBlock(L"Coil", {});
  Opened<KvDbBlockTable> table(drawing.blockTableId());
  KvDbObjectId id;
  CHECK(table->getAt(L"COIL", id) == KvDbStatus::ok);
  CHECK(id == drawing.idOf(block));
  CHECK(table->getAt(L"Coils", id) == KvDbStatus::keyNotFound);
  CHECK(id == drawing.idOf(block));
  REQUIRE(table->getAt(L"*paper_space", id) == KvDbStatus::ok);
  CHECK(drawing.currentSpaceId() == drawing.idOf(drawing.modelSpace()));
  drawing.setVariable(L"tilemode", 0);
  CHECK(drawing.currentSpaceId() == id);
}

TEST_CASE("what cannot stand in a drawing is told with its reason") {
  DrawingDatabase drawing;
  const KvDbHandle inner = drawing.addBlock(L"Inner", {});
  const KvDbHandle outer = drawing.addBlock(L"Outer", {});
  const KvDbHandle space = drawing.modelSpace();
  const KvDbHandle line = drawing.addEntity(space, makeLine(0, 0, 1, 1));
  const double endless = std::numeric_limits<double>::infinity();
  const struct {
    KvDbHandle owner;
    Entity entity;
    const wchar_t* reason = nullptr;
  } rows[] = {
      {space, makeLine(0, 0, endless, 0), L"a number must be finite"},
      {space, {Circle{{}, 0.0}}, L"the radius must be above 0"},
      {space, {Polyline{{{1, 1, 0}}}}, L"a polyline has at least two points"},
      {space, {Text{{}, L"x", -1.0}}, L"the height must be above 0"},
      {space, makeReference(space, 0, 0), L"a space cannot be placed as a block"},
      {space, makeReference(line, 0, 0), L"the block does not exist"},
      {inner, makeReference(inner, 0, 0),
       L"a block can only contain references to blocks that were defined before it"},
      {inner, makeReference(outer, 0, 0),
       L"a block can only contain references to blocks that were defined before it"},
      {line, makeLine(0, 0, 1, 1), L"an entity belongs to a block or a space"},
      {line, makeAttribute(L"TAG", L""), L"an attribute belongs to a block reference"},
      {space, {Line{}, L" "}, L"a layer's name must not begin or end with a blank"},
  };
  for (const auto& row : rows) {
    CHECK(drawing.entityFault(row.owner, row.entity) == row.reason);
  }
  CHECK_FALSE(drawing.entityFault(outer, makeReference(inner, 0, 0)));
  CHECK(drawing.changeFault(line, makeText(0, 0, L"x")));
  CHECK(drawing.blockFault(L"INNER", {}));
  CHECK(DrawingDatabase::variableFault(L"TileMode", 2));
  CHECK(DrawingDatabase::layerFault({L"W", {}, {}, std::vector<WireSetting>{{290, 40000}}}));
}

TEST_CASE("handles are read and written as hexadecimal text") {
  CHECK(formatHandle(KvDbHandle(0x1af)) == L"1AF");
  CHECK(parseHandle(L"1aF") == KvDbHandle(0x1af));
  for (const wchar_t* text : {L"", L"0", L"1G", L" 1", L"10000000000", L"FFFFFFFFFFFFFFFFF"}) {
    CHECK_FALSE(parseHandle(text));
  }
}
