// Reading a whole file at once.
#pragma once

#include <string>
#include <string_view>

namespace brenvolt {

struct FileContent {
  std::string bytes;
  std::wstring fault; ///< why the file cannot be read; empty on success
  bool exists = true;

  [[nodiscard]] bool isRead() const { return fault.empty(); }
};

/// A folder or a device cannot be read as a file.
[[nodiscard]] FileContent readWholeFile(std::wstring_view path);

} // namespace brenvolt
