// One sheet as an SVG, as the window paints it and on a page: three sinks, one picture.
#include "circuits/export/paper.h"
#include "gui_fixture.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/drawing/svg.h"
#include "simhost/gui/painter_sink.h"
#include "text/encoding.h"

#include <QPainter>
#include <QSvgRenderer>

#include <doctest/doctest.h>

#include <array>
#include <cstdlib>
#include <map>

using namespace simhost;

namespace {

/// Of an SVG of a sheet with 240 units; a fine pen of 0.25 mm then has the 1.2 pixels of a line on a screen.
constexpr double pixelsPerUnit = 4.8;
constexpr int margin = 24;

/// A sheet with one entity of each kind, each in a place of its own; `without`: the one that is left out.
std::unique_ptr<DrawingDatabase> sheet(int without = -1) {
  auto drawing = std::make_unique<DrawingDatabase>();
  drawing->setVariable(L"PAPER_WIDTH", 240.0);
  drawing->setVariable(L"PAPER_HEIGHT", 100.0);
  drawing->putLayer({L"DASHED", {0, 90, 0}, LineType::dashed});
  drawing->putLayer({L"PALE", {255, 255, 0}, LineType::dashDot});
  const KvDbHandle space = drawing->modelSpace();
  drawing->addEntity(space, {Polyline{{{0, 0, 0}, {240, 0, 0}, {240, 100, 0}, {0, 100, 0}}, true, 0.0}});
  const std::vector<Entity> entities = {
      {Line{{10, 10, 0}, {45, 30, 0}}},
      {Line{{60, 10, 0}, {95, 30, 0}}, L"DASHED"},
      {Line{{110, 10, 0}, {145, 30, 0}}, L"PALE"},
      {Polyline{{{160, 10, 0}, {190, 10, 0}, {190, 30, 0}}, true, 2.0}},
      {Circle{{25, 50, 0}, 12.0}},
      {Arc{{75, 50, 0}, 12.0, 300.0, 200.0}},
      {Arc{{125, 50, 0}, 12.0, 20.0, 90.0}},
      {Text{{160, 45, 0}, L"LEFT\tM-1", 4.0}},
      {Text{{45, 80, 0}, L"RIGHT <&>", 5.0, 0.0, Justification::right}},
      {Text{{75, 80, 0}, L"MIDDLE", 5.0, 0.0, Justification::middle}},
      {Text{{125, 84, 0}, L"TURNED", 5.0, 60.0, Justification::centre}},
  };
  for (int index = 0; index < static_cast<int>(entities.size()); ++index)
    if (index != without) drawing->addEntity(space, entities[static_cast<std::size_t>(index)]);
  return drawing;
}
constexpr int entityCount = 11;

QImage emptyPicture() {
  QImage picture(1200, 528, QImage::Format_RGB32);
  picture.fill(Qt::white);
  return picture;
}

QImage asSvg(const DrawingDatabase& drawing) {
  QSvgRenderer renderer(QByteArray::fromStdString(renderSvg(drawing, drawing.currentSpace()).svg));
  REQUIRE(renderer.isValid());
  QImage picture = emptyPicture();
  QPainter painter(&picture);
  renderer.render(&painter);
  return picture;
}

QImage asWindow(const DrawingDatabase& drawing) {
  QImage picture = emptyPicture();
  QPainter painter(&picture);
  PainterSink sink(painter);
  PicturePainter walk(sink, {pixelsPerUnit, {0, 100, 0}, margin, margin}, {Paper::light, Detail::screen});
  const auto items = displayList(drawing, drawing.currentSpace()).value_or(std::vector<DisplayItem>());
  for (const DisplayItem& item : items)
    walk.paint(item, boxOf(item.shape));
  return picture;
}

/// Null without the program that shows pages.
QImage asPage(const DrawingDatabase& drawing) {
  const GuiFolder folder;
  const std::string file = folder.path("sheet.json");
  REQUIRE_FALSE(saveDrawing(drawing, brenvolt::fromUtf8(file)));
  REQUIRE_FALSE(circuits::writePdf(folder.path("a.pdf"), {{file, L"1", L"", {}}}, {}));
  const std::string dots = std::to_string(pixelsPerUnit * 25.4);
  const std::string show = "pdftoppm -png -singlefile -r " + dots + " ";
  if (std::system((show + folder.path("a.pdf") + " " + folder.path("a") + " 2>/dev/null").c_str()) != 0)
    return {};
  QImage picture = emptyPicture();
  QPainter(&picture).drawImage(margin, margin, QImage(QString::fromStdString(folder.path("a.png"))));
  return picture;
}

/// Of the twelve places of the sheet the one where the pictures differ most: the ink of small fields that only one of
/// them has, as a share of the place's ink.
double difference(const QImage& one, const QImage& other) {
  constexpr int field = 4;
  const QSize fields(1200 / field, 528 / field);
  const QImage left = one.scaled(fields, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  const QImage right = other.scaled(fields, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  std::map<std::pair<int, int>, std::array<double, 2>> places; // ink, and what differs
  for (int y = 0; y < fields.height(); ++y)
    for (int x = 0; x < fields.width(); ++x) {
      const double across = (x * field - margin) / pixelsPerUnit;
      const double down = (y * field - margin) / pixelsPerUnit;
      if (across < 2.0 || across > 238.0 || down < 2.0 || down > 97.0) continue; // the frame fills the page
      const int white = 255;
      const int inkLeft = white - qGray(left.pixel(x, y));
      const int inkRight = white - qGray(right.pixel(x, y));
      auto& place = places[{std::min(static_cast<int>(across / 50.0), 3), static_cast<int>(down / 33.4)}];
      place[0] += std::max(inkLeft, inkRight);
      place[1] += std::abs(inkLeft - inkRight);
    }
  double largest = 0.0;
  for (const auto& [at, place] : places)
    if (place[0] > 0.0) largest = std::max(largest, place[1] / place[0]);
  return largest;
}

} // namespace

TEST_CASE("the same strokes and texts reach window, SVG and page") {
  needApplication();
  constexpr double alike = 0.5; // letters of other programs are a little darker or lighter
  const QImage svg = asSvg(*sheet());
  const QImage window = asWindow(*sheet());
  const QImage page = asPage(*sheet());
  CHECK(difference(svg, window) < alike);
  if (page.isNull())
    MESSAGE("skipped: pdftoppm is missing");
  else
    CHECK(difference(svg, page) < alike);
  // Each of them would be missed.
  for (int without = 0; without < entityCount; ++without) {
    CAPTURE(without);
    CHECK(difference(svg, asWindow(*sheet(without))) > alike);
  }
}
