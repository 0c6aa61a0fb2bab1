#include "drawing_fixtures.h"

#include "simhost/drawing/insertion.h"

namespace simhost::testing {
namespace {

Text textAt(double x, double y, std::wstring_view text) {
  return Text{{x, y, 0.0}, std::wstring(text), 2.5};
}

} // namespace

Entity makeLine(double fromX, double fromY, double toX, double toY) {
  return {Line{{fromX, fromY, 0.0}, {toX, toY, 0.0}}};
}

Entity makeText(double x, double y, std::wstring_view text) {
  return {textAt(x, y, text)};
}

Entity makeReference(KvDbHandle block, double x, double y) {
  return {BlockReference{block, {x, y, 0.0}}};
}

Entity makeAttribute(std::wstring_view tag, std::wstring_view text) {
  return {Attribute{std::wstring(tag), textAt(0.0, 0.0, text)}};
}

void fillWithEverything(DrawingDatabase& drawing) {
  drawing.putLayer(
      {L"Wires 2.5",
       {192, 0, 0},
       LineType::dashed,
       std::vector<WireSetting>{{1, L"BLK"}, {90, 100000}, {290, 1}, {4, L""}}});
  drawing.putLayer({L"Empty wire", {0, 0, 192}, LineType::dotted, std::vector<WireSetting>{}});
  const KvDbHandle coil = drawing.addBlock(L"Coil", {1.0, 2.0, 0.0});
  drawing.addEntity(coil, {Circle{{5.0, 5.0, 0.0}, 4.0}});
  drawing.addEntity(coil, {AttributeDefinition{L"TAG1", L"Which \"coil\"?", textAt(0.0, 6.0, L"K?"), false}});
  const KvDbHandle starter = drawing.addBlock(L"Starter", {});
  drawing.addEntity(starter, makeReference(coil, 10.0, 0.0));

  const KvDbHandle space = drawing.modelSpace();
  drawing.addEntity(space, makeLine(0.1, 0.2, 1.0 / 3.0, 1e21));
  drawing.addEntity(
      space, {Polyline{{{0.0, 0.0, 0.0}, {30.0, 0.0, 0.0}, {30.0, 20.0, 1.5}}, true, 0.5}, L"Wires 2.5",
              Colour{1, 2, 255}});
  drawing.addEntity(space, {Arc{{10.0, 10.0, 0.0}, 5.0, 30.0, 300.0}});
  Text note = textAt(3.0, 4.0, L"\u00d84 \u2013 \"1\\2\"\t\u65e5");
  note.rotationDegrees = 90.0;
  note.justification = Justification::middle;
  drawing.addEntity(space, {note});
  Entity placed{BlockReference{starter, {50.0, 60.0, 0.0}, -2.0, 45.0}};
  setData(placed, L"ORL_QN_BV_CIRCPARAMS", {L"AC;15;HP", L""});
  setData(placed, L"OTHER", {L"x"});
  const KvDbHandle reference = drawing.addEntity(space, placed);
  drawing.addEntity(reference, makeAttribute(L"TAG1", L"K1"));
  Entity hidden{Attribute{L"MFG", textAt(1.0, 1.0, L""), false}};
  drawing.addEntity(reference, hidden);
  drawing.addEntity(drawing.paperSpace(), makeText(0.0, 0.0, L"sheet 1"));
  drawing.setVariable(L"SYMSCALE", 2.0);
  drawing.setVariable(L"project", L"Pump station");
  drawing.setVariable(L"TILEMODE", 0);
}

void drawMotorBranch(DrawingDatabase& drawing) {
  drawing.putLayer({L"Phases", {192, 0, 0}, LineType::continuous, std::vector<WireSetting>{}});
  drawing.putLayer({L"Earth", {0, 128, 0}, LineType::dashDot, std::vector<WireSetting>{}});
  drawing.putLayer({L"Frame", {96, 96, 96}, LineType::dashed});
  drawing.putLayer({L"Notes", {255, 255, 0}});
  const KvDbHandle pole = drawing.addBlock(L"Pole", {0.0, 10.0, 0.0});
  drawing.addEntity(pole, makeLine(0, 10, 0, 7));
  drawing.addEntity(pole, makeLine(0, 3, -2, 7));
  drawing.addEntity(pole, makeLine(0, 3, 0, 0));
  drawing.addEntity(pole, {Arc{{0.0, 7.5, 0.0}, 0.5, 270.0, 90.0}});
  const KvDbHandle contactor = drawing.addBlock(L"Contactor", {});
  for (const double x : {0.0, 8.0, 16.0}) {
    drawing.addEntity(contactor, makeReference(pole, x, 0.0));
  }
  drawing.addEntity(contactor, {Line{{-1.0, -5.0, 0.0}, {15.0, -5.0, 0.0}}, L"Frame"});
  Text tag = textAt(-4.0, -5.0, L"K?");
  tag.justification = Justification::right;
  drawing.addEntity(contactor, {AttributeDefinition{L"TAG1", L"Tag", tag}});
  drawing.addEntity(contactor, {AttributeDefinition{L"MFG", L"Maker", textAt(0, 0, L"unseen"), false}});

  const KvDbHandle space = drawing.modelSpace();
  for (const double x : {20.0, 28.0, 36.0}) {
    drawing.addEntity(space, {Line{{x, 80.0, 0.0}, {x, 60.0, 0.0}}, L"Phases"});
    drawing.addEntity(space, {Line{{x, 50.0, 0.0}, {28.0 + (x - 28.0) / 2.0, 29.0, 0.0}}, L"Phases"});
  }
  insertBlock(drawing, space, makeReference(contactor, 20.0, 60.0), {{L"TAG1", L"-K1"}});
  drawing.addEntity(space, {Polyline{{{44.0, 80.0, 0.0}, {44.0, 20.0, 0.0}, {36.0, 20.0, 0.0}}}, L"Earth"});
  drawing.addEntity(space, {Circle{{28.0, 20.0, 0.0}, 8.0}});
  Text motor = textAt(28.0, 20.0, L"M 3~");
  motor.justification = Justification::middle;
  motor.height = 4.0;
  drawing.addEntity(space, {motor});
  Text wire{{18.5, 62.0, 0.0}, L"4 mm\u00b2 <Cu>", 2.0, 90.0};
  drawing.addEntity(space, {wire, L"Notes"});
  drawing.addEntity(
      space, {Polyline{{{5.0, 8.0, 0.0}, {52.0, 8.0, 0.0}, {52.0, 84.0, 0.0}, {5.0, 84.0, 0.0}}, true, 0.4}});
  Entity turned{BlockReference{contactor, {70.0, 70.0, 0.0}, 1.5, 30.0}};
  insertBlock(drawing, space, turned, {{L"tag1", L"-K2"}});
  drawing.addEntity(space, {AttributeDefinition{L"X1TERM01", L"", textAt(60.0, 30.0, L"default")}});
}

} // namespace simhost::testing
