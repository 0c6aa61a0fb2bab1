// Files that can be made again at any time, such as the parts of a set. They are not synced, which takes longer than to
// make them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brenvolt {

/// Writes the file under the name `beside`, of the same file system, and renames it: a reader finds the old file or the
/// whole new one, also when the program is killed. After a power failure the file can be empty or shorter, so a reader
/// has to check it. What a killed program has left beside is left to the caller. The reason on a failure.
[[nodiscard]] std::optional<std::wstring> replaceCachedFile(
    const std::string& path, const std::string& beside, std::string_view bytes);

} // namespace brenvolt
