// Nets found in drawings; the picture next to each case shows the expected result.
#include "circuits/netlist/netlist.h"
#include "circuits/netlist/squares.h"
#include "tests/circuits/plant.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <random>
#include <string>

using namespace circuits;
using circuits::testing::Plant;

namespace {

/// Each net as "number: pin pin | pin", conductors separated by "|", and the nets in the order of their texts.
std::string netsOf(const Netlist& list) {
  std::vector<std::string> texts;
  for (const Net& net : list.nets) {
    std::string text(net.number.begin(), net.number.end());
    text += ":";
    for (const std::size_t conductor : net.conductors) {
      if (conductor != net.conductors.front()) text += " |";
      for (const std::size_t pin : list.conductors[conductor].pins) {
        const std::wstring name = pinName(list, list.pins[pin]);
        text += " " + std::string(name.begin(), name.end());
      }
    }
    texts.push_back(text);
  }
  std::sort(texts.begin(), texts.end());
  std::string all;
  for (const std::string& text : texts)
    all += text + "\n";
  return all;
}

} // namespace

TEST_CASE("wires hang together where they touch, not where they cross, and a terminal is one net with two "
          "conductors") {
  Plant plant;
  // K1:2 -------+------- X1:1 ------- M1:T1
  //             |              K2:1 hangs below the tee
  //   ==========|==========    a wire that only crosses, from F1:1 to F2:1
  plant.symbol(L"K1", L"MS", {{L"X1TERM02", L"2", 0, 0}});
  plant.wire(0, 0, 40, 0);
  plant.terminal(L"X1", L"1", 40, 42, 0);
  plant.wire(42, 0, 80, 0);
  plant.symbol(L"M1", L"MO", {{L"X4TERM01", L"T1", 80, 0}});
  plant.wire(20, 0, 20, -30);
  plant.symbol(L"K2", L"MS", {{L"X4TERM01", L"1", 20, -30}});
  plant.wire(0, -15, 40, -15);
  plant.symbol(L"F1", L"FU", {{L"X4TERM01", L"1", 0, -15}});
  plant.symbol(L"F2", L"FU", {{L"X4TERM01", L"1", 40, -15}});
  plant.number(L"7", 10, 0);
  CHECK(netsOf(readNetlist(plant.drawing)) == "7: K1:2 K2:1 X1:1 | X1:1 M1:T1\n: F1:1 F2:1\n");

  SUBCASE("a dot on the crossing joins both") {
    plant.dot(20, -15);
    CHECK(netsOf(readNetlist(plant.drawing)) == "7: K1:2 F1:1 K2:1 X1:1 F2:1 | X1:1 M1:T1\n");
  }
  SUBCASE("a second number on the net is kept as a fault; a number beside wires says nothing") {
    plant.number(L"8", 60, 0);
    plant.number(L"9", 60, 5);
    const Netlist list = readNetlist(plant.drawing);
    CHECK(netsOf(list) == "7: K1:2 K2:1 X1:1 | X1:1 M1:T1\n: F1:1 F2:1\n");
    CHECK(list.nets.front().others == std::vector<std::wstring>{L"8"});
  }
  SUBCASE("lines on other layers are not wires") {
    plant.line(20, -15, 20, -30, L"FRAME");
    plant.drawing.eraseEntity(plant.wires[2]);
    CHECK(netsOf(readNetlist(plant.drawing)) == "7: K1:2 X1:1 | X1:1 M1:T1\n: F1:1 F2:1\n");
  }
}

TEST_CASE("symbols of one tag and place are one device, and the one that carries the part stands for it") {
  Plant plant;
  plant.symbol(L"1M", L"CR", {{L"X4TERM01", L"13", 0, 0}});
  plant.symbol(L"1M", L"MS", {{L"X4TERM01", L"1", 50, 0}}, {{L"CAT", L"MC-25"}, {L"MFG", L"Carrick"}});
  plant.symbol(L"1M", L"MS", {{L"X4TERM01", L"A1", 90, 0}}, {{L"RATING1", L"120 V"}});
  plant.symbol(L"1M", L"MS", {{L"X4TERM01", L"A1", 90, 9}}, {{L"LOC", L"PANEL 2"}});
  const Netlist list = readNetlist(plant.drawing);
  REQUIRE(list.devices.size() == 2);
  CHECK(list.devices[0].catalogue == L"MC-25");
  CHECK(list.devices[0].family == L"MS");
  CHECK(list.devices[0].symbols.size() == 3);
  CHECK(list.devices[1].location == L"PANEL 2");
  REQUIRE(list.pins.size() == 4);
  CHECK(list.pins[0].device == 0);
  CHECK(list.pins[3].device == 1);
}

TEST_CASE("size and colour are those of the layer with most of the wire; a layer without wire numbers makes "
          "no numbered net") {
  Plant plant;
  plant.wire(0, 0, 10, 0, L"RED_14AWG");
  plant.wire(10, 0, 50, 0, L"BLK_10AWG");
  plant.wire(0, -20, 50, -20, L"GRN_10AWG", 0);
  const Netlist list = readNetlist(plant.drawing);
  REQUIRE(list.conductors.size() == 2);
  CHECK(list.conductors[0].size == L"10AWG");
  CHECK(list.conductors[0].colour == L"BLK");
  CHECK(list.nets[0].carriesNumber);
  CHECK_FALSE(list.nets[1].carriesNumber);
}

TEST_CASE("a line is in the square of each of its points, and in few others") {
  std::mt19937 random(20); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same lines in each run
  const auto number = [&random](double least, double most) {
    return std::uniform_real_distribution(least, most)(random);
  };
  constexpr double reach = 0.01;
  Squares squares;
  std::uint32_t lines = 0;
  for (const double size : {1.0, 40.0, 3000.0, 400000.0})
    for (int slant = 0; slant < 60; ++slant) {
      simhost::Line line{{number(-size, size), number(-size, size), 0.0}, {}};
      line.to = {
          slant % 3 == 0 ? line.from.x : number(-size, size),
          slant % 3 == 1 ? line.from.y : number(-size, size), 0.0};
      squares.putAlong(line, reach, lines);
      bool isFound = true;
      for (int step = 0; step <= 200; ++step) {
        const double part = step / 200.0;
        const double x = line.from.x + part * (line.to.x - line.from.x) + number(-0.7, 0.7) * reach;
        const double y = line.from.y + part * (line.to.y - line.from.y) + number(-0.7, 0.7) * reach;
        const auto& here = squares.at(Squares::squareOf(x), Squares::squareOf(y));
        isFound = isFound && std::find(here.begin(), here.end(), lines) != here.end();
      }
      CHECK_MESSAGE(isFound, "line " << lines << " of size " << size);
      ++lines;
    }
  // Across 100 by 100 squares: those along the line, not all.
  Squares slanting;
  slanting.putAlong({{0.0, 0.0, 0.0}, {1599.0, 1599.0, 0.0}}, reach, 0);
  std::size_t count = 0;
  Squares::inBox({0.0, 0.0, 1599.0, 1599.0}, [&](std::int32_t column, std::int32_t row) {
    count += slanting.at(column, row).size();
  });
  CHECK(count < 400);
}
