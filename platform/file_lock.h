// Who is at work on a file: office programs lock what they have open, and our own processes take turns.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brenvolt {

/// True when the file exists, could be written by this user, and is locked by another program (either kind of lock
/// that the system knows). A file that cannot be opened for writing is not in use: it is only read anyway.
[[nodiscard]] bool isFileInUse(std::wstring_view path);

/// A turn at work that one process at a time may do, held from construction to destruction.
class FileLock final {
public:
  /// Waits for the lock on `path`, an empty file of its own beside what is worked on; it is made when missing and
  /// stays, since a lock on a file that somebody removes guards nothing.
  explicit FileLock(std::wstring_view path);
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  ~FileLock();

  /// Why there is no lock (no folder, no right to write there); nothing when it is held.
  [[nodiscard]] const std::optional<std::wstring>& fault() const { return fault_; }

private:
  int descriptor_;
  std::optional<std::wstring> fault_;
};

} // namespace brenvolt
