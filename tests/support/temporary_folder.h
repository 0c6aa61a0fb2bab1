// A folder for one test, gone at its end.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace brenvolt::test {

class TemporaryFolder final {
public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "brenvolt-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = pattern;
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code error;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, error);
    std::filesystem::remove_all(path_, error);
  }

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  [[nodiscard]] std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

private:
  std::filesystem::path path_;
};

} // namespace brenvolt::test
