// The cost of compiling: headers that many sources include pull in little, and headers of libraries that take seconds
// to compile reach few sources.
#include "sources.h"

#include <doctest/doctest.h>

#include <map>
#include <set>

namespace fs = std::filesystem;

namespace {

/// A header of a library and how many of all sources may read it, directly or by way of others.
struct HeavyHeader {
  const char* name;
  std::size_t mostSources;
};
constexpr HeavyHeader heavyHeaders[] = {
    {"nlohmann/json.hpp", 60}, {"CLI/CLI.hpp", 1}, {"regex", 2},
    {"pugixml.hpp", 2},        {"iostream", 4},    {"QtWidgets", 0},
};

constexpr int widestCount = 10;
constexpr std::size_t mostOwnHeaders = 6;
constexpr std::size_t mostLibraryHeaders = 14;

/// What a file reads, directly or by way of others.
struct Reach {
  std::set<fs::path> own;
  std::set<std::string> libraries;
};

std::map<fs::path, Reach> directReach() {
  std::map<fs::path, Reach> direct;
  for (const char* building : {"src", "platform", "simhost", "tests"})
    for (const fs::path& file : house::sourcesBelow(building)) {
      const std::vector<std::string> libraries = house::libraryIncludesOf(file);
      direct[file].libraries = {libraries.begin(), libraries.end()};
    }
  for (auto& [file, reach] : direct)
    for (const std::string& include : house::projectIncludesOf(file))
      for (const fs::path& root : {fs::path("src"), fs::path(), file.parent_path()})
        if (const auto found = (root / include).lexically_normal(); direct.contains(found))
          reach.own.insert(found);
  return direct;
}

Reach reachOf(const std::map<fs::path, Reach>& direct, const fs::path& file) {
  Reach whole;
  std::vector<fs::path> open = {file};
  while (!open.empty()) {
    const Reach& next = direct.at(open.back());
    open.pop_back();
    whole.libraries.insert(next.libraries.begin(), next.libraries.end());
    for (const fs::path& header : next.own)
      if (whole.own.insert(header).second) open.push_back(header);
  }
  return whole;
}

} // namespace

TEST_CASE("the widest headers pull in little, and few sources compile a heavy library") {
  const std::map<fs::path, Reach> direct = directReach();
  std::map<fs::path, std::size_t> readers;
  std::map<std::string, std::size_t> libraryReaders;
  for (const auto& [source, unused] : direct) {
    if (source.extension() != ".cpp") continue;
    const Reach reach = reachOf(direct, source);
    for (const fs::path& header : reach.own)
      ++readers[header];
    for (const std::string& header : reach.libraries)
      ++libraryReaders[header];
  }
  for (const HeavyHeader& heavy : heavyHeaders)
    CHECK_MESSAGE(libraryReaders[heavy.name] <= heavy.mostSources, heavy.name);

  std::multimap<std::size_t, fs::path> widest;
  for (const auto& [header, count] : readers)
    widest.emplace(count, header);
  REQUIRE(widest.rbegin()->first > 100); // otherwise includes are not found at all
  auto at = widest.rbegin();
  for (int place = 0; place < widestCount; ++place, ++at) {
    const Reach reach = reachOf(direct, at->second);
    CAPTURE(at->second.string());
    CHECK(reach.own.size() <= mostOwnHeaders);
    CHECK(reach.libraries.size() <= mostLibraryHeaders);
    for (const HeavyHeader& heavy : heavyHeaders)
      CHECK_FALSE(reach.libraries.contains(heavy.name));
  }
}
