// Lists counted by hand.
#include "circuits/reports/report_files.h"
#include "tests/circuits/plant.h"

#include <doctest/doctest.h>

#include <string>

using namespace circuits;
using circuits::testing::Plant;

namespace {

/// A branch: breaker, contactor with a spare contact, terminal, motor; wire number 1L11 before the contactor.
void drawBranch(Plant& plant, const std::wstring& number, bool hasPart) {
  const Plant::Texts part = hasPart ? Plant::Texts{{L"MFG", L"Carrick"}, {L"CAT", L"MC-25"}} : Plant::Texts{};
  plant.symbol(
      L"CB" + number, L"CB", {{L"X1TERM02", L"2", 0, 0}}, {{L"CAT", L"CB3-030"}, {L"RATING1", L"30A"}});
  plant.wire(0, 0, 40, 0);
  plant.number(number + L"L11", 10, 0);
  plant.symbol(number + L"M", L"MS", {{L"X4TERM01", L"1", 40, 0}, {L"X1TERM02", L"2", 52, 0}}, part);
  plant.symbol(number + L"M", L"CR", {{L"X4TERM01", L"13", 40, -40}});
  plant.wire(52, 0, 80, 0);
  plant.terminal(L"TB1", L"3", 80, 82, 0);
  plant.wire(82, 0, 120, 0);
  plant.symbol(L"MTR" + number, L"MO", {{L"X4TERM01", L"T1", 120, 0}});
}

std::string csv(ReportKind kind, const std::vector<Sheet>& sheets) {
  return reportText(makeReport(kind, sheets), ReportFormat::csv);
}

} // namespace

TEST_CASE("parts, wires and terminals of two sheets are what a hand counts") {
  Plant first;
  drawBranch(first, L"1", true);
  Plant second;
  drawBranch(second, L"10", true);
  drawBranch(second, L"2", false);
  // The contactor of sheet 1 is shown on sheet 2 again: still one part.
  second.symbol(L"1M", L"CR", {{L"X4TERM01", L"23", 40, -80}});
  const std::vector<Sheet> sheets = {readSheet(first.drawing, L"S1"), readSheet(second.drawing, L"S2")};
  CHECK(
      csv(ReportKind::parts, sheets) == "quantity,family,maker,catalogue,assembly,rating,tags\n"
                                        "3,CB,,CB3-030,,30A,\"CB1, CB2, CB10\"\n"
                                        "1,MS,,,,,2M\n"
                                        "2,MS,Carrick,MC-25,,,\"1M, 10M\"\n"
                                        "3,TRMS,,,,,TB1\n");
  CHECK(makeReport(ReportKind::parts, sheets)
            .notes.front()
            .text.starts_with(L"4 devices have no catalogue number"));
  CHECK(
      csv(ReportKind::wires, {sheets.front()}) == "number,size,colour,from,to,length,sheet\n"
                                                  "1L11,10AWG,BLK,CB1:2,1M:1,,S1\n"
                                                  ",10AWG,BLK,1M:2,TB1:3,,S1\n"
                                                  ",10AWG,BLK,TB1:3,MTR1:T1,,S1\n");
  CHECK(
      csv(ReportKind::terminals, {sheets.front()}) ==
      "strip,terminal,number,size,inside,outside,jumper,cable,sheet\n"
      "TB1,3,,10AWG,1M:2,MTR1:T1,,W-MTR1,S1\n");
  CHECK(
      makeReport(ReportKind::terminals, sheets).notes.front().text ==
      L"1 terminals of a strip are drawn more than once.");
}

TEST_CASE("a site's layout chooses, orders and sorts columns, and a column that is not there is named") {
  Plant plant;
  drawBranch(plant, L"1", true);
  Report report = makeReport(ReportKind::parts, {readSheet(plant.drawing, L"S")});
  CHECK(applyLayout(report, {{"tags", "colour"}, {}}) == "there is no column \"colour\"");
  REQUIRE_FALSE(applyLayout(report, {{"tags", "quantity"}, {"tags"}}));
  CHECK(reportText(report, ReportFormat::csv) == "tags,quantity\n1M,1\nCB1,1\nTB1,1\n");
}

TEST_CASE("every format keeps what a text holds") {
  const Report report{
      L"A & B", {{"n", L"N", true}, {"t", L"T"}}, {{L"2", L"a,\"b\"\n<c>"}, {std::nullopt, L""}}, {}};
  CHECK(reportText(report, ReportFormat::csv) == "n,t\n2,\"a,\"\"b\"\"\n<c>\"\n,\n");
  const std::string json = reportText(report, ReportFormat::json);
  CHECK(json.find("\"n\": 2") != std::string::npos);
  CHECK(json.find("\"n\": null") != std::string::npos);
  const std::string html = reportText(report, ReportFormat::html);
  CHECK(html.find("<h1>A &amp; B</h1>") != std::string::npos);
  CHECK(html.find("&lt;c&gt;") != std::string::npos);
}

TEST_CASE("tags are sorted as people count") {
  const std::vector<std::wstring> rising = {L"",      L"1M",  L"2M",   L"10M",  L"CB1",
                                            L"CB01A", L"CB2", L"CB10", L"CB10A"};
  for (std::size_t one = 0; one < rising.size(); ++one)
    for (std::size_t other = 0; other < rising.size(); ++other) {
      CAPTURE(one);
      CAPTURE(other);
      CHECK(comesBefore(rising[one], rising[other]) == (one < other));
    }
}
