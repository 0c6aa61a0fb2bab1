#include "drawing_fixtures.h"
#include "simhost/drawing/box_index.h"
#include "simhost/drawing/display_list.h"
#include "simhost/drawing/svg.h"
#include "tests/support/golden.h"

#include <doctest/doctest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

using namespace simhost;
using namespace simhost::testing;

TEST_CASE("the picture of a motor branch is the golden one") {
  DrawingDatabase drawing;
  drawMotorBranch(drawing);
  const SvgPicture picture = renderSvg(drawing, drawing.modelSpace());
  REQUIRE(picture.error.empty());
  CHECK(brenvolt::test::matchesGolden("tests/simhost_drawing/golden/motor_branch.svg", picture.svg));
}

TEST_CASE("an empty space is an empty sheet; tiny extents and damaged texts break no picture") {
  DrawingDatabase drawing;
  CHECK(renderSvg(drawing, drawing.paperSpace()).svg.find("</svg>") != std::string::npos);
  drawing.addEntity(drawing.paperSpace(), makeLine(0, 0, 1e-320, 0));
  const std::string tiny = renderSvg(drawing, drawing.paperSpace()).svg;
  CHECK_MESSAGE(tiny.find("\"\"") == std::string::npos, tiny);
  drawing.addEntity(drawing.modelSpace(), makeText(0, 0, L"a\x01<b>&\n"));
  CHECK(renderSvg(drawing, drawing.modelSpace()).svg.find(">a &lt;b&gt;&amp; </text>") != std::string::npos);
}

TEST_CASE("a picture that cannot be drawn is told, not tried for ever") {
  DrawingDatabase drawing;
  KvDbHandle block = drawing.addBlock(L"B0", {});
  drawing.addEntity(block, makeLine(0, 0, 1, 1));
  for (int level = 1; level <= 60; ++level) {
    const KvDbHandle outer = drawing.addBlock(L"B" + std::to_wstring(level), {});
    drawing.addEntity(outer, makeReference(block, 0, 0));
    drawing.addEntity(outer, makeReference(block, 1, 0));
    block = outer;
  }
  drawing.addEntity(drawing.modelSpace(), makeReference(block, 0, 0));
  CHECK(renderSvg(drawing, drawing.modelSpace()).error == L"the drawing has too many shapes for a picture");
  drawing.addEntity(drawing.paperSpace(), makeLine(-1e308, 0, 1e308, 0));
  CHECK(renderSvg(drawing, drawing.paperSpace()).error == L"the drawing is too large for a picture");
}

TEST_CASE("what a reference shows belongs to the reference, its attributes too") {
  DrawingDatabase drawing;
  fillWithEverything(drawing);
  const std::optional<std::vector<DisplayItem>> items = displayList(drawing, drawing.modelSpace());
  REQUIRE(items);
  for (const DisplayItem& item : *items) {
    const EntityNode* entity = drawing.find(item.entity);
    REQUIRE(entity != nullptr);
    CHECK(entity->owner == drawing.modelSpace());
    CHECK(item.layer < drawing.store().layers().size());
    CHECK(item.shape.index() <= static_cast<std::size_t>(EntityKind::text));
  }
}

TEST_CASE("the box index finds what a look at every box finds") {
  std::vector<Box> boxes;
  std::uint32_t seed = 1;
  const auto random = [&seed] { return static_cast<double>((seed = seed * 1664525U + 1013904223U) >> 16U); };
  for (int count = 0; count < 3000; ++count) {
    Box box;
    box.includeAround({random(), random(), 0.0}, random() / 200.0);
    boxes.push_back(box);
  }
  boxes[7] = Box();
  boxes[8].right = std::numeric_limits<double>::infinity();
  const BoxIndex index(boxes);
  for (const double reach : {10.0, 900.0, 20000.0, 70000.0}) {
    Box area;
    area.includeAround({random(), random(), 0.0}, reach);
    std::vector<std::uint32_t> expected;
    for (std::uint32_t number = 0; number < boxes.size(); ++number)
      if (number != 7 && number != 8 && boxes[number].meets(area)) expected.push_back(number);
    CHECK(index.meeting(area) == expected);
  }
  CHECK(BoxIndex().meeting(boxes[0]).empty());
}

TEST_CASE("every colour can be told from light and from dark paper") {
  const auto brightness = [](Colour colour) {
    return 0.299 * colour.red + 0.587 * colour.green + 0.114 * colour.blue;
  };
  for (const Colour colour :
       {Colour{0, 0, 0}, Colour{255, 255, 255}, Colour{0, 0, 255}, Colour{255, 255, 0}}) {
    CHECK(brightness(readable(colour, Paper::light)) < 111.0);
    CHECK(brightness(readable(colour, Paper::dark)) > 183.0);
  }
}
