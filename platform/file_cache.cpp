#include "platform/file_cache.h"

#include "platform/file_calls.h"
#include "platform/file_path.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace brenvolt {

std::optional<std::wstring> replaceCachedFile(
    const std::string& path, const std::string& beside, std::string_view bytes) {
  constexpr mode_t permissions = 0666;
  const int file = fileCalls().open(beside.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, permissions);
  if (file < 0) return L"cannot be written: " + systemReason(errno);
  // A network folder may refuse only at the end.
  const bool isWritten = writeAll(file, bytes);
  int reason = errno;
  const bool isClosed = ::close(file) == 0;
  if (isWritten && !isClosed) reason = errno;
  if (isWritten && isClosed) {
    if (fileCalls().rename(beside.c_str(), path.c_str()) == 0) return std::nullopt;
    reason = errno;
  }
  fileCalls().unlink(beside.c_str());
  return L"cannot be written: " + systemReason(reason);
}

} // namespace brenvolt
