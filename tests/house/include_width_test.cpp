// The cost of compiling: headers that many sources include pull in little, and headers of libraries that take seconds
// to compile reach few sources.
#include "sources.h"

#include <doctest/doctest.h>

#include <algorithm>
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

constexpr std::size_t widestCount = 10;
constexpr std::size_t mostOwnHeaders = 6;
constexpr std::size_t mostLibraryHeaders = 14;

/// What a source reads, directly or by way of others.
struct Reach {
  std::set<fs::path> own;
  std::set<std::string> libraries;
};

class Includes final {
public:
  Includes() {
    for (const char* building : {"src", "platform", "simhost", "tests"})
      for (const fs::path& file : house::sourcesBelow(building)) {
        direct_[file.lexically_normal()] = {};
        for (const std::string& include : house::libraryIncludesOf(file))
          direct_[file].libraries.insert(include);
      }
    for (auto& [file, reach] : direct_)
      for (const std::string& include : house::projectIncludesOf(file))
        for (const fs::path& root : {fs::path("src"), fs::path(), file.parent_path()})
          if (const auto found = (root / include).lexically_normal(); direct_.contains(found))
            reach.own.insert(found);
  }

  [[nodiscard]] std::map<fs::path, Reach> ofSources() const {
    std::map<fs::path, Reach> all;
    for (const auto& [file, reach] : direct_)
      if (file.extension() == ".cpp") all[file] = of(file);
    return all;
  }

  [[nodiscard]] Reach of(const fs::path& file) const {
    Reach whole = direct_.at(file);
    std::vector<fs::path> open(whole.own.begin(), whole.own.end());
    while (!open.empty()) {
      const Reach& next = direct_.at(open.back());
      open.pop_back();
      whole.libraries.insert(next.libraries.begin(), next.libraries.end());
      for (const fs::path& header : next.own)
        if (whole.own.insert(header).second) open.push_back(header);
    }
    return whole;
  }

private:
  std::map<fs::path, Reach> direct_;
};

} // namespace

TEST_CASE("the widest headers pull in little, and few sources compile a heavy library") {
  const Includes includes;
  std::map<fs::path, std::size_t> readers;
  std::map<std::string, std::size_t> libraryReaders;
  for (const auto& [source, reach] : includes.ofSources()) {
    for (const fs::path& header : reach.own)
      ++readers[header];
    for (const std::string& header : reach.libraries)
      ++libraryReaders[header];
  }
  for (const HeavyHeader& heavy : heavyHeaders) {
    CAPTURE(heavy.name);
    CHECK(libraryReaders[heavy.name] <= heavy.mostSources);
  }

  std::vector<std::pair<std::size_t, fs::path>> widest;
  for (const auto& [header, count] : readers)
    widest.emplace_back(count, header);
  REQUIRE(widest.size() > widestCount);
  std::sort(widest.rbegin(), widest.rend());
  widest.resize(widestCount);
  CHECK(widest.front().first > 100); // otherwise includes are not found at all
  for (const auto& [count, header] : widest) {
    const Reach reach = includes.of(header);
    CAPTURE(header.string());
    CHECK(reach.own.size() <= mostOwnHeaders);
    CHECK(reach.libraries.size() <= mostLibraryHeaders);
    for (const HeavyHeader& heavy : heavyHeaders)
      CHECK_FALSE(reach.libraries.contains(heavy.name));
  }
}
