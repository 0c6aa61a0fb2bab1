#include "platform/file_calls.h"

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace brenvolt {

FileCalls& fileCalls() {
  static FileCalls calls{
      [](const char* path, int flags, mode_t mode) { return ::open(path, flags, mode); },
      [](int descriptor, const void* bytes, std::size_t count) { return ::write(descriptor, bytes, count); },
      [](int descriptor) { return ::fsync(descriptor); },
      [](const char* from, const char* to) { return std::rename(from, to); },
      [](const char* from, const char* to) { return ::link(from, to); },
      [](const char* path) { return ::unlink(path); },
  };
  return calls;
}

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = fileCalls().write(descriptor, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

} // namespace brenvolt
