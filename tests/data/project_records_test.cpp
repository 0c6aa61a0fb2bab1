// The records of placed circuits: the record of a component and the rows of the project database.
#include "table_fixture.h"

#include "data/entity_records.h"
#include "data/project_circuits.h"

using namespace brenvolt;

TEST_CASE("the fields of a record shift over empty ones, and lose their quotes") {
  const ZanCircParams record = parseCircParams(L"\"Induction\";\"40\";;\"460\"; ", L"");
  CHECK(record.get(0) == L"Induction");
  CHECK(record.get(2) == L"460");
  CHECK(record.get(3) == L" ");
  CHECK(record.get(31).empty());
}

TEST_CASE("the list of wires gives conductor and grounding wire, and its order matters") {
  struct Row {
    const wchar_t* wires;
    const char* conductor;
    const char* ground;
  };
  const Row rows[] = {
      {L"((\"4AWG\" x 0)(\"8AWG\" x 3))", "4AWG", "8AWG"},
      {L"((\"8AWG\" x 3)(\"4AWG\" x 0))", "", "8AWG"}, // the conductor stays blank
      {L"((\"4AWG\" 1)(\"2AWG\" 0))", "4AWG", ""},
      {L"((\"8AWG\" 3)(\"6AWG\" 3))", "", "6AWG"},
      {L"((lonely)(\"4AWG\" \"0\"))", "4AWG", ""},
      {L"((\"4AWG\" 2)", "", ""},
      {L"((((", "", ""},
  };
  for (const Row& row : rows) {
    CAPTURE(toUtf8(row.wires));
    const ZanCircParams record = parseCircParams(L"", row.wires);
    CHECK(toUtf8(record.get(circparam::wire)) == row.conductor);
    CHECK(toUtf8(record.get(circparam::groundWire)) == row.ground);
  }
}

TEST_CASE("a circuit table of six columns holds no circuits") {
  TableFixture project(TableTexts{{"BRENVOLT", "A,B,C,D,E,F\n7,AB,text,x,y,z\n"}});
  std::vector<TextRow> rows;
  CHECK_FALSE(readCircuitRows(fromUtf8(project.database()), nullptr, rows));
}
