// Writing a whole file so that nobody ever finds half of it: beside itself first, then renamed over the old one.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brenvolt {

/// Which state of a file was read: to notice that somebody else has written it since.
struct FileStamp {
  std::uint64_t device = 0;
  std::uint64_t node = 0;
  std::uint64_t size = 0;
  std::int64_t seconds = 0;
  std::int64_t nanoseconds = 0;

  bool operator==(const FileStamp&) const = default;
};

/// Nothing when there is no such file.
[[nodiscard]] std::optional<FileStamp> fileStamp(std::wstring_view path);

/// Why a file could not be written at `path` (a folder of this name, no parent folder, no right to write there);
/// nothing when all looks well. Writes nothing.
[[nodiscard]] std::optional<std::wstring> writeObstacle(std::wstring_view path);

/// Puts `bytes` in place of the file. The reason on a failure: the old file then still stands, and nothing is left
/// beside it. An existing file keeps its permissions; a link keeps pointing to the file that is replaced.
[[nodiscard]] std::optional<std::wstring> replaceFile(std::wstring_view path, std::string_view bytes);

} // namespace brenvolt
