// How the bytes of a history reach the disk: never a moment in which neither the old nor the new file is whole.
#pragma once

#include <string>
#include <string_view>

namespace brenvolt {

enum class OldFile {
  overwrite,
  keepBeside, ///< copied to "NAME.damaged-N.EXT", N the first free number from 1
};

enum class FileWriteResult {
  done,
  openFailed,  ///< no file could be made in the folder
  writeFailed, ///< any later failure; the old file is as it was
};

/// The folder of a path with its last separator; empty when the path has none.
[[nodiscard]] std::wstring folderOf(std::wstring_view path);

/// Writes UTF-16LE text behind the byte-order mark FF FE: first into "PATH.new", then renamed over `path`.
[[nodiscard]] FileWriteResult writeHistoryFile(
    const std::wstring& path, std::string_view utf16, OldFile oldFile);

} // namespace brenvolt
