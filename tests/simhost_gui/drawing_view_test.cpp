// The view of a drawing without a window: positions, painting, and picking.
#include "gui_fixture.h"
#include "simhost/drawing/distance.h"
#include "simhost/gui/picture_cache.h"

#include <doctest/doctest.h>

#include <cmath>

using namespace simhost;

namespace {

/// Lines, circles, arcs and texts, spread over 400 by 300 units on two layers.
void fill(DrawingDatabase& drawing) {
  drawing.putLayer({L"WIRES", {200, 0, 0}, LineType::dashed});
  const KvDbHandle space = drawing.modelSpace();
  for (int index = 0; index < 60; ++index) {
    const double x = 37.0 * index - 400.0 * std::floor(37.0 * index / 400.0);
    const double y = 5.0 * index;
    drawing.addEntity(space, {Line{{x, y, 0.0}, {x + 30.0, y + 11.0, 0.0}}, L"WIRES"});
    drawing.addEntity(space, {Circle{{400.0 - x, y, 0.0}, 4.0}});
    drawing.addEntity(space, {Arc{{x, 300.0 - y, 0.0}, 9.0, 20.0, 250.0}});
    drawing.addEntity(space, {Text{{x, 300.0 - y, 0.0}, L"K" + std::to_wstring(index), 6.0, 10.0 * index}});
  }
}

/// The share of pixels that differ by more than a shade.
double difference(const QImage& one, const QImage& other) {
  REQUIRE(one.size() == other.size());
  constexpr int shade = 24;
  int differing = 0;
  for (int y = 0; y < one.height(); ++y)
    for (int x = 0; x < one.width(); ++x)
      if (std::abs(qGray(one.pixel(x, y)) - qGray(other.pixel(x, y))) > shade) ++differing;
  return static_cast<double>(differing) / (one.width() * one.height());
}

int inkedPixels(const QImage& image) {
  int inked = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (qGray(image.pixel(x, y)) < 200) ++inked;
  return inked;
}

} // namespace

TEST_CASE("zooming keeps the place under the pointer, and extents fill the view") {
  const ViewTransform view{2.5, 100.0, 400.0};
  const QPointF pointer(333.0, 120.0);
  const KvPoint3d before = view.toDrawing(pointer);
  for (const double factor : {1.2, 0.01, 1e9}) {
    const KvPoint3d after = view.zoomed(factor, pointer).toDrawing(pointer);
    CHECK(after.x == doctest::Approx(before.x));
    CHECK(after.y == doctest::Approx(before.y));
  }
  CHECK(view.zoomed(1e9, pointer).scale == ViewTransform::largestScale);

  Box box;
  box.include(KvPoint3d{-50.0, 10.0, 0.0});
  box.include(KvPoint3d{150.0, 30.0, 0.0});
  const ViewTransform fitted = ViewTransform::fitting(box, {848, 448});
  CHECK(fitted.scale == doctest::Approx(4.0));
  CHECK(fitted.toScreen({-50.0, 20.0, 0.0}).x() == doctest::Approx(24.0));
  CHECK(fitted.toScreen({50.0, 20.0, 0.0}).y() == doctest::Approx(224.0));
  CHECK(ViewTransform::fitting(Box(), {100, 100}).scale == 1.0);
}

TEST_CASE("a picture that was panned is the one painted there at once") {
  needApplication();
  DrawingDatabase drawing;
  fill(drawing);
  Scene scene;
  REQUIRE(scene.load(drawing, drawing.modelSpace()));
  const QSize size(640, 480);
  PictureCache panned(scene);
  panned.resize(size);
  panned.setView(ViewTransform::fitting(scene.extents(), size));
  panned.finish();
  for (const QPoint step :
       {QPoint(31, 0), QPoint(-7, 90), QPoint(0, -33), QPoint(-260, 15), QPoint(3, 500)}) {
    panned.pan(step);
    panned.pan({1, -2}); // while the strip of the first one is still missing
    panned.finish();
    PictureCache fresh(scene);
    fresh.resize(size);
    fresh.setView(panned.view());
    fresh.finish();
    CHECK(difference(panned.image(), fresh.image()) < 0.0005);
  }
}

