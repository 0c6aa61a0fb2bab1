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

TEST_CASE("circuits of a project are listed with their components, sorted, and lead back to their rows") {
  TableFixture project(TableTexts{
      {"brenvolt",
       "A,B,C,D,E,F,G\n7,AB,a;b;c;\" M1 \";Three;f;g;h;i,x,y,z,key1\n7,CD,a;b;c;;e;f;g;h;i,x,y,z,key2\n"
       "7,EF,,x,y,z,key3\n7,GH,too;few,x,y,z,key4\n"},
      {"COMP",
       "TAGNAME,INST,LOC,DESC1,DESC2,DESC3,DWGIX,HDL,MFG,CAT,ASSYCODE,CNT,RATING1,RATING2,RATING3,RATING4,"
       "RATING5,RATING6,FAMILY,PAR1_CHLD2\n"
       "M-2,,,two,,,7,ab,ACME,C2,,1,,,,,,,MO,2\nM-1,I,L,one,,,7,AB,ACME,C1,,1,,,,,,,MO,1\n"},
      {"QN_M",
       "DWGIX,ATTR_NAME,ATTR_VAL\n7,IEC_LOC,L1\n7,IEC_LOC,L1\n7,IEC_LOC,\n7,IEC_INST,I1\n8,IEC_LOC,L8\n"}});
  const std::wstring path = fromUtf8(project.database());
  std::vector<TextRow> rows;
  REQUIRE(readCircuitRows(path, nullptr, rows));
  CHECK(rows.size() == 3); // one has no circuit text
  std::vector<TextRow> summaries;
  REQUIRE(readCircuitSummaries(path, nullptr, rows, summaries));
  REQUIRE(summaries.size() == 2);
  CHECK(joinedTexts(summaries[0]) == "M-1|I|L|one|||M1|Three|key1");
  CHECK(joinedTexts(summaries[1]) == "M-2|||two|||M1|Three|key1");
  ProjectDatabase database(path, nullptr);
  const TagLocations locations = readTagLocations(database, L"7");
  CHECK(joinedTexts(locations.locations) == "L1");
  CHECK(joinedTexts(locations.installations) == "I1");

  project.host().eval(L"(defun qn_mdb_proj_dbfnam () \"" + path + L"\")");
  CHECK_FALSE(readCircuitRows(L"/no/such/file", nullptr, rows));
  CHECK(rows.empty());
}

TEST_CASE("a circuit table of six columns holds no circuits") {
  TableFixture project(TableTexts{{"BRENVOLT", "A,B,C,D,E,F\n7,AB,text,x,y,z\n"}});
  std::vector<TextRow> rows;
  CHECK_FALSE(readCircuitRows(fromUtf8(project.database()), nullptr, rows));
}
