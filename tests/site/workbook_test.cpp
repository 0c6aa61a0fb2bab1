// The site's workbook and drawings against the sources that they are made of.
#include "site_tool.h"
#include "tests/support/golden.h"

#include <doctest/doctest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

using namespace brenvolt;
namespace fs = std::filesystem;

namespace {

/// Files with this ending in a folder.
int compareFiles(const fs::path& expected, const fs::path& actual, const std::string& ending) {
  int count = 0;
  for (const auto& entry : fs::directory_iterator(expected)) {
    if (entry.path().extension() != ending) continue;
    const fs::path other = actual / entry.path().filename();
    CHECK_MESSAGE(test::bytesOf(entry.path()) == test::bytesOf(other), entry.path().string());
    ++count;
  }
  return count;
}

} // namespace

TEST_CASE("symbols, templates and workbook are what their sources make, none missing and none too many") {
  const ToolFolder folder;
  REQUIRE(
      std::system(
          ("BRENVOLT='" + toolPath() + "' bash site/rebuild.sh '" + folder.path("new") + "'").c_str()) == 0);
  for (const char* part : {"blocks", "templates"})
    CHECK(
        compareFiles(fs::path("site") / part, folder.path("new/") + part, ".json") ==
        compareFiles(folder.path("new/") + part, fs::path("site") / part, ".json"));
  CHECK(test::bytesOf("site/zan_brenvolt.xls") == test::bytesOf(folder.path("new/zan_brenvolt.xls")));
}

TEST_CASE("an unpacked workbook gives the sheets that it was packed from") {
  const ToolFolder folder;
  REQUIRE(folder.run({"workbook", "unpack", "site/zan_brenvolt.xls", folder.path("sheets")}).exitCode == 0);
  CHECK(compareFiles("site/workbook", folder.path("sheets"), ".csv") >= 8);
}

TEST_CASE("a folder that is not a workbook is refused with its name") {
  const ToolFolder folder;
  CHECK(folder.run({"workbook", "pack", folder.path("none"), folder.path("a.xls")}).exitCode == 3);
  const std::string text = folder.write("text.xls", "no workbook");
  const ToolRun run = folder.run({"workbook", "unpack", text, folder.path("sheets")});
  CHECK(run.exitCode == 3);
  CHECK(run.errors.find("text.xls") != std::string::npos);
}
