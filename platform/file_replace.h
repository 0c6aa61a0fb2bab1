// Writes a whole file so that no reader ever finds half of it: written to a temporary file in the same folder, flushed
// to disk, renamed. Every file that a user owns is written here.
#pragma once

#include "platform/file_path.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brenvolt {

/// Which state of a file was read: to notice that another program has written it since.
struct FileStamp {
  std::uint64_t device = 0;
  std::uint64_t node = 0;
  std::uint64_t size = 0;
  std::int64_t seconds = 0;
  std::int64_t nanoseconds = 0;

  bool operator==(const FileStamp&) const = default;
};

/// Nothing when the file does not exist.
[[nodiscard]] std::optional<FileStamp> fileStamp(std::wstring_view path);

/// Why a file could not be written at `path` (a folder of this name, a file without write permission, no folder, no
/// right to write there); nothing when all looks well. Writes nothing.
[[nodiscard]] std::optional<std::wstring> writeObstacle(std::wstring_view path);

struct FileFault {
  enum class Step {
    open, ///< no new file could be made, or the old one may not be written
    write ///< any later step
  };

  Step step = Step::open;
  std::wstring reason;
};

/// The next content of a file. Until `commit` the old file is as it was, and without `commit` it stays so.
///
/// The new file has a name of its own, opened exclusively and locked: any number of programs write at the same moment,
/// the last to commit wins. What a killed program has left is recognised by its missing lock and removed by the next
/// writer. A file keeps its permissions, owner, group and access list as far as this user may set them; a symbolic link
/// keeps pointing to the file that is replaced.
class FileReplacement final {
public:
  explicit FileReplacement(std::wstring_view path);
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;
  ~FileReplacement();

  /// The first failure; every later step does nothing then.
  [[nodiscard]] const std::optional<FileFault>& fault() const { return fault_; }
  /// Appends to the new content.
  void write(std::string_view bytes);
  /// For a library that writes by name: the file of this name, which it makes itself, becomes the new content. Its
  /// companions (this name with something after it) are removed at the end.
  [[nodiscard]] std::wstring nameToWrite();
  /// Puts the new content in place of the old file. Nothing on success.
  [[nodiscard]] std::optional<FileFault> commit();

private:
  void openBeside();
  void fail(FileFault::Step step, std::wstring reason);
  [[nodiscard]] bool takeOverAttributes(int descriptor) const;
  [[nodiscard]] bool bringToDisk();

  std::string target_;
  std::string beside_;  ///< our own name, empty when there is none
  std::string content_; ///< the file that is renamed
  Descriptor file_;
  std::optional<FileFault> fault_;
};

/// Puts `bytes` in place of the file. The reason on a failure: the old file is unchanged then.
/// @{
[[nodiscard]] std::optional<FileFault> writeWholeFile(std::wstring_view path, std::string_view bytes);
[[nodiscard]] std::optional<std::wstring> replaceFile(std::wstring_view path, std::string_view bytes);
/// @}

/// A file that is kept before its name gets another content.
struct KeptFile {
  std::wstring path; ///< empty when there was no file
  std::optional<FileFault> fault;
};

/// Gives the file a second name in the same folder: "NAME.WORD-N.EXT", N the first free number from 1.
[[nodiscard]] KeptFile keepBeside(std::wstring_view path, std::wstring_view word);

} // namespace brenvolt
