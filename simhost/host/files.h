// Whole files: read at once, and written beside themselves and renamed, so that the old content stays until the new
// one is complete.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace simhost {

/// The bytes of a file, nothing when it cannot be read.
[[nodiscard]] std::optional<std::string> readFile(const std::filesystem::path& file);

/// Makes missing folders first. The reason when it could not be written, empty on success.
[[nodiscard]] std::string replaceFile(const std::filesystem::path& file, std::string_view bytes);

} // namespace simhost
