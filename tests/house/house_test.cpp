// The project's rules that can be checked by reading includes: no include goes upwards or sideways, each closed
// library has its few readers, every source is listed, no file grows beyond one idea.
#include "sources.h"

#include <doctest/doctest.h>

#include <filesystem>
#include <fstream>
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

/// The folders of src/ that the simulated host may use, besides text/ and the host API. The tool is not part of the
/// host: it calls services of the plug-in's lower layers directly, and never a flow. `site` builds a site's database,
/// and asks `data` for the contents of its columns.
const std::map<std::string, std::set<std::string>> simhostReaders = {
    {"lisp", {}},
    {"drawing", {}},
    {"drawing_lisp", {}},
    {"host", {}},
    {"ui", {}},
    {"qt", {}},
    {"gui", {}},
    {"json", {}},
    {"site", {"data", "project"}},
    {"cli", {"expr", "host", "data", "project", "drawing", "config", "build"}},
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

TEST_CASE("platform/ knows only text/ and itself") {
  for (const fs::path& file : sourcesBelow("platform"))
    for (const std::string& include : projectIncludesOf(file)) {
      const bool allowed = include.starts_with("platform/") || include.starts_with("text/");
      CHECK_MESSAGE(allowed, file.string(), " includes ", include);
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

TEST_CASE("one file knows the library that parses command lines") {
  for (const fs::path& file : sourcesBelow("simhost"))
    for (const std::string& line : linesOf(file))
      if (line.starts_with("#include <CLI/")) CHECK(file.filename() == "command_line_parser.cpp");
}

TEST_CASE("the simulated host sees of the plug-in only the host's face") {
  for (const fs::path& file : sourcesBelow("simhost")) {
    const std::string folder = folderOfInclude(file.lexically_relative("simhost").generic_string());
    const auto allowed = simhostReaders.find(folder);
    REQUIRE_MESSAGE(allowed != simhostReaders.end(), "no rule for ", file.string());
    for (const std::string& include : projectIncludesOf(file)) {
      if (include.starts_with("simhost/")) continue;
      const std::string target = folderOfInclude(include);
      const bool free = target == "text" || target == "host_api" || include.starts_with("platform/file_") ||
                        (target == "platform" && (folder == "cli" || folder == "site")) ||
                        (target == "circuits" && (folder == "cli" || folder == "gui"));
      CHECK_MESSAGE((free || allowed->second.contains(target)), file.string(), " includes ", include);
    }
  }
}

TEST_CASE("what is made of circuits sees lower layers, the drawing, the site and services without windows") {
  const std::map<std::string, int> levels = {{"netlist", 0}, {"provenance", 1}, {"reports", 2},
                                             {"set", 3},     {"building", 4},   {"export", 5}};
  for (const fs::path& file : sourcesBelow("circuits")) {
    const std::string layer = folderOfInclude(file.lexically_relative("circuits").generic_string());
    const auto level = levels.find(layer);
    if (level == levels.end()) continue;
    for (const std::string& include : projectIncludesOf(file)) {
      const std::string target = folderOfInclude(include);
      const auto other = levels.find(folderOfInclude(include.substr(include.find('/') + 1)));
      const bool isLower = target == "circuits" && other != levels.end() &&
                           (other->second < level->second || other->first == layer);
      // What builds circuits is a user of a host with the plug-in.
      const bool isHost =
          layer == "building" && (include.starts_with("simhost/host/") ||
                                  include.starts_with("simhost/lisp/") || include.starts_with("simhost/ui/"));
      const bool isFree = isHost || target == "text" || target == "host_api" || target == "data" ||
                          target == "project" || target == "platform" ||
                          include.starts_with("simhost/drawing/") || include.starts_with("simhost/site/") ||
                          include == "simhost/host/errors.h";
      CHECK_MESSAGE((isLower || isFree), file.string(), " includes ", include);
    }
  }
}

TEST_CASE("the check of a site builds circuits through the loaded module, as any user does") {
  const std::set<std::string> folders = {"text", "expr",    "host_api", "host",
                                         "data", "project", "platform", "circuits"};
  const std::set<std::string> simhostFolders = {"lisp", "drawing", "host", "ui", "site"};
  for (const fs::path& file : sourcesBelow("circuits/check"))
    for (const std::string& include : projectIncludesOf(file)) {
      const bool isSimhost = include.starts_with("simhost/");
      const bool allowed = isSimhost ? simhostFolders.contains(folderOfInclude(include.substr(8)))
                                     : folders.contains(folderOfInclude(include));
      CHECK_MESSAGE(allowed, file.string(), " includes ", include);
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
