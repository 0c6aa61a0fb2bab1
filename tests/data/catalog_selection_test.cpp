// Catalogue parts under the data of a motor: what is stored comes back, and what fails leaves the old record.
#include "data/catalog_selection.h"

#include "table_fixture.h"

using namespace brenvolt;

namespace {

constexpr const char* emptyStore =
    "MARKER,UI_SEL,LKUPTABLE,TYPE,Load,Units,Voltage (V),PHASE,Frequency (Hz),Speed (RPM),MFG,CAT,ASSYCODE,"
    "RCOUNT,CATALOGTYPE,RATING1,RATING2,RATING3,RATING4,RATING5,RATING6\n";

CatalogKey breakerOf(const wchar_t* speed, const wchar_t* type = L"Induction") {
  return {L"CB01", 7, L"CB", {type, L"10", L"HP", L"460", L"3", L"60", speed}};
}

std::string loaded(TableFixture& tables, const CatalogKey& key) {
  const auto values = loadCatalogSelection(*tables.connection(), key);
  return values ? joinedTexts(*values) : "none";
}

} // namespace

TEST_CASE("a selection comes back under its own key, and the last one stored counts") {
  TableFixture tables(TableTexts{{"CATALOGSEL", emptyStore}});
  ZanOleDbConnection& connection = *tables.connection();
  const std::vector<std::wstring> all = {L"ACME", L"CB-30", L"",   L"1",  L"CB", L"30A",
                                         L"r2",   L"r3",    L"r4", L"r5", L"r6", L"beyond"};
  REQUIRE_FALSE(storeCatalogSelection(connection, breakerOf(L"1800"), all));
  CHECK(loaded(tables, breakerOf(L"1800")) == "ACME|CB-30||1|CB|30A|r2|r3|r4|r5|r6");
  CHECK(loaded(tables, breakerOf(L"3600")) == "none");
  CHECK(loaded(tables, breakerOf(L"1800", L"Synchronous")) == "none");
  CatalogKey other = breakerOf(L"1800");
  other.optionCode = 8;
  CHECK(loaded(tables, other) == "none");
  CatalogKey fuse = breakerOf(L"1800");
  fuse.table = L"FU";
  for (const CatalogKey& neighbour : {other, fuse, breakerOf(L"3600")})
    REQUIRE_FALSE(storeCatalogSelection(connection, neighbour, {L"NEXT", L"N1"}));

  REQUIRE_FALSE(storeCatalogSelection(connection, breakerOf(L"1800"), {L"ZETA", L"Z1"}));
  CHECK(loaded(tables, breakerOf(L"1800")) == "ZETA|Z1|||||||||");
  for (const CatalogKey& neighbour : {other, fuse, breakerOf(L"3600")})
    CHECK(loaded(tables, neighbour) == "NEXT|N1|||||||||");
  // A load has no speed, so any record of its other values is its own.
  CHECK(loaded(tables, breakerOf(L"")) != "none");
}

TEST_CASE("values that are all empty delete the record and store none") {
  TableFixture tables(TableTexts{{"CATALOGSEL", emptyStore}});
  ZanOleDbConnection& connection = *tables.connection();
  REQUIRE_FALSE(storeCatalogSelection(connection, breakerOf(L""), {L"ACME", L"CB-30"}));
  REQUIRE_FALSE(storeCatalogSelection(connection, breakerOf(L""), {L"", L""}));
  CHECK(loaded(tables, breakerOf(L"")) == "none");
}

TEST_CASE("a store that fails is told and leaves the old record") {
  TableFixture tables(TableTexts{{"CATALOGSEL", emptyStore}});
  ZanOleDbConnection& connection = *tables.connection();
  REQUIRE_FALSE(storeCatalogSelection(connection, breakerOf(L""), {L"ACME", L"CB-30"}));
  const auto failure = storeCatalogSelection(connection, breakerOf(L""), {L"O'Neill", L"CB-31"});
  REQUIRE(failure);
  CHECK_FALSE(failure->empty());
  CHECK(loaded(tables, breakerOf(L"")) == "ACME|CB-30|||||||||");
  // No transaction remains open.
  CHECK_FALSE(storeCatalogSelection(connection, breakerOf(L""), {L"ACME", L"CB-32"}));

  CHECK(storeCatalogSelection(connection, breakerOf(L"18'00"), {L"ACME", L"CB-33"}));
  CHECK_FALSE(storeCatalogSelection(connection, breakerOf(L"18'00"), {L"", L""})); // nothing was lost
  CHECK(loaded(tables, breakerOf(L"18'00")) == "none");
}

TEST_CASE("a database without the table of selections is told, and gives none") {
  TableFixture without(TableTexts{{"OTHER", "A\n1\n"}});
  CHECK(storeCatalogSelection(*without.connection(), breakerOf(L""), {L"ACME", L"CB-30"}));
  CHECK(loaded(without, breakerOf(L"")) == "none");
}
