// Worked cases of conductor selection that can be checked on paper: the arithmetic is next to each row.
#include "data/wire_figures.h"
#include "data/wire_lists.h"
#include "data/wire_sizing.h"

#include "text/encoding.h"

#include <doctest/doctest.h>

using namespace brenvolt;

namespace {

std::vector<std::string> sizesOf(const std::vector<WireCandidate>& rows) {
  std::vector<std::string> sizes;
  sizes.reserve(rows.size());
  for (const WireCandidate& row : rows)
    sizes.push_back(toUtf8(row.size));
  return sizes;
}

WireCandidate candidate(const wchar_t* size, const wchar_t* ampacity, const wchar_t* percent = L"") {
  WireCandidate row;
  row.size = size;
  row.ampacity = ampacity;
  row.loadPercent = percent;
  return row;
}

/// Copper at 75C.
const std::vector<ZanWireRow> copper = {{L"14 AWG", 20}, {L"10 AWG", 35}, {L"4 AWG", 85}, {L"1/0 AWG", 150}};

} // namespace

TEST_CASE("the voltage drop follows the formula in feet, metres, one and three phases") {
  struct Row {
    const char* arithmetic = nullptr;
    DropCircuit circuit;
    Impedance impedance;
    double volts = 0.0;
  };
  const Row rows[] = {
      {"1.732 x 250 x 0.0003048 x 52 x (1.0 x 0.85 + 0.157 x 0.52678)",
       {false, false, 250, 52, 0.85},
       {0.157, 1.0},
       6.4010},
      {"1.732 x 100 x 3.280833 x 0.0003048 x 100 x (0.17 + 0.1 x sqrt(0.2775))",
       {false, true, 100, 100, 0.85},
       {0.1, 0.2},
       3.85685},
      {"2 x 100 x 0.0003048 x 10 x 3.9 at a power factor of 1",
       {true, false, 100, 10, 1.0},
       {0.164, 3.9},
       2.377440},
      {"purely reactive: 2 x 100 x 0.0003048 x 10 x 0.164",
       {true, false, 100, 10, 0.0},
       {0.164, 3.9},
       0.0999744},
      {"a power factor above 1 gives no drop", {true, false, 100, 10, 1.1}, {0.164, 3.9}, 0.0},
  };
  for (const Row& row : rows) {
    CAPTURE(row.arithmetic);
    CHECK(voltageDrop(row.circuit, row.impedance) == doctest::Approx(row.volts).epsilon(1e-4));
  }
  // An odd phase counts as one phase, odd units as metres.
  CHECK(isSinglePhaseText(L"2"));
  CHECK(isMetresText(L"yards"));
  CHECK_FALSE(isMetresText(L"ft"));
}

TEST_CASE("drop, percent, loss and cost follow from the shown cell before") {
  CHECK(dropCell(6.404) == L"6.4");
  CHECK(dropPercentCell(L"6.4", 460) == L"1.39");      // 6.4 / 460 x 100
  CHECK(lossCell(L"6.4", 3, 52) == L"0.58");           // 1.732 x 6.4 x 52 / 1000
  CHECK(lossCell(L"6.4", 1, 52) == L"0.33");           // 6.4 x 52 / 1000
  CHECK(lossCell(L"6.4", 2, 52) == L"0.58");           // any other phase counts as three
  CHECK(costCell(L"0.58", 0.08, L"$") == L"$ 406.74"); // 0.58 x 24 x 365.25 x 0.08

  CHECK(dropCell(0.0) == L"-");
  CHECK(dropCell(0.004) == L"-");
  CHECK(dropPercentCell(L"6.4", 0) == L"-");
  CHECK(dropPercentCell(L"-", 0) == L"-");
  CHECK(lossCell(L"-", 3, 52) == L"-");
  CHECK(costCell(L"-", 0.08, L"$") == L"-");
}

TEST_CASE("without a load every row is free and none is proposed") {
  WireTableFigures figures;
  figures.sizes = copper;
  WireLookupInput input;
  input.overallFactor = 1.0;
  input.undersized = UndersizedRows::hide;
  const WireLookupResult result = computeWires(figures, input);
  REQUIRE(result.rows.size() == copper.size());
  CHECK(result.rows[0].loadPercent == L"-");
  CHECK_FALSE(result.proposed);
}

