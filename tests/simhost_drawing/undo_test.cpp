#include "drawing_fixtures.h"
#include "simhost/drawing/drawing_file.h"

#include <doctest/doctest.h>

#include <random>
#include <string>
#include <vector>

using namespace simhost;
using namespace simhost::testing;

namespace {

/// Random but repeatable edits of every kind. The generator's raw numbers are used, as distributions differ between
/// standard libraries.
class Editor final {
public:
  Editor(DrawingDatabase& drawing, unsigned seed) : drawing_(drawing), random_(seed) {}

  void edit() {
    switch (below(10)) {
    case 0:
      drawing_.addBlock(L"Block " + std::to_wstring(drawing_.store().blocks().size()), point());
      break;
    case 1:
      drawing_.putLayer(
          {L"Layer " + std::to_wstring(below(6)), {static_cast<std::uint8_t>(below(256)), 0, 0}});
      break;
    case 2:
      drawing_.setVariable(L"V" + std::to_wstring(below(4)), static_cast<std::int32_t>(below(9)));
      break;
    case 9: {
      CircuitFields fields;
      if (below(3) != 0) fields.emplace_back(L"type", std::to_wstring(below(4)));
      drawing_.putCircuit(formatHandle(KvDbHandle(1 + below(3))), fields);
      break;
    }
    case 3:
    case 4:
      if (const EntityNode* entity = anyEntity()) drawing_.eraseEntity(entity->handle);
      break;
    case 5:
      changeAny();
      break;
    case 6:
      addReference();
      break;
    default:
      drawing_.addEntity(anyBlock(), {Line{point(), point()}, L"Layer " + std::to_wstring(below(6))});
    }
  }

  unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }

private:
  KvPoint3d point() { return {static_cast<double>(below(100)), below(100) / 8.0, 0.0}; }

  KvDbHandle anyBlock() {
    const auto& blocks = drawing_.store().blocks();
    return blocks[below(static_cast<unsigned>(blocks.size()))]->handle;
  }

  const EntityNode* anyEntity() {
    const EntityNode* entity = drawing_.store().findBlock(anyBlock())->first;
    for (unsigned steps = below(8); entity != nullptr && steps > 0; --steps) {
      if (entity->next != nullptr) entity = entity->next;
    }
    return entity;
  }

  void changeAny() {
    const EntityNode* entity = anyEntity();
    if (entity == nullptr) return;
    Entity value = entity->value;
    value.colour = Colour{0, static_cast<std::uint8_t>(below(256)), 0};
    if (auto* line = std::get_if<Line>(&value.shape)) line->to = point();
    setData(value, L"APP", {std::to_wstring(below(3))});
    drawing_.changeEntity(entity->handle, value);
  }

  void addReference() {
    const KvDbHandle block = anyBlock();
    const Entity reference{BlockReference{block, point()}};
    if (drawing_.entityFault(drawing_.modelSpace(), reference)) return;
    const KvDbHandle placed = drawing_.addEntity(drawing_.modelSpace(), reference);
    drawing_.addEntity(placed, makeAttribute(L"TAG1", L"K" + std::to_wstring(below(10))));
  }

  DrawingDatabase& drawing_;
  std::mt19937 random_;
};

/// What the drawing finds in a box of each block is what a look at every entity finds.
bool findsAllInBoxes(const DrawingDatabase& drawing, Editor& editor) {
  const auto edge = [&] { return static_cast<double>(editor.below(1000)) / 8.0; };
  for (const auto& block : drawing.store().blocks()) {
    Box area;
    area.include(KvPoint3d{edge(), edge() / 8.0, 0.0});
    area.include(KvPoint3d{edge(), edge() / 8.0, 0.0});
    std::vector<const EntityNode*> expected;
    for (const EntityNode* entity = block->first; entity != nullptr; entity = entity->next)
      if (EntityGrid::boxOf(entity->value.shape).meets(area)) expected.push_back(entity);
    if (drawing.store().meeting(*block, area) != expected) return false;
  }
  return true;
}

} // namespace

