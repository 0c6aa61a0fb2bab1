// Circuits of the project: picking one, finding it again, and what its components say.
#include "plugin/process_record.h"
#include "tests/flows/circuit_site.h"

#include <doctest/doctest.h>

using namespace brenvolt;
using test::CircuitSite;
using test::circuitStep;
using test::stepOf;

namespace {

const std::string choose =
    R"({"select": "circuits", "path": ["Motors", "Direct"]}, {"tick": "useExisting", "to": true}, )";

/// The part of a result after the arguments of the build.
std::string endOf(const std::string& answer) {
  return answer.substr(answer.find(") ") + 2);
}

} // namespace

TEST_CASE("an existing circuit is picked by a row, and taken with or without its components") {
  const CircuitSite site;
  const auto session = site.session(
      circuitStep(
          R"({"expect": "chooseExisting", "enabled": false, "label": "Choose existing circuit..."},)" +
          choose +
          R"({"expect": "history", "enabled": false}, {"expect": "takeComponents", "enabled": false},
             {"press": "chooseExisting"})") +
      "," +
      stepOf(
          "ZanDlgExistCircuits",
          R"({"expect": "existing", "rows": 2, "selectedRow": 0,
              "header": ["", "No.", "Tag", "Installation", "Location", "Description 1", "Description 2",
                         "Description 3", "Circuit", "Circuit type"]},
             {"expect": "ok", "enabled": false}, {"select": "existing", "row": {"Tag": "1H"}},
             {"expect": "existing", "row": 2, "texts": ["", "1-A1", "1M", "PLANT", "MCC1", "PUMP", "", "", "Motors",
                                                        "Direct"]},
             {"expect": "ok", "enabled": true}, {"select": "existing", "row": 2}, {"press": "ok"})") +
      "," + circuitStep(R"({"expect": "chooseExisting", "label": "Existing circuit chosen..."},
                     {"expect": "useExisting", "checked": true}, {"tick": "takeComponents", "to": true},
                     {"press": "ok"})") +
      "," +
      circuitStep(
          R"({"expect": "newConfiguration", "checked": true}, {"expect": "takeComponents", "enabled": false},
             {"expect": "chooseExisting", "label": "Existing circuit chosen..."},)" +
          choose + R"({"press": "chooseExisting"})") +
      "," +
      stepOf("ZanDlgExistCircuits", R"({"expect": "existing", "selectedRow": 2}, {"press": "cancel"})") +
      "," + circuitStep(R"({"press": "ok"})") + "," + circuitStep(R"({"press": "ok"})"));
  const std::string row = R"("1" "h=A1" "t;w;s;\" Motors \";Direct;;1;0;0" "" "" "M1=B1=1;M2=B2=2;K=C3=1")";
  const std::string rows = R"((("M1" "INST" "HALL" "") ("M1" "LOC" "MCC7" "") ("M2" "INST" "HALL" "") )"
                           R"(("M2" "LOC" "" "") ("K" "INST" "" "") ("K" "LOC" "" "")))";
  CHECK_EQ(endOf(session->eval("(zan_bv_select_circuit)")), rows + " (\"1\" " + row + "))");
  session->eval("(setq GBL_qn_combined_tagloc 1)");
  const std::string combined = R"((("M1" "INST" "HALL" "") ("M1" "LOC" "MCC7" "") ("M2" "INST" "HALL" "") )"
                               R"(("M2" "LOC" "ROOM" "") ("K" "INST" "SITE" "") ("K" "LOC" "ROOM" "")))";
  CHECK_EQ(endOf(session->eval("(zan_bv_select_circuit)")), combined + " (\"0\" " + row + "))");
  // The pick is remembered, but says nothing while another way is chosen.
  CHECK_EQ(endOf(session->eval("(zan_bv_select_circuit)")), "nil nil)");
  CHECK(isPicked(processRecord().existingCircuit));
}

TEST_CASE("a pick is found again by drawing and handle, and gone with its circuit") {
  const CircuitSite site;
  struct Row {
    const char* promise;
    const char* prepare;
    const wchar_t* handle;
    const wchar_t* key;
  };
  const Row rows[] = {
      {"its row is read again", "", L"H=a1", L"1-A1"},
      {"the circuit is gone", "", L"h=A9", nullptr},
      {"the project database is missing", "(setq project-database \"/no/such.db\")", L"h=A1", nullptr},
      {"there is no project", "(setq project-database nil)", L"h=A1", nullptr},
  };
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    const auto session = site.session(
        circuitStep(choose + R"({"press": "chooseExisting"})") + "," +
        stepOf(
            "ZanDlgExistCircuits", std::string(R"({"expect": "ok", "enabled": )") +
                                       (row.key == nullptr ? "false" : "true") +
                                       R"(}, {"press": "cancel"})") +
        "," + circuitStep(R"({"press": "cancel"})"));
    session->eval(row.prepare);
    ExistingCircuit& picked = processRecord().existingCircuit;
    picked = {L"1", row.handle, L"old", L"", L"", L"", L"old key"};
    CHECK_EQ(session->eval("(zan_bv_select_circuit)"), "nil");
    REQUIRE_EQ(isPicked(picked), row.key != nullptr);
    if (row.key != nullptr) CHECK_EQ(picked[circuitrow::key], row.key);
  }
}

TEST_CASE("component rows need a preset text with handles and tables that can be asked") {
  struct Row {
    const char* promise;
    const wchar_t* presetText;
    const char* table;
    std::size_t rows;
  };
  const Row rows[] = {
      {"two columns for each component", L"M1=B1=1;M2=B2=1", "DWGIX,HDL,INST,LOC\n1,h=B1,a,b\n", 4},
      {"codes without a handle", L"M1=1;M2=2", "DWGIX,HDL,INST,LOC\n1,h=B1,a,b\n", 0},
      {"a table without locations", L"M1=B1=1", "DWGIX,HDL,INST\n1,h=B1,a\n", 1},
      {"a handle that would end the statement", L"M1=B'1=1", "DWGIX,HDL,INST,LOC\n1,h=B1,a,b\n", 0},
  };
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    const CircuitSite site({}, {{"COMP", row.table}});
    const auto session = site.session("");
    CHECK_EQ(
        readComponentRows({L"1", L"h=A1", L"", L"", L"", row.presetText, L"k"}, nullptr).size(), row.rows);
    CHECK(readComponentRows({L"1", L"h=A1", L"", L"", L"", row.presetText}, nullptr).empty());
  }
}
