// File names between wide text and the file system, whose names are UTF-8 here.
#pragma once

#include "text/encoding.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace simhost {

[[nodiscard]] inline std::filesystem::path pathOf(std::wstring_view text) {
  return std::filesystem::path(brenvolt::toUtf8(text));
}

[[nodiscard]] inline std::wstring textOfPath(const std::filesystem::path& path) {
  return brenvolt::fromUtf8(path.native());
}

} // namespace simhost
