// What the tool does with saved configurations: the commands of the documents, on a copy of the site.
#include "site_tool.h"
#include "tests/support/golden.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <filesystem>

using namespace brenvolt;

namespace {

constexpr SampleCircuit station = {"", "Control circuits", "Start and stop station", ""};

class Histories final {
public:
  [[nodiscard]] const SiteCopy& site() const { return site_; }
  [[nodiscard]] ToolRun run(const std::string& verb, const std::vector<std::string>& words = {}) const {
    std::vector<std::string> all = {"history", verb, "--site", site_.site()};
    all.insert(all.end(), words.begin(), words.end());
    return site_.folder().run(all, {}, {"SOURCE_DATE_EPOCH=0"});
  }
  [[nodiscard]] ToolRun save(const std::string& name) const {
    return site_.draw(station, "a.json", {"--save-history", name});
  }
  [[nodiscard]] ToolRun remove(const std::string& name) const {
    return run("delete", {"--circuit", station.circuit, "--type", station.type, name});
  }
  [[nodiscard]] bool has(const std::string& name) const {
    return run("list").output.find("  " + name + "\n") != std::string::npos;
  }

private:
  SiteCopy site_;
};

} // namespace

TEST_CASE("the list names configurations that the workbook no longer knows") {
  const Histories histories;
  REQUIRE(histories.save("Gate 7").exitCode == 0);
  histories.site().changeSheet("ZAN_CIRCS", "Start and stop station", "Station");
  const ToolRun list = histories.run("list");
  CHECK(list.exitCode == 0);
  CHECK_MESSAGE(
      list.output.find(
          "Control circuits / Start and stop station (the workbook has no such type any more)\n") !=
          std::string::npos,
      list.output);
  CHECK(histories.has("Gate 7"));
}

TEST_CASE("a deleted configuration is in the log with its number, and comes back") {
  const Histories histories;
  CHECK(histories.run("log").output.empty());
  REQUIRE(histories.save("Gate 7").exitCode == 0);
  REQUIRE(histories.remove("GATE 7").exitCode == 0);
  CHECK_FALSE(histories.has("Gate 7"));
  const std::string log = histories.run("log").output;
  CHECK(std::count(log.begin(), log.end(), '\n') == 2);
  checkHolds(log, {"\n2  1970-01-01 00:00:00  "});
  CHECK(
      log.find("  deleted  Control circuits / Start and stop station / GATE 7  (can be restored)\n") !=
      std::string::npos);
  for (const char* number : {"0", "3", "x", "1"})
    CHECK(histories.run("restore", {number}).exitCode == 3);
  const ToolRun restored = histories.run("restore", {"2"});
  CHECK(restored.exitCode == 0);
  CHECK(restored.output == "restored: Control circuits / Start and stop station / GATE 7\n");
  CHECK(histories.has("GATE 7"));
}

TEST_CASE("a damaged history is reported by name, and what is whole in it is taken over") {
  const Histories histories;
  const ToolFolder& folder = histories.site().folder();
  REQUIRE(histories.save("Gate 7").exitCode == 0);
  const std::string whole = folder.read("site/zan_brenvolt.xml");
  static_cast<void>(folder.write("site/zan_brenvolt.xml", whole.substr(0, whole.size() - 60)));
  const ToolRun list = histories.run("list");
  CHECK(list.exitCode == 3);
  checkHolds(list.errors, {"zan_brenvolt.xml: not a history file"});
  const ToolRun saved = histories.save("Gate 8");
  CHECK(saved.exitCode == 0);
  const std::string kept = histories.site().site() + "/zan_brenvolt.damaged-1.xml";
  CHECK_MESSAGE(saved.errors.find(kept) + saved.output.find(kept) != 2 * std::string::npos, saved.errors);

  const ToolRun recovered = histories.run("recover", {kept});
  CHECK((recovered.exitCode == 0 || recovered.exitCode == 5));
  CHECK(histories.has("Gate 8"));
  CHECK(histories.has("Pump 10 HP"));
  const ToolRun again = histories.run("recover", {kept});
  CHECK(again.output.find("added") == std::string::npos);
  CHECK(histories.run("recover", {histories.site().site() + "/README.md"}).exitCode == 3);
  CHECK(histories.run("recover", {histories.site().site()}).exitCode == 3);
}

TEST_CASE("a history that cannot be written ends with 4, and says which file and why") {
  const Histories histories;
  const std::filesystem::path file = histories.site().site() + "/zan_brenvolt.xml";
  const std::string before = test::bytesOf(file);
  std::filesystem::permissions(file, std::filesystem::perms::owner_read);
  const ToolRun deleted =
      histories.run("delete", {"--circuit", "Three-phase motors", "--type", "Direct on line", "Pump 10 HP"});
  CHECK(deleted.exitCode == 4);
  checkHolds(deleted.errors, {file.string() + ": has no write permission"});
  CHECK(test::bytesOf(file) == before);
}
