#include "drawing_fixtures.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/drawing/insertion.h"

#include <doctest/doctest.h>

#include <string>
#include <vector>

using namespace simhost;
using namespace simhost::testing;

namespace {

template <typename Value>
const Value& shapeOf(const DrawingDatabase& drawing, KvDbHandle handle) {
  return std::get<Value>(drawing.find(handle)->value.shape);
}

} // namespace

TEST_CASE("placing a block gives each definition an attribute where the placement puts it") {
  DrawingDatabase drawing;
  const KvDbHandle block = drawing.addBlock(L"Coil", {1.0, 1.0, 0.0});
  drawing.addEntity(block, {AttributeDefinition{L"TAG1", L"", Text{{3.0, 1.0, 0.0}, L"K?", 2.5}}, L"Tags"});
  drawing.addEntity(block, makeLine(0, 0, 1, 1));
  drawing.addEntity(block, {AttributeDefinition{L"MFG", L"", Text{{1.0, 2.0, 0.0}, L"none", 1.0}, false}});
  const Entity reference{BlockReference{block, {10.0, 20.0, 0.0}, 2.0, 90.0}};
  REQUIRE_FALSE(blockInsertionFault(drawing, drawing.modelSpace(), reference, {{L"tag1", L"K7"}}));
  const KvDbHandle placed = insertBlock(drawing, drawing.modelSpace(), reference, {{L"tag1", L"K7"}});
  const auto& attributes = drawing.find(placed)->attributes;
  REQUIRE(attributes.size() == 2);
  CHECK(
      (shapeOf<Attribute>(drawing, attributes[0]) ==
       Attribute{L"TAG1", Text{{10.0, 24.0, 0.0}, L"K7", 5.0, 90.0}}));
  CHECK(drawing.find(attributes[0])->value.layer == L"Tags");
  CHECK(
      (shapeOf<Attribute>(drawing, attributes[1]) ==
       Attribute{L"MFG", Text{{8.0, 20.0, 0.0}, L"none", 2.0, 90.0}, false}));
  CHECK(
      blockInsertionFault(drawing, drawing.modelSpace(), reference, {{L"TAG2", L""}}) ==
      L"block Coil has no attribute TAG2");
  const Entity huge{BlockReference{block, {}, 1e308}};
  CHECK(blockInsertionFault(drawing, drawing.modelSpace(), huge, {}));
}

TEST_CASE("a template comes in whole, in its order and with new handles") {
  DrawingDatabase source;
  fillWithEverything(source);
  source.setVariable(L"TILEMODE", 1);
  const std::string sourceBefore = drawingToJson(source);
  DrawingDatabase target;
  const KvDbHandle own = target.addEntity(target.modelSpace(), makeLine(0, 0, 1, 1));
  target.undoLog().closeGroup();
  const std::string before = drawingToJson(target);

  const DrawingInsertion insertion{{100.0, 200.0, 0.0}, 2.0};
  REQUIRE_FALSE(drawingInsertionFault(target, target.modelSpace(), source, insertion));
  const std::vector<KvDbHandle> handles = insertDrawing(target, target.modelSpace(), source, insertion);
  CHECK(drawingToJson(source) == sourceBefore);
  CHECK(target.find(own)->next->handle == handles.front());
  const EntityNode* original = source.store().findBlock(source.modelSpace())->first;
  for (const KvDbHandle handle : handles) {
    const EntityNode* copy = target.find(handle);
    REQUIRE(copy != nullptr);
    CHECK(copy->value.kind() == original->value.kind());
    CHECK(copy->value.layer == original->value.layer);
    CHECK(copy->value.data == original->value.data);
    CHECK(copy->attributes.size() == original->attributes.size());
    original = original->next;
  }
  CHECK(original == nullptr);
  const auto& reference = shapeOf<BlockReference>(target, handles.back());
  CHECK(reference.position == KvPoint3d{200.0, 320.0, 0.0});
  CHECK(reference.scale == -4.0);
  CHECK(target.store().findBlock(reference.block)->name == L"Starter");
  CHECK(target.store().findBlock(L"Coil")->entityCount == 2);
  CHECK(target.store().findLayer(L"Wires 2.5")->wireSettings->size() == 4);
  REQUIRE(target.undoLog().undo(1) == 0);
  CHECK(drawingToJson(target) == before);
}

TEST_CASE("what the target has defined already holds against the template") {
  DrawingDatabase source;
  fillWithEverything(source);
  DrawingDatabase target;
  target.putLayer({L"wires 2.5", {9, 9, 9}});
  const KvDbHandle starter = target.addBlock(L"STARTER", {});
  const std::vector<KvDbHandle> handles = insertDrawing(target, target.modelSpace(), source, {});
  CHECK(shapeOf<BlockReference>(target, handles.back()).block == starter);
  CHECK(target.store().findBlock(starter)->entityCount == 0);
  CHECK(target.store().findBlock(L"Coil") == nullptr); // only the source's own Starter needs it
  CHECK(target.store().findLayer(L"Wires 2.5")->colour == Colour{9, 9, 9});
  CHECK(target.store().layers().size() == 2);
}

TEST_CASE("layers can be renamed on the way and a drawing can come in as a block") {
  DrawingDatabase source;
  fillWithEverything(source);
  DrawingDatabase target;
  DrawingInsertion insertion;
  insertion.form = InsertionForm::asBlock;
  insertion.blockName = L"Template";
  insertion.layer = [](const std::wstring& layer) { return layer == L"Wires 2.5" ? L"Wires 4" : layer; };
  REQUIRE_FALSE(drawingInsertionFault(target, target.paperSpace(), source, insertion));
  const std::vector<KvDbHandle> handles = insertDrawing(target, target.paperSpace(), source, insertion);
  REQUIRE(handles.size() == 1);
  CHECK(target.store().findBlock(L"Template")->entityCount == 5);
  CHECK(target.store().findLayer(L"Wires 2.5") == nullptr);
  CHECK(target.store().findLayer(L"Wires 4")->wireSettings.has_value());
  CHECK(drawingFromJson(drawingToJson(target), L"again").drawing != nullptr);

  const auto faultWith = [&](const DrawingInsertion& other) {
    return drawingInsertionFault(target, target.modelSpace(), source, other);
  };
  CHECK(faultWith(insertion)); // the name is taken now
  insertion.blockName = L"coil";
  CHECK(faultWith(insertion) == L"the drawing itself contains a block coil");
  CHECK(faultWith({{}, 0.0}) == L"the scale must not be 0");
  CHECK(faultWith({{}, 1e308}));
  CHECK(drawingInsertionFault(source, source.modelSpace(), source, {}));
  CHECK(drawingInsertionFault(target, target.store().findBlock(L"Coil")->handle, source, {}));
  insertion = {};
  insertion.layer = [](const std::wstring& /*layer*/) { return L""; };
  CHECK(faultWith(insertion));
}
