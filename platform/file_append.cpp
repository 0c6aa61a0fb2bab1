#include "platform/file_append.h"

#include "platform/file_calls.h"
#include "platform/file_path.h"
#include "text/encoding.h"

#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brenvolt {

namespace {

/// Negative on a failure.
off_t sizeOf(const Descriptor& file) {
  struct stat status {};
  return file.isOpen() && ::fstat(file.number(), &status) == 0 && S_ISREG(status.st_mode) ? status.st_size
                                                                                          : -1;
}

} // namespace

std::optional<std::uint64_t> appendToFile(
    std::wstring_view path, std::string_view lines, std::wstring_view like) {
  const Descriptor file(
      fileCalls().open(toUtf8(path).c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK, 0666));
  const off_t size = sizeOf(file);
  if (size < 0) return std::nullopt;
  if (struct stat model{}; size == 0 && ::stat(toUtf8(like).c_str(), &model) == 0) {
    static_cast<void>(::fchown(file.number(), static_cast<uid_t>(-1), model.st_gid) == 0);
    static_cast<void>(::fchmod(file.number(), model.st_mode & 0666) == 0);
  }
  char last = '\n';
  const bool isEnded = size == 0 || (::pread(file.number(), &last, 1, size - 1) == 1 && last == '\n');
  const std::string text = (isEnded ? "" : "\n") + std::string(lines);
  // A part of a record is none: it would only make the next line unreadable.
  const bool isWhole = writeAll(file.number(), text) && fileCalls().sync(file.number()) == 0;
  if (!isWhole) {
    static_cast<void>(::ftruncate(file.number(), size) == 0);
    return std::nullopt;
  }
  return static_cast<std::uint64_t>(size) + text.size();
}

void cutFromFile(std::wstring_view path, std::string_view lines) {
  const Descriptor file(::open(toUtf8(path).c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK));
  const off_t size = sizeOf(file);
  const auto length = static_cast<off_t>(lines.size());
  if (size < length) return;
  std::string last(lines.size(), '\0');
  if (::pread(file.number(), last.data(), last.size(), size - length) == length && last == lines)
    static_cast<void>(::ftruncate(file.number(), size - length) == 0);
}

} // namespace brenvolt
