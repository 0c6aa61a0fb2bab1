// Motors, loads and protective components: rows read and edited, columns found by name, ratings chosen by step.
#include "table_fixture.h"

#include "data/component_sizing.h"
#include "data/motor_choices.h"
#include "data/rating_tables.h"
#include "data/table_query.h"
#include "data/wire_tables.h"

using namespace brenvolt;

namespace {

constexpr const char* loads = "ID,Type,Phase,Voltage (V),Load,Units,FLA (A),Frequency "
                              "(HZ),Description\n1,Heater,1,240,5,kW,20.8,60,warm\n";

ZanTableFilter selecting(std::initializer_list<std::size_t> columns) {
  ZanTableFilter filter;
  for (const std::size_t column : columns)
    filter.selected[column] = true;
  return filter;
}

void keep(ZanTableFilter& filter, std::size_t column, const wchar_t* value) {
  filter.active[column] = true;
  filter.values[column] = value;
}

/// All columns of the row of an id, in column order.
std::string rowOf(const RatingTableService& service, const wchar_t* id) {
  ZanTableFilter filter;
  filter.selected.fill(true);
  keep(filter, 0, id);
  std::vector<RatingRecord> records;
  if (!service.Query(filter, records) || records.size() != 1) return "no row";
  return joinedTexts({records[0].fields.begin(), records[0].fields.end()});
}

} // namespace

TEST_CASE("a load's voltage shifts over the phase, which is before it") {
  TableFixture tables(TableTexts{{"FEED_NEC", loads}});
  const ZanDlgPowerFeedDbService service(tables.connection());
  ZanTableFilter filter;
  keep(filter, loadTable().columnOf(Rating::phase), L"3");
  std::wstring refusal;
  REQUIRE(service.Save(1, {L"Oven", L"208", L"6", L"kW", L"17", L"60", L"hot"}, filter, refusal));
  CHECK(rowOf(service, L"1") == "1|Oven|3|208|6|kW|17|60|hot|");
}

TEST_CASE("a table without a wanted column, and no table at all, give no rows") {
  TableFixture tables(TableTexts{{"MOTOR_NEC", "ID,Type\n1,Induction\n"}});
  const ZanDlgMotorSelectDbService service(tables.connection());
  std::vector<RatingRecord> records;
  CHECK(service.Query(selecting({motorTable().columnOf(Rating::type)}), records));
  CHECK_FALSE(service.Query(
      selecting({motorTable().columnOf(Rating::type), motorTable().columnOf(Rating::speed)}), records));
  std::vector<std::wstring> values;
  CHECK_FALSE(service.ListColumnValues(motorTable().columnOf(Rating::speed), values));
  const ZanDlgPowerFeedDbService missing(tables.connection());
  CHECK(missing.TableName().empty());
  CHECK_FALSE(missing.Query(selecting({loadTable().columnOf(Rating::type)}), records));
}

TEST_CASE("steps compare as numbers where they are declared as text; a cell that is none is reported") {
  TableFixture tables(TableTexts{
      {"MOTOR_I_DESC_NEC", "CODE,Description\nCB,Breaker\n"},
      {"MOTOR_I_CALC_NEC", "Type,CB\nInduction,i*2.5\n"}});
  for (const wchar_t* statement :
       {L"CREATE TABLE [MOTOR_I_MAP_NEC] ([CODE] TEXT, [MAX] TEXT, [RATING] TEXT, [DEFAULT] TEXT)",
        L"INSERT INTO [MOTOR_I_MAP_NEC] VALUES ('CB','100','100A',''), ('CB','15','15A',''), "
        L"('CB','9O','9A','')",
        L"CREATE TABLE [AMP_CU_AWG_NEC] ([SIZE] TEXT, [SIZE_DESC] TEXT, [75C] TEXT)",
        L"INSERT INTO [AMP_CU_AWG_NEC] VALUES ('1','1 AWG','130'), ('14','14 AWG','20'), ('8','8 AWG',''), "
        L"('4','4 AWG','85'), ('3','3 AWG','1OO')",
        L"CREATE TABLE [AMPG_CU_AWG_NEC] ([SIZE_DESC] TEXT, [MAX] TEXT)",
        L"INSERT INTO [AMPG_CU_AWG_NEC] VALUES ('3 AWG','400'), ('8 AWG','60'), ('10 AWG','nan')",
        L"CREATE TABLE [FILL_NEC] ([MAX] TEXT, [FACTOR] TEXT)",
        L"INSERT INTO [FILL_NEC] VALUES ('3','1.0'), ('6','0,8')"}) {
    TableQuery query(tables.connection());
    REQUIRE(query.run(statement));
  }
  ZanAutoSizeComponent sizing(tables.connection());
  std::vector<ZanAutoSizeRow> parts;
  sizing.useTables(L"NEC");
  REQUIRE(sizing.size(L"Induction", 5, parts));
  CHECK(toUtf8(parts[0].rating) == "15A");
  const ZanWireTableReader reader(tables.connection());
  const WireTableSet copper = {L"CU", L"AWG", L"NEC"};
  std::vector<ZanWireRow> rows;
  REQUIRE(reader.ReadAmpacity(copper, L"75C", rows));
  REQUIRE(rows.size() == 3);
  CHECK(rows[0].ampacity == 20);
  CHECK(rows[2].ampacity == 130);
  REQUIRE(reader.ListParallelSizes(copper, L"75C", L"4", rows, ZanWireTableReader::SizeText::description));
  REQUIRE(rows.size() == 2);
  CHECK(toUtf8(rows[0].size) == "4 AWG");
  std::vector<std::wstring> grounds;
  REQUIRE(reader.ListGround(copper, L"i", L"50", grounds));
  CHECK(joinedTexts(grounds) == "8 AWG|3 AWG");
  double amps = 9;
  CHECK_FALSE(reader.ReadAmpacityAt(copper, L"75C", L"3", amps));
  FactorList fill;
  REQUIRE(reader.ListFill(L"NEC", fill));
  std::string reasons;
  for (const StatementFailure& failure : tables.watch().failures())
    reasons += toUtf8(failure.reason) + "\n";
  CHECK(
      reasons == "column MAX: \"9O\" is not a number\ncolumn 75C: \"1OO\" is not a number\n"
                 "column MAX: \"nan\" is not a number\ncolumn FACTOR: \"0,8\" is not a number\n");
}

