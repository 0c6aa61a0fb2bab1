// Every way in leads to the same circuit: each sample circuit, from its saved configuration, built directly and in the
// dialog with what a user may do there without meaning a change. Drawing, saved configuration and project rows agree.
#include "site_tool.h"
#include "text/encoding.h"
#include "text/split.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <vector>

using namespace brenvolt;

namespace {

struct Road {
  const char* name;
  bool visitsPages;
  bool undoesFirst; ///< the first insertion is taken back and done again
  bool undoesLast;
};
constexpr Road roads[] = {
    {"untouched", false, false, false},
    {"every page visited, forwards and back", true, false, false},
    {"the first insertion taken back", false, true, false},
    {"the last insertion taken back, every page visited", true, false, true},
};

/// The results of a build.
struct Result {
  std::vector<std::string> entities;
  std::string saved;
  std::string rows;

  friend bool operator==(const Result&, const Result&) = default;
};

std::string pressing(std::string_view control) {
  return R"({"press": ")" + std::string(control) + R"("})";
}

std::string visits(int pages) {
  std::string actions;
  for (int step = 0; step < 2 * pages; ++step) {
    const int page = step < pages ? step : 2 * pages - step - 1;
    actions += R"({"select": "units", "path": [)" + std::to_string(page) + "]}, ";
  }
  return actions;
}

/// Units at the top of the tree, and how many levels have units: one insertion of all for each.
struct Shape {
  int pages = 0;
  int levels = 0;
};

Shape shapeOf(const std::string& saved) {
  std::map<int, int> unitsOfLevel;
  for (const std::wstring& line : splitKeepingEmpty(fromUtf8(saved), L'\n'))
    if (line.find(L"\" Tag=\"") != std::wstring::npos) ++unitsOfLevel[line[line.rfind(L'.') + 1]];
  return {unitsOfLevel.begin()->second, static_cast<int>(unitsOfLevel.size())};
}

std::string answersOf(const Road& road, const Shape& shape) {
  std::string actions;
  const auto insertAll = [&actions] { actions += pressing("insertAll") + ", "; };
  if (road.visitsPages) actions += visits(shape.pages);
  for (int level = 0; level < shape.levels; ++level) {
    insertAll();
    const bool undoes = (road.undoesFirst && level == 0) || (road.undoesLast && level + 1 == shape.levels);
    if (!undoes) continue;
    actions += pressing("undo") + ", ";
    if (road.visitsPages) actions += visits(shape.pages);
    insertAll();
  }
  if (road.visitsPages) actions += visits(shape.pages);
  return R"({"format": "brenvolt-answers", "version": 1, "steps": [{"dialog": "ZanDlgConfig", "do": [)" +
         actions + pressing("ok") +
         R"(]}, {"dialog": "ZanBrenvolt.DuplicateCircuitName", "do": [{"press": 1001}]}]})";
}

/// A copy of the site with a project.
class Works final {
public:
  Works() : project_(site_.newProject()) {}

  /// Indentation is the file's, not the entry's.
  [[nodiscard]] std::string saved(const SampleCircuit& sample) const {
    std::string lines;
    for (const std::wstring& line :
         splitKeepingEmpty(fromUtf8(historyEntry(site_.history(), sample.history)), L'\n'))
      if (const std::wstring element = trim(line); !element.empty()) lines += toUtf8(element) + "\n";
    return lines;
  }
  [[nodiscard]] Result build(const SampleCircuit& sample, const std::string& answers = {}) const {
    return build(sample, std::vector<std::string>{"--history", sample.history}, answers);
  }
  [[nodiscard]] Result build(
      const SampleCircuit& sample, std::vector<std::string> more, const std::string& answers = {}) const {
    more.insert(more.end(), {"--project", project_});
    if (!answers.empty())
      more.insert(more.end(), {"--answers", site_.folder().write("answers.json", answers)});
    Result result{sortedLines(site_.drawn(sample, "out.json", more)), {}, {}};
    result.saved = saved(sample);
    for (const char* statement :
         {"SELECT DWGIX,CODES FROM [BRENVOLT]", "SELECT * FROM [COMP]", "SELECT * FROM [TERMS]"})
      for (const std::string& line : sortedLines(site_.query(project_, statement)))
        result.rows += line + "\n";
    return result;
  }

  /// A column of the circuit's record, as a rebuild takes it.
  [[nodiscard]] std::string recorded(const std::string& column) const {
    const std::string json =
        site_.run({"sql", project_, "SELECT " + column + " AS C FROM [BRENVOLT]", "--json"}).output;
    const std::wstring text = fromUtf8(json.substr(json.find("\"C\":") + 4));
    std::wstring value;
    for (std::size_t at = text.find(L'"') + 1; at < text.size() && text[at] != L'"'; ++at)
      value += text[at] == L'\\' ? text[++at] : text[at];
    return toUtf8(value);
  }

private:
  SiteCopy site_;
  std::string project_;
};

} // namespace

TEST_CASE("a saved configuration gives the same drawing, entry and project rows in every way in") {
  for (const SampleCircuit& sample : sampleCircuits()) {
    CAPTURE(std::string(sample.name));
    const Works direct;
    const std::string saved = direct.saved(sample);
    REQUIRE_FALSE(saved.empty());
    const Result expected = direct.build(sample);
    CHECK_EQ(expected.saved, saved);
    for (const Road& road : roads) {
      CAPTURE(std::string(road.name));
      const Works works;
      const Result result = works.build(sample, answersOf(road, shapeOf(saved)));
      CHECK_EQ(result.saved, saved);
      CHECK_EQ(result.rows, expected.rows);
      CHECK((result.entities == expected.entities));
    }
  }
}

TEST_CASE("the same circuit twice in a row on one site is the same circuit") {
  for (const SampleCircuit& sample : sampleCircuits()) {
    CAPTURE(std::string(sample.name));
    const Works works;
    const std::string answers = answersOf(roads[0], shapeOf(works.saved(sample)));
    const Result first = works.build(sample, answers);
    const Result second = works.build(sample, answers);
    CHECK_EQ(second.saved, first.saved);
    CHECK((second.entities == first.entities));
  }
}

TEST_CASE("a rebuild from the project's record draws what the build from the saved configuration has drawn") {
  for (const SampleCircuit& sample : sampleCircuits()) {
    // The record holds one motor; a circuit without any has none.
    const Works first;
    const Result expected = first.build(sample);
    if (expected.rows.find("MCTL-B") != std::string::npos || expected.rows.find("CTL") == std::string::npos)
      continue;
    CAPTURE(std::string(sample.name));
    const Works again;
    const Result result = again.build(
        sample, {"--preset", first.recorded("CODES"), "--params", first.recorded("PARAMS"), "--wires",
                 first.recorded("WIRES")});
    CHECK_EQ(result.entities.size(), expected.entities.size());
    for (const std::string& line : expected.entities)
      if (line.find("\"configuration\"") == std::string::npos)
        CHECK_MESSAGE(std::binary_search(result.entities.begin(), result.entities.end(), line), line);
  }
}