TEST_CASE("undo and redo restore the exact bytes of every earlier state, whatever was edited") {
  for (unsigned seed = 1; seed <= 6; ++seed) {
    CAPTURE(seed);
    DrawingDatabase drawing;
    UndoLog& log = drawing.undoLog();
    Editor editor(drawing, seed);
    std::vector<std::string> states{drawingToJson(drawing)};
    for (int step = 0; step < 80; ++step) {
      // Now and then a few steps back and forth in the middle, sometimes going on from there.
      if (editor.below(10) == 0) {
        const int back = static_cast<int>(editor.below(static_cast<unsigned>(log.undoCount()) + 1));
        REQUIRE(log.undo(back) == 0);
        const int again = static_cast<int>(editor.below(static_cast<unsigned>(back) + 1));
        REQUIRE(log.redo(again) == 0);
        states.resize(static_cast<std::size_t>(log.undoCount()) + 1);
        REQUIRE(drawingToJson(drawing) == states.back());
      }
      UndoGroup group(log);
      for (unsigned edits = editor.below(5); edits > 0; --edits) {
        editor.edit();
      }
      const auto count = static_cast<std::size_t>(log.undoCount());
      if (count == states.size()) states.push_back(drawingToJson(drawing));
      REQUIRE(count + 1 == states.size());
      REQUIRE(drawingToJson(drawing) == states.back());
      REQUIRE(findsAllInBoxes(drawing, editor));
    }
    const int total = log.undoCount();
    for (int count = total; count-- > 0;) {
      REQUIRE(log.undo(1) == 0);
      REQUIRE(drawingToJson(drawing) == states[static_cast<std::size_t>(count)]);
      REQUIRE(findsAllInBoxes(drawing, editor));
    }
    REQUIRE(log.redo(total) == 0);
    CHECK(drawingToJson(drawing) == states.back());
  }
}

TEST_CASE("what is near is found at every scale of coordinates") {
  DrawingDatabase drawing;
  const KvDbHandle space = drawing.modelSpace();
  for (const double size : {0.0, 1e-300, 8.0, 64.0, 1e15, 1e300}) {
    drawing.addEntity(space, makeLine(-size, -size, size, size));
    drawing.addEntity(space, makeLine(size, 0, size, size));
  }
  const BlockNode& block = *drawing.store().findBlock(space);
  for (const double x : {-1e300, -64.0, 0.0, 7.9, 8.0, 1e15, 1.1e15, 1e300}) {
    Box area;
    area.include(KvPoint3d{x, 0.0, 0.0});
    std::size_t expected = 0;
    for (const EntityNode* entity = block.first; entity != nullptr; entity = entity->next)
      expected += EntityGrid::boxOf(entity->value.shape).meets(area) ? 1U : 0U;
    CAPTURE(x);
    CHECK(drawing.store().meeting(block, area).size() == expected);
  }
}

TEST_CASE("an undo that is refused changes nothing") {
  DrawingDatabase drawing;
  UndoLog& log = drawing.undoLog();
  drawing.setVariable(L"TILEMODE", 1); // as it is already
  CHECK(log.undoCount() == 0);
  drawing.addEntity(drawing.modelSpace(), makeLine(0, 0, 1, 1));
  const std::string before = drawingToJson(drawing);
  CHECK(log.undo(2) != 0);
  CHECK(log.undo(-1) != 0);
  CHECK(log.undo(0) == 0);
  CHECK(log.redo(1) != 0);
  CHECK(drawingToJson(drawing) == before);
  log.setOff(true);
  CHECK(log.isOff());
  CHECK(log.undo(1) != 0);
  drawing.addEntity(drawing.modelSpace(), makeLine(0, 0, 2, 2));
  log.setOff(false);
  CHECK(log.undoCount() == 0);
  drawing.eraseEntity(drawing.store().findBlock(drawing.modelSpace())->first->handle);
  REQUIRE(log.undo(1) == 0);
  CHECK(drawing.store().findBlock(drawing.modelSpace())->entityCount == 2);
}
