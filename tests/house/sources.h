// The sources of the project and their includes, read as text.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace house {

/// All .h and .cpp files below a folder, sorted.
[[nodiscard]] std::vector<std::filesystem::path> sourcesBelow(const std::filesystem::path& folder);
[[nodiscard]] std::vector<std::string> linesOf(const std::filesystem::path& file);
/// The names in quotes.
[[nodiscard]] std::vector<std::string> projectIncludesOf(const std::filesystem::path& file);
/// The names in angle brackets.
[[nodiscard]] std::vector<std::string> libraryIncludesOf(const std::filesystem::path& file);

} // namespace house
