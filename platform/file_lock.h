// Which program uses a file: office programs lock the files that they have open, and our own programs take turns.
#pragma once

#include "platform/file_path.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace brenvolt {

/// True when the file exists, could be written by this user, and is locked by another program (either kind of lock
/// that the system knows). A file that cannot be opened for writing is not in use: it is only read anyway.
[[nodiscard]] bool isFileInUse(std::wstring_view path);

/// The user who changes a file, for messages.
struct FileUser {
  std::wstring user;
  std::wstring machine;
  std::wstring process; ///< its number
};

/// This process. Names that the system does not know are empty.
[[nodiscard]] FileUser thisFileUser();
/// "anna on ws12, process 4711".
[[nodiscard]] std::wstring fileUserText(const FileUser& user);

/// A turn at changing a file, held from construction to destruction. All code that changes a file which another
/// program may change at the same moment reads, changes and writes it within a turn.
///
/// The lock is a file next to the changed one, its name with ".lock" appended, which names the holder. The system
/// releases the lock of a program that ends in any way; the remaining file is used by the next turn.
class FileLock final {
public:
  static constexpr std::chrono::seconds defaultPatience{10};
  static constexpr std::chrono::hours wholeDay{24};

  /// Waits for the end of another program's turn at most so long. Where turns end and others begin, it waits on, at
  /// most thirty times as long.
  explicit FileLock(std::wstring_view path, std::chrono::milliseconds patience = defaultPatience);
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  ~FileLock();

  /// Why there is no turn: no folder, no right to write there, or another program that does not end its own; nothing
  /// when the lock is held.
  [[nodiscard]] const std::optional<std::wstring>& fault() const { return fault_; }
  /// The other program, if it is the reason and is known.
  [[nodiscard]] const std::optional<FileUser>& holder() const { return holder_; }

private:
  /// Opens the lock file, made when missing.
  [[nodiscard]] bool open();
  void acquire(std::chrono::milliseconds patience);
  void writeHolder() const;
  [[nodiscard]] std::optional<FileUser> readHolder() const;

  std::string path_;
  Descriptor file_;
  std::optional<std::wstring> fault_;
  std::optional<FileUser> holder_;
};

} // namespace brenvolt
