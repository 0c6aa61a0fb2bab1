// The engineering database that the tool builds from a site's tables, and what a user saves in it.
#include "site_tool.h"

#include <doctest/doctest.h>

#include <string>

using namespace brenvolt;

namespace {

/// Returns the result of a query on the database of the copied site, after a run that may have to build it again.
std::string query(const SiteCopy& site, const std::string& statement) {
  const std::string database = site.folder().path("cache.db");
  REQUIRE(
      site.folder().run({"standards", "--site", site.site()}, {}, {"BRENVOLT_DB=" + database}).exitCode == 0);
  const ToolRun run = site.run({"sql", database, statement, "--csv"});
  REQUIRE_MESSAGE(run.exitCode == 0, run.errors);
  return run.output;
}

void save(const SiteCopy& site, const std::string& marker) {
  const std::string statement =
      "INSERT INTO CATALOGSEL (MARKER, UI_SEL, MFG) VALUES ('" + marker + "', 11, 'Nordhaven')";
  REQUIRE(site.run({"sql", site.folder().path("cache.db"), statement, "--write"}).exitCode == 0);
}

} // namespace

TEST_CASE("parts that a user saved survive a database built from newer tables") {
  const SiteCopy site;
  CHECK(query(site, "SELECT COUNT(*) AS N FROM CATALOGSEL") == "N\n0\n");
  save(site, "DISC");
  // Saving makes the database younger than the change that follows in this second.
  std::string sizes = site.folder().read("site/tables/WIRESIZE.csv");
  static_cast<void>(site.folder().write("site/tables/WIRESIZE.csv", sizes + "999,MM2,999,35.66\n"));
  CHECK(query(site, "SELECT SIZE FROM WIRESIZE WHERE SIZE='999'") == "SIZE\n999\n");
  CHECK(query(site, "SELECT MARKER,UI_SEL FROM CATALOGSEL WHERE UI_SEL=11") == "MARKER,UI_SEL\nDISC,11\n");
}

TEST_CASE("a database whose saved parts cannot be read is kept beside the new one") {
  const SiteCopy site;
  static_cast<void>(site.folder().write("cache.db", "no database"));
  CHECK(query(site, "SELECT COUNT(*) AS N FROM CATALOGSEL") == "N\n0\n");
  CHECK(site.folder().read("cache.db.damaged-1") == "no database");
}
