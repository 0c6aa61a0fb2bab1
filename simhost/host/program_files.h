// Where the files are that come with the programs: beside them in a build folder, in "share/brenvolt" and "lib/brenvolt"
// of the same prefix when they are installed. Nothing depends on where that prefix is.
#pragma once

#include <filesystem>
#include <string_view>

namespace simhost {

/// A folder of data: "resources", "docs" or "site".
[[nodiscard]] std::filesystem::path dataFolder(std::string_view name);

} // namespace simhost