TEST_CASE("a component takes the first step at or above its value") {
  TableFixture tables(TableTexts{
      {"MOTOR_I_DESC_NEC", "CODE,Description\nCB,Breaker\nOL,Overload\nBAD,Broken\n"},
      {"MOTOR_I_CALC_NEC", "Type,CB,OL,BAD\nInduction,i*2.5,i,abc\nHeater,i*1.25,0,abc\n"},
      {"MOTOR_I_MAP_NEC", "CODE,MAX,RATING,DEFAULT\nCB,100,100A,P100\nCB,15,15A,P15\nCB,125,125A,P125\nOL,"
                          "30,30A,Q30\nBAD,5,5A,R5\n"}});
  ZanAutoSizeComponent sizing(tables.connection());
  sizing.useTables(L"NEC");
  struct Row {
    double current;
    const char* rating;
  };
  // 15 sorts before 100; 40 x 2.5 is 100 exactly; within the tolerance; beyond the largest step.
  for (const Row& row : {Row{5, "15A"}, {40, "100A"}, {40.000002, "100A"}, {40.1, "125A"}, {60, ""}}) {
    CAPTURE(row.current);
    std::vector<ZanAutoSizeRow> rows;
    REQUIRE(sizing.size(L"Induction", row.current, rows));
    REQUIRE(rows.size() == 3);
    CHECK(toUtf8(rows[0].rating) == row.rating);
    CHECK(rows[0].value == doctest::Approx(row.current * 2.5));
    CHECK(
        rows[2].value ==
        0.0); // not an expression: its component has neither value nor rating, the others go on
    CHECK(rows[2].rating.empty());
  }
  std::vector<ZanAutoSizeRow> rows;
  CHECK_FALSE(sizing.size(L"", 40, rows));
  REQUIRE(sizing.size(L"Induction", 0, rows));
  CHECK(rows[0].rating.empty());
  REQUIRE(sizing.size(L"Heater", 12, rows));
  CHECK(toUtf8(rows[0].rating) == "15A");
  CHECK(rows[1].rating.empty()); // 0: a heater has no overload relay
  REQUIRE(sizing.size(L"Unknown", 40, rows));
  CHECK(rows[0].rating.empty()); // the smallest step would protect no motor
  REQUIRE(tables.watch().failures().size() == 1);
  CHECK(tables.watch().failures()[0].reason == L"column BAD: \"abc\" is not an expression in the current");
  REQUIRE(putRows(L"rows", rows));
  CHECK(toUtf8(tables.host().eval(L"(car rows)")) == "(\"CB\" \"Breaker\" 0.0 \"\" \"\")");
}

TEST_CASE("the page of a motor reads the columns by their names, and by place where a name is missing") {
  struct Row {
    const char* promise;
    const char* header;
    const char* columns; ///< type, load, units, voltage, phase, frequency, speed, current, multiplier
  };
  const Row rows[] = {
      {"another order", "ID,FLA (A),Units,Load,SPEED (rpm),Voltage (V),Phase,Type,Frequency (HZ)",
       "Type|Load|Units|Voltage (V)|Phase|Frequency (HZ)|SPEED (rpm)|FLA (A)|"},
      {"a name of the site's own", "ID,Type,Phases,Voltage (V),Speed (RPM),Load,Units,FLA (A),Frequency (HZ)",
       "Type|Load|Units|Voltage (V)|Phases|Frequency (HZ)|Speed (RPM)|FLA (A)|"},
      {"a place that has another name", "ID,Type,Voltage (V),Speed (RPM),Load,Units,FLA (A),Frequency (HZ)",
       "Type|Load|Units|Voltage (V)||Frequency (HZ)|Speed (RPM)|FLA (A)|"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    TableFixture tables({{"MOTOR_NEC", std::string(row.header) + "\n"}});
    const auto columns = readMotorColumns(*tables.connection(), L"NEC");
    REQUIRE(columns.has_value());
    CHECK_EQ(joinedTexts({columns->begin(), columns->end()}), row.columns);
  }
}
