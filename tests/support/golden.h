// Whole results against files that were reviewed. On a difference the actual bytes are written next to the expected
// ones with the suffix ".actual"; `./brenvolt accept` accepts them.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace brenvolt::test {

[[nodiscard]] inline std::string bytesOf(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

inline void writeBytes(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

[[nodiscard]] inline bool matchesGolden(const std::filesystem::path& expected, const std::string& actual) {
  const std::filesystem::path beside = expected.string() + ".actual";
  std::error_code error;
  std::filesystem::remove(beside, error);
  if (std::filesystem::exists(expected) && bytesOf(expected) == actual) return true;
  std::filesystem::create_directories(expected.parent_path());
  writeBytes(beside, actual);
  return false;
}

} // namespace brenvolt::test