TEST_CASE("a picture painted piece by piece is the one painted at once") {
  needApplication();
  DrawingDatabase drawing;
  fill(drawing);
  Scene scene;
  REQUIRE(scene.load(drawing, drawing.modelSpace()));
  PictureCache whole(scene);
  PictureCache pieces(scene);
  for (PictureCache* picture : {&whole, &pieces}) {
    picture->resize({900, 700});
    picture->setView(ViewTransform::fitting(scene.extents(), {900, 700}));
  }
  whole.finish();
  int turns = 1;
  while (!pieces.paint(std::chrono::milliseconds(0)))
    ++turns;
  CHECK(turns > 5);
  CHECK(difference(whole.image(), pieces.image()) < 0.0005);
  CHECK(inkedPixels(whole.image()) > 3000);
  PictureCache dense(scene); // of a screen with twice the pixels: lines as wide as on the other one
  dense.resize({1800, 1400}, 2.0);
  dense.setView(ViewTransform::fitting(scene.extents(), {1800, 1400}));
  dense.finish();
  CHECK(inkedPixels(dense.image()) > 3 * inkedPixels(whole.image()));

  scene.setHiddenLayers({L"WIRES"});
  pieces.invalidate();
  pieces.finish();
  CHECK(inkedPixels(pieces.image()) < inkedPixels(whole.image()));
}

TEST_CASE("grid lines stand on round numbers and neither too near nor too far") {
  for (double scale = 1e-5; scale < 1e5; scale *= 1.37) {
    const double step = gridStep(scale);
    CHECK(step * scale >= 13.99);
    CHECK(step * scale <= 36.0);
    const double mantissa = step / std::pow(10.0, std::floor(std::log10(step) + 1e-9));
    const bool isRound =
        std::abs(mantissa - 1.0) < 1e-6 || std::abs(mantissa - 2.0) < 1e-6 || std::abs(mantissa - 5.0) < 1e-6;
    CHECK(isRound);
  }
}

TEST_CASE("the distance to a shape is that to what is drawn of it") {
  const Polyline square{{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}}, true, 0.0};
  Polyline open = square;
  open.isClosed = false;
  Polyline wide = square;
  wide.width = 4.0;
  struct Row {
    const char* name;
    Shape shape;
    KvPoint3d point;
    double distance;
  };
  const Row rows[] = {
      {"beside a line", Line{{0, 0, 0}, {10, 0, 0}}, {5, 3, 0}, 3.0},
      {"behind its end", Line{{0, 0, 0}, {10, 0, 0}}, {13, 4, 0}, 5.0},
      {"a line without length", Line{{1, 1, 0}, {1, 1, 0}}, {4, 5, 0}, 5.0},
      {"the closing side", square, {-2, 5, 0}, 2.0},
      {"no closing side", open, {-2, 5, 0}, std::hypot(2.0, 5.0)},
      {"on a wide line", wide, {5, 1.5, 0}, 0.0},
      {"within a circle", Circle{{0, 0, 0}, 10}, {3, 0, 0}, 7.0},
      {"on an arc", Arc{{0, 0, 0}, 10, 350, 90}, {12, 0, 0}, 2.0},
      {"in the gap of an arc", Arc{{0, 0, 0}, 10, 0, 90}, {-10, 0, 0}, std::hypot(10.0, 10.0)},
      {"in a text", Text{{0, 0, 0}, L"MOTOR", 5.0}, {8, 2, 0}, 0.0},
      {"below a turned text", Text{{0, 0, 0}, L"MOTOR", 4.0, 90.0}, {4, 5, 0}, 3.0},
  };
  for (const Row& row : rows) {
    CAPTURE(row.name);
    CHECK(distanceTo(row.shape, row.point) == doctest::Approx(row.distance));
  }
}

TEST_CASE("of two entities the nearer one is meant, of two equal ones the later, of a hidden one never") {
  DrawingDatabase drawing;
  const KvDbHandle space = drawing.modelSpace();
  drawing.putLayer({L"HIDDEN"});
  const KvDbHandle low = drawing.addEntity(space, {Line{{0, 0, 0}, {10, 0, 0}}});
  const KvDbHandle high = drawing.addEntity(space, {Line{{0, 2, 0}, {10, 2, 0}}});
  const KvDbHandle again = drawing.addEntity(space, {Line{{0, 2, 0}, {10, 2, 0}}});
  drawing.addEntity(space, {Line{{0, 1, 0}, {10, 1, 0}}, L"HIDDEN"});
  Scene scene;
  REQUIRE(scene.load(drawing, space));
  scene.setHiddenLayers({L"HIDDEN"});
  CHECK(scene.entityAt({5, 0.8, 0}, 3.0) == low);
  CHECK(scene.entityAt({5, 1.4, 0}, 3.0) == again);
  CHECK(scene.entityAt({5, 1.4, 0}, 3.0) != high);
  CHECK_FALSE(scene.entityAt({5, 9.0, 0}, 3.0));
}
