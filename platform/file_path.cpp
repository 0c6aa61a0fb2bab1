#include "platform/file_path.h"

#include "platform/file_calls.h"
#include "text/encoding.h"

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brenvolt {

namespace {

/// As many links as the system itself follows.
constexpr int mostLinks = 40;

} // namespace

std::wstring systemReason(int errorNumber) {
  return fromUtf8(std::generic_category().message(errorNumber));
}

std::string fileBehindLinks(std::wstring_view path) {
  namespace fs = std::filesystem;
  std::string name = toUtf8(path);
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(name.c_str(), nullptr), &std::free);
  if (real) return real.get();
  std::error_code error;
  for (int link = 0; link < mostLinks && fs::is_symlink(name, error); ++link) {
    const fs::path target = fs::read_symlink(name, error);
    if (error) break;
    name = (fs::path(name).parent_path() / target).string(); // an absolute target replaces the folder
  }
  return name;
}

std::string parentFolder(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

void pauseForStaleName() {
  std::this_thread::sleep_for(std::chrono::milliseconds(2));
}

bool isNamed(int descriptor, const std::string& path) {
  struct stat opened {};
  struct stat named {};
  // A folder on the network may answer for a name from memory; opening goes to the server.
  const Descriptor present(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (!present.isOpen() && errno != EACCES) return false;
  const int found = present.isOpen() ? ::fstat(present.number(), &named) : ::lstat(path.c_str(), &named);
  return found == 0 && ::fstat(descriptor, &opened) == 0 && opened.st_nlink > 0 &&
         opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

bool syncFolder(const std::string& folder) {
  const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!descriptor.isOpen()) return errno == EACCES;
  return fileCalls().sync(descriptor.number()) == 0 || errno == EINVAL || errno == ENOTSUP;
}

void Descriptor::close() {
  if (number_ >= 0) ::close(number_);
  number_ = -1;
}

} // namespace brenvolt
