#include "platform/file_replace.h"

#include "text/encoding.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brenvolt {

namespace {

constexpr int nameAttempts = 100;

std::wstring reasonOf(int errorNumber) {
  return fromUtf8(std::strerror(errorNumber));
}

std::string parentFolder(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

/// The file behind a link; the name itself when there is no file yet.
std::string resolved(std::wstring_view path) {
  const std::string name = toUtf8(path);
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(name.c_str(), nullptr), &std::free);
  return real ? std::string(real.get()) : name;
}

/// A descriptor of our own, closed at the end.
class Descriptor final {
public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  [[nodiscard]] int number() const { return number_; }
  /// False when the system reports only now that bytes were lost.
  [[nodiscard]] bool close() {
    const int number = number_;
    number_ = -1;
    return ::close(number) == 0;
  }

private:
  int number_;
};

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

} // namespace

std::optional<FileStamp> fileStamp(std::wstring_view path) {
  struct stat status {};
  if (::stat(toUtf8(path).c_str(), &status) != 0) return std::nullopt;
  return FileStamp{
      static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino),
      static_cast<std::uint64_t>(status.st_size), status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

std::optional<std::wstring> writeObstacle(std::wstring_view path) {
  const std::string target = resolved(path);
  struct stat status {};
  if (::stat(target.c_str(), &status) == 0) {
    if (S_ISDIR(status.st_mode)) return L"is a folder";
    if (!S_ISREG(status.st_mode)) return L"is not a regular file";
    if (::access(target.c_str(), W_OK) != 0) return reasonOf(errno);
  }
  if (::access(parentFolder(target).c_str(), W_OK | X_OK) != 0) {
    return L"its folder cannot be written: " + reasonOf(errno);
  }
  return std::nullopt;
}

std::optional<std::wstring> replaceFile(std::wstring_view path, std::string_view bytes) {
  if (auto obstacle = writeObstacle(path)) return obstacle;
  const std::string target = resolved(path);
  std::string beside;
  int number = -1;
  for (int attempt = 0; attempt < nameAttempts && number < 0; ++attempt) {
    beside = target + ".new" + std::to_string(attempt);
    number = ::open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (number < 0 && errno != EEXIST) break;
  }
  if (number < 0) return L"cannot be written: " + reasonOf(errno);

  Descriptor file(number);
  const auto fail = [&beside]() -> std::optional<std::wstring> {
    const int errorNumber = errno;
    ::unlink(beside.c_str());
    return L"cannot be written: " + reasonOf(errorNumber);
  };
  struct stat old {};
  const bool isReplaced = ::stat(target.c_str(), &old) == 0;
  if (isReplaced && ::fchmod(file.number(), old.st_mode & 07777) != 0) return fail();
  if (!writeAll(file.number(), bytes)) return fail();
  if (::fsync(file.number()) != 0) return fail();
  if (!file.close()) return fail();
  if (::rename(beside.c_str(), target.c_str()) != 0) return fail();
  return std::nullopt;
}

} // namespace brenvolt
