// Files that can be made again at any time, such as the parts of a set and its sheets. Each for itself is not synced,
// which takes longer than to make it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// Writes the file under the name `beside`, of the same file system, and renames it: a reader finds the old file or the
/// whole new one, also when the program is killed. After a power failure the file can be empty or shorter, so a reader
/// has to check it. What a killed program has left under `beside` is removed. The reason on a failure.
[[nodiscard]] std::optional<std::wstring> replaceCachedFile(
    const std::string& path, const std::string& beside, std::string_view bytes);

/// Has these files of a folder on the disk, and the folder itself: many together take little longer than one. The path
/// and the reason on a failure.
[[nodiscard]] std::optional<std::wstring> syncFiles(
    const std::string& folder, const std::vector<std::string>& paths);

} // namespace brenvolt
