#include "platform/file_read.h"

#include "platform/file_path.h"
#include "text/encoding.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brenvolt {

namespace {

FileContent readOnce(std::wstring_view path, int& fault) {
  FileContent content;
  const auto failed = [&content](std::wstring reason) {
    content.fault = std::move(reason);
    content.bytes.clear();
    return content;
  };
  fault = 0;
  const auto failedNow = [&] {
    fault = errno;
    return failed(systemReason(fault));
  };
  // Without waiting: a pipe without a writer would block the reader for ever.
  const Descriptor file(::open(toUtf8(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file.isOpen()) {
    content.exists = errno != ENOENT && errno != ENOTDIR;
    return failedNow();
  }
  struct stat status {};
  if (::fstat(file.number(), &status) != 0) return failedNow();
  if (S_ISDIR(status.st_mode)) return failed(L"is a folder");
  if (!S_ISREG(status.st_mode)) return failed(L"is not a regular file");
  constexpr off_t roomAtOnce = 1 << 28; // a larger size may be that of holes
  content.bytes.reserve(static_cast<std::size_t>(std::min(status.st_size, roomAtOnce)));
  char block[65536];
  for (;;) {
    const ssize_t count = ::read(file.number(), block, sizeof block);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return failedNow();
    if (count == 0) return content;
    content.bytes.append(block, static_cast<std::size_t>(count));
  }
}

} // namespace

FileContent readWholeFile(std::wstring_view path) {
  int fault = 0;
  FileContent content = readOnce(path, fault);
  for (int attempt = 0; fault == ESTALE && attempt < staleAttempts; ++attempt) {
    pauseForStaleName();
    content = readOnce(path, fault);
  }
  return content;
}

} // namespace brenvolt
