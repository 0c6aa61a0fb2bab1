// Adding lines at the end of a file that keeps growing, such as a journal.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace brenvolt {

/// Adds lines at the end of a file, which is made when it is missing; a line that a killed program left without its end
/// is ended first. A new file gets the permissions and the group of the file `like`, whose users are its users.
/// The file's size afterwards, nothing on a failure.
[[nodiscard]] std::optional<std::uint64_t> appendToFile(
    std::wstring_view path, std::string_view lines, std::wstring_view like);

/// Takes the last bytes away again, if they are still these.
void cutFromFile(std::wstring_view path, std::string_view lines);

} // namespace brenvolt
