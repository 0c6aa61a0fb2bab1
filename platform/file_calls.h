// The calls that change files on the disk, in one table. Tests replace them to let a disk fill up, a program be killed
// or the power fail at each of them.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string_view>

namespace brenvolt {

/// As the system's functions of these names: negative on a failure, the reason in `errno`.
struct FileCalls {
  int (*open)(const char* path, int flags, mode_t mode);
  ssize_t (*write)(int descriptor, const void* bytes, std::size_t count);
  int (*sync)(int descriptor);
  int (*rename)(const char* from, const char* to);
  int (*link)(const char* from, const char* to);
  int (*unlink)(const char* path);
};

/// The table in use, one for the process.
[[nodiscard]] FileCalls& fileCalls();

/// Writes on after a part was written or a signal came. False on a failure, the reason in `errno`.
[[nodiscard]] bool writeAll(int descriptor, std::string_view bytes);

} // namespace brenvolt
