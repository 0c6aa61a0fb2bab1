#include "drawing_fixtures.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/drawing/insertion.h"
#include "tests/support/golden.h"
#include "tests/support/temporary_folder.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

#include <filesystem>
#include <iterator>
#include <string>

using namespace simhost;
using namespace simhost::testing;

namespace {

std::string replaced(std::string text, std::string_view from, std::string_view to) {
  const std::size_t place = text.find(from);
  REQUIRE_MESSAGE(place != std::string::npos, std::string(from));
  return text.replace(place, from.size(), to);
}

std::string fullDrawing() {
  DrawingDatabase drawing;
  fillWithEverything(drawing);
  return drawingToJson(drawing);
}

} // namespace

TEST_CASE("a drawing reads back as it was written, handles and order included") {
  DrawingDatabase drawing;
  fillWithEverything(drawing);
  drawing.eraseEntity(drawing.store().findBlock(drawing.modelSpace())->first->handle);
  const std::string json = drawingToJson(drawing);
  const LoadedDrawing loaded = drawingFromJson(json, L"drawing");
  REQUIRE_MESSAGE(loaded.drawing != nullptr, brenvolt::toUtf8(loaded.error));
  CHECK(drawingToJson(*loaded.drawing) == json);
  CHECK(loaded.drawing->undoLog().undoCount() == 0);
  CHECK_FALSE(loaded.drawing->undoLog().isOff());
  const EntityNode* copy = loaded.drawing->store().findBlock(drawing.modelSpace())->first;
  const EntityNode* original = drawing.store().findBlock(drawing.modelSpace())->first;
  for (; original != nullptr; original = original->next, copy = copy->next) {
    REQUIRE(copy != nullptr);
    CHECK(copy->handle == original->handle);
    CHECK((copy->value == original->value));
    CHECK(copy->attributes == original->attributes);
  }
  CHECK(copy == nullptr);
  CHECK(
      loaded.drawing->addEntity(drawing.modelSpace(), makeLine(0, 0, 1, 1)) == drawing.store().nextHandle());
}

TEST_CASE("a damaged file is told with its place and reason") {
  const std::string good = fullDrawing();
  const struct {
    std::string from;
    std::string to;
    std::string message;
  } rows[] = {
      {"\"brenvolt-drawing\"", "\"x\"", "f: drawing: not a drawing file"},
      {"\"version\":1", "\"version\":2", "f: drawing: the version of the file is not supported"},
      {"\"version\":1,", "\"version\":1,\"extra\":1,", "f: drawing: the field extra is unknown"},
      {"\"nextHandle\":\"", "\"nextHandle\":\"FFFFFFFF", "f: drawing: the field nextHandle is too large"},
      {"\"blocks\":[", "\"blocks\":[[", "f: line 34: this is not JSON text"},
      {"\"radius\":4", "\"radius\":1e999", "f: a number is too large"},
      {"\"radius\":4", "\"radius\":0", "f: block \"Coil\", entity 5: the radius must be above 0"},
      {"\"radius\":4", "\"radius\":\"4\"", "f: block \"Coil\", entity 5: the field radius must be a number"},
      {"\"radius\":4", "\"r\":4", "f: block \"Coil\", entity 5: the field radius is missing"},
      {"\"handle\":\"5\"", "\"handle\":\"7\"", "f: block \"Coil\", entity 7: the handle is used twice"},
      {"\"handle\":\"5\"", "\"handle\":\"\"",
       "f: block \"Coil\", entity number 1: the field handle must be a hexadecimal number"},
      {"\"handle\":\"5\"", "\"handle\":\"FFFF\"",
       "f: block \"Coil\", entity FFFF: the handle is not below nextHandle"},
      {"\"kind\":\"circle\"", "\"kind\":\"ball\"", "f: block \"Coil\", entity 5: the kind is unknown"},
      {"\"block\":\"Coil\"", "\"block\":\"Starter\"",
       "f: block \"Starter\", entity 8: a block can only contain references to blocks that were defined "
       "before it"},
      {"\"block\":\"Coil\"", "\"block\":\"Spool\"",
       "f: block \"Starter\", entity 8: the block \"Spool\" is not defined"},
      {"\"layer\":\"Wires 2.5\"", "\"layer\":\"W\"",
       "f: block \"*Model_Space\", entity A: the layer \"W\" is not defined"},
      {"[290,1]", "[291,1]",
       "f: layer \"Wires 2.5\": a wire setting has codes 1 to 4 for a text, 90 or 290 for an integer"},
      {"\"name\":\"Empty wire\"", "\"name\":\"WIRES 2.5\"", "f: layer \"WIRES 2.5\": it is defined twice"},
      {"\"name\":\"*Paper_Space\"", "\"name\":\"*Model_Space\"",
       "f: block \"*Model_Space\": this space is unknown"},
      {"\"TILEMODE\":0", "\"TILEMODE\":null", "f: variable \"TILEMODE\": a text or a number is expected"},
      {"\"kind\":\"attribute\"", "\"kind\":\"text\"",
       "f: block \"*Model_Space\", entity D, attribute E: the field tag is unknown"},
  };
  for (const auto& row : rows) {
    CAPTURE(row.to);
    const LoadedDrawing loaded = drawingFromJson(replaced(good, row.from, row.to), L"f");
    CHECK(loaded.drawing == nullptr);
    CHECK(brenvolt::toUtf8(loaded.error) == row.message);
  }
}

