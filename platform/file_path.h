// Names of files on the disk, and descriptors, for the other sources of file_*.
#pragma once

#include <string>
#include <string_view>

namespace brenvolt {

/// The system's message for an error number.
[[nodiscard]] std::wstring systemReason(int errorNumber);

/// The file that `path` leads to, links followed, also a link to a file that does not exist yet.
[[nodiscard]] std::string fileBehindLinks(std::wstring_view path);

/// "." for a name without a folder.
[[nodiscard]] std::string parentFolder(const std::string& path);

/// How often something is tried again when it fails because another machine has replaced a file of a network folder
/// (ESTALE), with a short pause before each.
inline constexpr int staleAttempts = 50;
void pauseForStaleName();

/// Whether an open file is the one that has this name now.
[[nodiscard]] bool isNamed(int descriptor, const std::string& path);

/// A new name is on the disk only when its folder is. Some file systems have nothing to do for that and refuse, and a
/// folder that may be written but not listed cannot be opened. False on a failure, the reason in `errno`.
[[nodiscard]] bool syncFolder(const std::string& folder);

/// Closes a descriptor at the end of a scope; a negative one means none.
class Descriptor final {
public:
  explicit Descriptor(int number = -1) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { close(); }

  [[nodiscard]] bool isOpen() const { return number_ >= 0; }
  [[nodiscard]] int number() const { return number_; }

  void close();
  void reset(int number) {
    close();
    number_ = number;
  }

private:
  int number_;
};

} // namespace brenvolt
