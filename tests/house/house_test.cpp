// The project's rules that can be checked by reading includes: no include goes upwards or sideways, each closed
// library has its few readers, every source is listed, no file grows beyond one idea.
#include "sources.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;
using house::linesOf;
using house::projectIncludesOf;
using house::sourcesBelow;

namespace {

/// A layer of the plug-in: what is in it may include what is in lower layers, and itself.
struct Layer {
  const char* folder;
  int level;
};
constexpr Layer layers[] = {
    {"text", 0},    {"expr", 1},    {"host_api", 1}, {"host", 2},  {"widgets", 2}, {"data", 3},
    {"project", 4}, {"drawing", 5}, {"config", 6},   {"build", 7}, {"flows", 8},   {"plugin", 9},
};

/// The readers of each header of platform/ inside src/. Writing and locking of files (file_*) is open to everyone.
const std::map<std::string, std::set<std::string>> platformReaders = {
    {"platform/tables.h", {"data"}},          {"platform/statement_text.h", {"data"}},
    {"platform/table_import.h", {"data"}},    {"platform/xml_document.h", {"project", "drawing"}},
    {"platform/xml_encoding.h", {"project"}}, {"platform/workbook_writer.h", {"flows"}},
};

/// What a folder may include besides itself, as beginnings of names; the first rule that fits its files counts. The host
/// sees of the plug-in its API, the tool calls services of the lower layers and never a flow, and what is made of
/// circuits sees the drawing, the site and services without windows.
#define HOST "simhost/ text/ host/host_api platform/file_"
#define CIRCUITS                                                                                             \
  "text/ host/host_api data/ project/ platform/ simhost/drawing/ simhost/site/ simhost/host/errors.h "
struct Rule {
  const char* folder;
  std::string may;
};
const Rule rules[] = {
    {"platform", "text/"},
    {"simhost/site", HOST " data/ project/ platform/"},
    {"simhost/cli", HOST " expr/ host/ data/ project/ drawing/ config/ build/ platform/ circuits/"},
    {"simhost/gui", HOST " circuits/"},
    {"simhost", HOST},
    {"circuits/netlist", CIRCUITS},
    {"circuits/provenance", CIRCUITS "circuits/netlist/"},
    {"circuits/reports", CIRCUITS "circuits/netlist/ circuits/provenance/"},
    {"circuits/set", CIRCUITS "circuits/netlist/ circuits/provenance/ circuits/reports/"},
    // What builds circuits is a user of a host with the plug-in.
    {"circuits/building", CIRCUITS "circuits/netlist/ circuits/provenance/ circuits/reports/ circuits/set/ "
                                   "simhost/host/ simhost/lisp/ simhost/ui/"},
    {"circuits/export", CIRCUITS "circuits/"},
    {"circuits/check", "text/ expr/ host/ data/ project/ platform/ circuits/ simhost/lisp/ simhost/drawing/ "
                       "simhost/host/ simhost/ui/ simhost/site/"},
};

std::optional<int> levelOf(const std::string& folder) {
  for (const Layer& layer : layers)
    if (folder == layer.folder) return layer.level;
  return std::nullopt;
}

std::string folderOfInclude(const std::string& include) {
  if (include.starts_with("host/host_api")) return "host_api";
  return include.substr(0, include.find('/'));
}

std::string folderOfFile(const fs::path& file) {
  const std::string relative = file.lexically_relative("src").generic_string();
  return folderOfInclude(relative);
}

} // namespace

TEST_CASE("no include in src/ runs upwards or sideways") {
  for (const fs::path& file : sourcesBelow("src")) {
    const std::string folder = folderOfFile(file);
    const std::optional<int> level = levelOf(folder);
    REQUIRE_MESSAGE(level.has_value(), "no layer for ", file.string());
    for (const std::string& include : projectIncludesOf(file)) {
      if (include.starts_with("platform/file_")) continue;
      if (include.starts_with("platform/")) {
        const auto reader = platformReaders.find(include);
        const bool isReader = reader != platformReaders.end() && reader->second.contains(folder);
        CHECK_MESSAGE(isReader, file.string(), " may not read ", include);
        continue;
      }
      const std::string target = folderOfInclude(include);
      const std::optional<int> targetLevel = levelOf(target);
      const bool downwards = targetLevel.has_value() && (*targetLevel < *level || target == folder);
      CHECK_MESSAGE(downwards, file.string(), " includes ", include);
    }
  }
}

TEST_CASE("platform/, the simulated host and what is made of circuits include only what their rules name") {
  for (const char* building : {"platform", "simhost", "circuits"})
    for (const fs::path& file : sourcesBelow(building)) {
      const std::string name = file.generic_string();
      const Rule* rule = std::find_if(std::begin(rules), std::end(rules), [&name](const Rule& each) {
        return name.starts_with(each.folder + std::string("/"));
      });
      REQUIRE_MESSAGE(rule != std::end(rules), "no rule for ", name);
      for (const std::string& include : projectIncludesOf(file)) {
        std::istringstream may(rule->folder + std::string("/ ") + rule->may);
        const bool isAllowed = std::any_of(
            std::istream_iterator<std::string>(may), std::istream_iterator<std::string>(),
            [&include](const std::string& beginning) { return include.starts_with(beginning); });
        CHECK_MESSAGE(isAllowed, name, " includes ", include);
      }
    }
}

TEST_CASE("the public headers of platform/ name no library") {
  for (const fs::path& file : sourcesBelow("platform")) {
    if (file.extension() != ".h") continue;
    for (const std::string& line : linesOf(file))
      for (const char* library : {"sqlite3", "mdbtools", "pugi", "<sql", "glib"})
        CHECK_MESSAGE(line.find(library) == std::string::npos, file.string(), ": ", line);
  }
}

TEST_CASE("every source is listed by name in its folder") {
  for (const char* building : {"src", "platform", "simhost", "circuits", "tests"})
    for (const fs::path& file : sourcesBelow(building)) {
      if (file.extension() != ".cpp") continue;
      bool listed = false;
      for (fs::path folder = file.parent_path(); !folder.empty() && !listed; folder = folder.parent_path()) {
        std::ifstream in(folder / "CMakeLists.txt");
        std::stringstream text;
        text << in.rdbuf();
        listed = text.str().find(file.filename().string()) != std::string::npos;
      }
      if (file.filename() == "doctest_main.cpp") continue;
      CHECK_MESSAGE(listed, file.string(), " is in no CMakeLists.txt");
    }
}

TEST_CASE("files open with what they are for and keep to one idea") {
  for (const char* building : {"src", "platform", "simhost", "circuits", "tests"})
    for (const fs::path& file : sourcesBelow(building)) {
      const std::vector<std::string> lines = linesOf(file);
      CHECK_MESSAGE(lines.size() <= 800, file.string(), " has ", lines.size(), " lines");
      if (file.extension() == ".h" && !lines.empty())
        CHECK_MESSAGE(lines.front().starts_with("//"), file.string(), " does not open with its purpose");
    }
}

TEST_CASE("no path becomes wide text by the process's locale, which may not know its letters") {
  for (const char* folder : {"src", "platform", "simhost", "circuits"})
    for (const fs::path& file : sourcesBelow(folder))
      for (const std::string& line : linesOf(file)) {
        const bool isConverted = line.find(".wstring()") != std::string::npos;
        CHECK_MESSAGE(!isConverted, file.string(), ": use fromUtf8(path.string()) in ", line);
      }
}