TEST_CASE("the overload filter takes the whole stretch from the first to the last marked row") {
  std::vector<WireCandidate> rows = {
      candidate(L"a", L"", L"90"), candidate(L"b", L"", L"301"), candidate(L"c", L"", L"50"),
      candidate(L"d", L"", L"400"), candidate(L"e", L"", L"100")};
  std::vector<WireCandidate> shown = rows;
  removeOverloaded(shown, UndersizedRows::show);
  CHECK(sizesOf(shown) == std::vector<std::string>{"a", "e"});
  removeOverloaded(rows, UndersizedRows::hide);
  CHECK(sizesOf(rows) == std::vector<std::string>{"a"});
}

TEST_CASE("the drop filter compares with the limit's number, with or without a percent sign") {
  for (const wchar_t* limit : {L"3", L"3%"}) {
    std::vector<WireCandidate> rows = {candidate(L"a", L""), candidate(L"b", L""), candidate(L"c", L"")};
    rows[0].dropPercent = L"3.01";
    rows[1].dropPercent = L"3";
    rows[2].dropPercent = L"-";
    removeAboveDropLimit(rows, limit);
    CHECK(sizesOf(rows) == std::vector<std::string>{"b", "c"});
  }
}

TEST_CASE("parallel runs list one row for each fill range that carries the load") {
  const std::vector<FillEntry> fill = {{L"1~3", 1.0}, {L"4~6", 0.8}, {L"7~9", 0.7}};
  // 1/0 AWG: ceil(350 / 150) = 3 conductors; 450, 360 carry 350 A, 315 does not. 4 AWG: 5 conductors are too many.
  const ParallelInput input{350, 4, 85, 0};
  const std::vector<WireCandidate> rows = parallelRows(copper, fill, input);
  CHECK(sizesOf(rows) == std::vector<std::string>{"14 AWG", "10 AWG", "1/0 AWG", "1/0 AWG"});
  CHECK(
      rows[0].count == L"1"); // below the size that may be paralleled: one conductor, however great the load
  CHECK(rows[0].ampacity == L"20");
  CHECK(rows[2].count == L"3");
  CHECK(rows[2].ampacity == L"450");
  CHECK(rows[3].fillRange == L"4~6");
  CHECK(rows[3].ampacity == L"360");

  CHECK(
      parallelRows({{L"1/0 AWG", 150}}, fill, {300, 4, 85, 0}).empty()); // 2 x 150 meets 300 exactly: dropped
  CHECK(parallelRows({{L"1/0 AWG", 150}}, fill, {350, 4, 85, 1}).size() == 1);
  CHECK(parallelRows({{L"none", 0}}, fill, {350, 4, 0, 0}).empty());
  CHECK(parallelRows(copper, fill, {0, 4, 85, 0}).empty());
}

TEST_CASE("impedance is interpolated within one unit word only, and only for a size with a row of its own") {
  const std::vector<ImpedanceRow> rows = {
      {L"1/0", L"0.144;0.39"},
      {L"2/0", L""},
      {L"4/0", L"0.135;0.203"},
      {L"250 KCMIL", L"0.135;0.171"},
      {L"300kcmil", L""},
      {L"500 KCMIL", L"0.128;0.0886"},
      {L"600 KCMIL", L""},
      {L"12", L"0,2;0.6"},
      {L"10", L""},
  };
  struct Row {
    const wchar_t* size;
    double x;
    double r;
  };
  const Row found[] = {
      {L"2/0", 0.144 + (0.135 - 0.144) / 3,
       0.39 + (0.203 - 0.39) / 3}, // 2 lies a third of the way from 1 to 4
      {L"300 KCMIL", 0.135 + (0.128 - 0.135) * 50 / 250, 0.171 + (0.0886 - 0.171) * 50 / 250},
      {L"600 KCMIL", 0.128, 0.0886}, // the one neighbour's
      {L"350 KCMIL", 0.0, 0.0},      // no row of its own: no drop
  };
  for (const Row& row : found) {
    CAPTURE(toUtf8(row.size));
    const std::optional<Impedance> impedance =
        interpolateImpedance(impedanceNeighbours(rows, row.size), row.size);
    REQUIRE(impedance.has_value());
    CHECK(impedance->x == doctest::Approx(row.x));
    CHECK(impedance->r == doctest::Approx(row.r));
  }
  CHECK_FALSE(interpolateImpedance(impedanceNeighbours(rows, L"10"), L"10")
                  .has_value()); // the neighbour's cell has no semicolon
  CHECK_FALSE(interpolateImpedance(impedanceNeighbours(rows, L"3 AWG"), L"3 AWG").has_value());
  CHECK(parseImpedance(L"0.164; 3.9")->r == doctest::Approx(3.9));
  CHECK_FALSE(parseImpedance(L"0.164").has_value());
}
