#include "platform/file_cache.h"

#include "platform/file_calls.h"
#include "platform/file_path.h"
#include "text/encoding.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace brenvolt {

std::optional<std::wstring> replaceCachedFile(
    const std::string& path, const std::string& beside, std::string_view bytes) {
  constexpr mode_t permissions = 0666;
  fileCalls().unlink(beside.c_str()); // what a killed program has left
  const int file = fileCalls().open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, permissions);
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

std::optional<std::wstring> syncFiles(const std::string& folder, const std::vector<std::string>& paths) {
  const auto forEach = [&paths](auto work) -> std::optional<std::wstring> {
    for (const std::string& path : paths) {
      const Descriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
      if (!file.isOpen() || !work(file.number())) return fromUtf8(path) + L": " + systemReason(errno);
    }
    return std::nullopt;
  };
  // Once all are on their way, the first sync takes the others with it. A file system that cannot begin early syncs each.
  static_cast<void>(forEach([](int file) {
    static_cast<void>(::sync_file_range(file, 0, 0, SYNC_FILE_RANGE_WRITE));
    return true;
  }));
  if (auto fault = forEach([](int file) { return fileCalls().sync(file) == 0; })) return fault;
  if (syncFolder(folder)) return std::nullopt;
  return fromUtf8(folder) + L": " + systemReason(errno);
}

} // namespace brenvolt