TEST_CASE("circuits and their marks are saved, and a copy is a circuit of its own") {
  DrawingDatabase source;
  source.putCircuit(L"4", {{L"type", L"Direct"}, {L"codes", L"DISC=1;"}});
  source.setStamp(Provenance{L"4", L"DISC"});
  source.addEntity(source.modelSpace(), makeLine(0, 0, 1, 0));
  source.addEntity(source.modelSpace(), makeLine(1, 0, 2, 0));
  source.setStamp({});
  source.addEntity(source.modelSpace(), makeLine(2, 0, 3, 0));
  const std::string bytes = drawingToJson(source);
  CHECK(bytes.find("{\"id\":\"4\",\"type\":\"Direct\",\"codes\":\"DISC=1;\"}") != std::string::npos);
  CHECK(bytes.find("\"data\":{\"CIRCUIT\":[\"4\",\"DISC\",\"2\"]}") != std::string::npos);
  const LoadedDrawing loaded = drawingFromJson(bytes, L"a");
  REQUIRE_MESSAGE(loaded.drawing != nullptr, std::string(loaded.error.begin(), loaded.error.end()));
  CHECK(drawingToJson(*loaded.drawing) == bytes);

  DrawingDatabase target;
  target.addEntity(target.modelSpace(), makeLine(0, 0, 9, 9));
  for (int copy = 0; copy < 2; ++copy)
    static_cast<void>(insertDrawing(target, target.modelSpace(), source, {}));
  std::vector<std::wstring> marks;
  const EntityNode* entity = target.store().findBlock(target.modelSpace())->first;
  for (; entity != nullptr; entity = entity->next) {
    const auto origin = provenanceOf(entity->value);
    marks.push_back(origin ? origin->circuit + origin->code + std::to_wstring(origin->order) : L"-");
  }
  const std::vector<std::wstring> expected = {L"-", L"5DISC1", L"5DISC2", L"-", L"8DISC1", L"8DISC2", L"-"};
  CHECK(marks == expected);
  CHECK(target.store().circuits().size() == 2);
}

TEST_CASE("a file that was cut off or has a byte changed never harms") {
  const std::string good = fullDrawing();
  for (std::size_t length = 0; length + 2 < good.size(); length += 29) {
    CHECK(drawingFromJson(good.substr(0, length), L"f").drawing == nullptr);
  }
  for (std::size_t place = 0; place < good.size(); place += 13) {
    std::string bad = good;
    bad[place] = static_cast<char>(bad[place] ^ 0x15);
    const LoadedDrawing loaded = drawingFromJson(bad, L"f");
    CHECK((loaded.drawing == nullptr) != loaded.error.empty());
    // What is still a drawing must be able to go through a file again.
    if (loaded.drawing == nullptr) continue;
    const std::string again = drawingToJson(*loaded.drawing);
    CHECK(drawingFromJson(again, L"f").drawing != nullptr);
  }
}

TEST_CASE("saving replaces a file whole or leaves it as it was") {
  const brenvolt::test::TemporaryFolder folder;
  const auto wide = [&folder](const char* name) { return brenvolt::fromUtf8((folder / name).string()); };
  DrawingDatabase drawing;
  REQUIRE_FALSE(saveDrawing(drawing, wide("a.json")));
  fillWithEverything(drawing);
  REQUIRE_FALSE(saveDrawing(drawing, wide("a.json")));
  CHECK(brenvolt::test::bytesOf(folder / "a.json") == drawingToJson(drawing));
  CHECK(loadDrawing(wide("a.json")).drawing != nullptr);
  CHECK(saveDrawing(drawing, wide("none/a.json")));
  std::filesystem::create_directories(folder / "b.json/kept");
  CHECK(saveDrawing(drawing, wide("b.json")));
  CHECK(std::distance(std::filesystem::directory_iterator(folder.path()), {}) == 2);
  for (const char* name : {"none.json", ""}) {
    const LoadedDrawing missing = loadDrawing(wide(name));
    CHECK(missing.drawing == nullptr);
    CHECK(missing.error == wide(name) + L": cannot read the file");
  }
}
