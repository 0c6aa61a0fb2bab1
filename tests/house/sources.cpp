// Reads sources for the project's rules.
#include "sources.h"

#include <algorithm>
#include <fstream>
#include <string_view>

namespace fs = std::filesystem;

namespace house {

namespace {

std::vector<std::string> includesOf(const fs::path& file, std::string_view opening, char closing) {
  std::vector<std::string> includes;
  for (const std::string& line : linesOf(file)) {
    if (!line.starts_with(opening)) continue;
    const std::size_t begin = opening.size();
    includes.push_back(line.substr(begin, line.find(closing, begin) - begin));
  }
  return includes;
}

} // namespace

std::vector<fs::path> sourcesBelow(const fs::path& folder) {
  std::vector<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder))
    if (entry.path().extension() == ".h" || entry.path().extension() == ".cpp") files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<std::string> linesOf(const fs::path& file) {
  std::ifstream in(file);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);)
    lines.push_back(line);
  return lines;
}

std::vector<std::string> projectIncludesOf(const fs::path& file) {
  return includesOf(file, "#include \"", '"');
}

std::vector<std::string> libraryIncludesOf(const fs::path& file) {
  return includesOf(file, "#include <", '>');
}

} // namespace house
