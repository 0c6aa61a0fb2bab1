#include "drawing_fixtures.h"
#include "simhost/drawing/svg.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

#include <fstream>
#include <sstream>
#include <string>

using namespace simhost;
using namespace simhost::testing;

TEST_CASE("the picture of a motor branch is the golden one") {
  DrawingDatabase drawing;
  drawMotorBranch(drawing);
  const SvgPicture picture = renderSvg(drawing, drawing.modelSpace());
  REQUIRE(picture.error.empty());
  const std::string golden = "tests/simhost_drawing/golden/motor_branch.svg";
  std::ostringstream expected;
  expected << std::ifstream(golden, std::ios::binary).rdbuf();
  const bool isSame = picture.svg == expected.str();
  if (!isSame) std::ofstream(golden + ".actual", std::ios::binary) << picture.svg;
  CHECK_MESSAGE(isSame, "compare with ", golden, ".actual; to accept it, move it over the golden file");
}

TEST_CASE("an empty space is an empty sheet and damaged texts cannot break the picture") {
  DrawingDatabase drawing;
  CHECK(renderSvg(drawing, drawing.paperSpace()).svg.find("</svg>") != std::string::npos);
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
