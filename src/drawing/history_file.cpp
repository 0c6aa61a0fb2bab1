#include "drawing/history_file.h"

#include "text/encoding.h"
#include "text/numbers.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>

namespace brenvolt {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view byteOrderMark = "\xFF\xFE";

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

bool writeAll(File file, std::string_view utf16) {
  const bool written =
      std::fwrite(byteOrderMark.data(), 1, byteOrderMark.size(), file.get()) == byteOrderMark.size() &&
      std::fwrite(utf16.data(), 1, utf16.size(), file.get()) == utf16.size();
  // Closed in any case; a full disk may show only now.
  return std::fclose(file.release()) == 0 && written;
}

/// True when there was nothing to keep.
bool keepBeside(const fs::path& path) {
  std::error_code error;
  if (!fs::exists(path, error)) return !error;
  for (int number = 1;; ++number) {
    fs::path kept = path;
    kept.replace_extension(".damaged-" + toUtf8(formatInt(number)) + path.extension().string());
    if (fs::exists(kept, error)) continue;
    if (error) return false;
    if (fs::copy_file(path, kept, fs::copy_options::none, error)) return true;
    fs::remove(kept, error);
    return false;
  }
}

} // namespace

std::wstring folderOf(std::wstring_view path) {
  // Both separators: the workbook's path comes from the host in the manner of the system that it runs on.
  const std::size_t separator = path.find_last_of(L"\\/");
  return separator == std::wstring_view::npos ? std::wstring() : std::wstring(path.substr(0, separator + 1));
}

FileWriteResult writeHistoryFile(const std::wstring& path, std::string_view utf16, OldFile oldFile) {
  const fs::path target(toUtf8(path));
  fs::path temporary = target;
  temporary += ".new";

  File file(std::fopen(temporary.c_str(), "wb"));
  if (file == nullptr) return FileWriteResult::openFailed;

  std::error_code error;
  const bool ready =
      writeAll(std::move(file), utf16) && (oldFile == OldFile::overwrite || keepBeside(target));
  if (ready) fs::rename(temporary, target, error);
  if (ready && !error) return FileWriteResult::done;
  fs::remove(temporary, error);
  return FileWriteResult::writeFailed;
}

} // namespace brenvolt
