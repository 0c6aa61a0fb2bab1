#include "platform/file_replace.h"

#include "platform/file_calls.h"
#include "text/encoding.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace brenvolt {

namespace {

namespace fs = std::filesystem;

constexpr int nameAttempts = 1000;
constexpr std::string_view besideEnding = ".new";
constexpr std::string_view dataEnding = "-data";
/// Leaves room for a suffix within the 255 bytes of a name that a file system allows.
constexpr std::size_t longestStem = 200;

/// The part that the names of all new files of a target have in common.
std::string stemOf(const std::string& target) {
  const std::size_t name = target.rfind('/') + 1;
  return target.substr(0, std::min(target.size(), name + longestStem)) + ".";
}

bool areDigits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/// "PROCESS-NUMBER.new", after the stem.
bool isBesideName(std::string_view rest) {
  if (!rest.ends_with(besideEnding)) return false;
  rest.remove_suffix(besideEnding.size());
  const std::size_t dash = rest.find('-');
  return dash != std::string_view::npos && areDigits(rest.substr(0, dash)) &&
         areDigits(rest.substr(dash + 1));
}

/// Removes the files with this name and with this name and a suffix.
void removeWithCompanions(const std::string& path) {
  std::error_code error;
  const std::string start = fs::path(path).filename().string();
  for (const fs::directory_entry& entry : fs::directory_iterator(parentFolder(path), error))
    if (entry.path().filename().string().starts_with(start)) fileCalls().unlink(entry.path().c_str());
}

/// A program that writes holds the lock on its file; the system releases it however the program ends.
void removeIfAbandoned(const std::string& path) {
  Descriptor file(::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
  if (!file.isOpen()) file.reset(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
  if (!file.isOpen() || ::flock(file.number(), LOCK_EX | LOCK_NB) != 0) return;
  // The file may have got its final name meanwhile, and the name a next file.
  if (isNamed(file.number(), path)) removeWithCompanions(path);
}

void removeLeftovers(const std::string& target) {
  const std::string stem = fs::path(stemOf(target)).filename().string();
  std::vector<std::string> found;
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(parentFolder(target), error)) {
    const std::string name = entry.path().filename().string();
    if (name.starts_with(stem) && isBesideName(std::string_view(name).substr(stem.size())))
      found.push_back(entry.path().string());
  }
  for (const std::string& path : found)
    removeIfAbandoned(path);
}

/// False when another writer took the file for a leftover between its making and its locking.
bool isOurs(int descriptor, const std::string& name) {
  if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return false;
  return isNamed(descriptor, name);
}

/// Access lists and the like; what this file system or this user cannot have stays away.
void copyExtendedAttributes(const std::string& from, int to) {
  const ssize_t size = ::listxattr(from.c_str(), nullptr, 0);
  if (size <= 0) return;
  std::string names(static_cast<std::size_t>(size), '\0');
  const ssize_t listed = ::listxattr(from.c_str(), names.data(), names.size());
  for (ssize_t begin = 0; begin < listed;) {
    const char* const name = names.data() + begin;
    begin += static_cast<ssize_t>(std::string_view(name).size()) + 1;
    const ssize_t length = ::getxattr(from.c_str(), name, nullptr, 0);
    if (length < 0) continue;
    std::string value(static_cast<std::size_t>(length), '\0');
    if (::getxattr(from.c_str(), name, value.data(), value.size()) == length)
      static_cast<void>(::fsetxattr(to, name, value.data(), value.size(), 0));
  }
}

std::optional<std::wstring> obstacleNow(const std::string& target, int& fault) {
  fault = 0;
  struct stat status {};
  if (::stat(target.c_str(), &status) == 0) {
    if (S_ISDIR(status.st_mode)) return L"is a folder";
    if (!S_ISREG(status.st_mode)) return L"is not a regular file";
    // Who takes every write permission away means everybody, an administrator too.
    if ((status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) return L"has no write permission";
    if (::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) return systemReason(fault = errno);
  }
  if (::faccessat(AT_FDCWD, parentFolder(target).c_str(), W_OK | X_OK, AT_EACCESS) != 0)
    return L"its folder cannot be written: " + systemReason(fault = errno);
  return std::nullopt;
}

std::optional<std::wstring> obstacleAt(const std::string& target) {
  int fault = 0;
  std::optional<std::wstring> obstacle = obstacleNow(target, fault);
  for (int attempt = 0; fault == ESTALE && attempt < staleAttempts; ++attempt) {
    pauseForStaleName();
    obstacle = obstacleNow(target, fault);
  }
  return obstacle;
}

} // namespace

std::optional<FileStamp> fileStamp(std::wstring_view path) {
  struct stat status {};
  if (::stat(toUtf8(path).c_str(), &status) != 0) return std::nullopt;
  return FileStamp{
      static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino),
      static_cast<std::uint64_t>(status.st_size), status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

std::optional<std::wstring> writeObstacle(std::wstring_view path) {
  return obstacleAt(fileBehindLinks(path));
}

FileReplacement::FileReplacement(std::wstring_view path) : target_(fileBehindLinks(path)) {
  if (auto obstacle = obstacleAt(target_)) {
    fail(FileFault::Step::open, std::move(*obstacle));
    return;
  }
  removeLeftovers(target_);
  openBeside();
  if (!file_.isOpen()) fail(FileFault::Step::open, systemReason(errno));
}

FileReplacement::~FileReplacement() {
  if (!beside_.empty()) removeWithCompanions(beside_);
}

void FileReplacement::openBeside() {
  struct stat old {};
  const mode_t mode = ::stat(target_.c_str(), &old) == 0 ? (old.st_mode & 0777) | S_IRUSR | S_IWUSR : 0666;
  const std::string start = stemOf(target_) + std::to_string(::getpid()) + "-";
  for (int attempt = 0; attempt < nameAttempts; ++attempt) {
    std::string name = start + std::to_string(attempt) + std::string(besideEnding);
    file_.reset(fileCalls().open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    if (!file_.isOpen() && errno != EEXIST) return;
    if (!file_.isOpen() || !isOurs(file_.number(), name)) continue;
    beside_ = std::move(name);
    content_ = beside_;
    return;
  }
  file_.close();
  errno = EEXIST;
}

void FileReplacement::fail(FileFault::Step step, std::wstring reason) {
  if (!fault_) fault_ = FileFault{step, std::move(reason)};
}

void FileReplacement::write(std::string_view bytes) {
  if (!fault_ && !writeAll(file_.number(), bytes)) fail(FileFault::Step::write, systemReason(errno));
}

std::wstring FileReplacement::nameToWrite() {
  content_ = beside_ + std::string(dataEnding);
  return fromUtf8(content_);
}

bool FileReplacement::takeOverAttributes(int descriptor) const {
  struct stat old {};
  if (::stat(target_.c_str(), &old) != 0) return true;
  // Only an administrator may keep a foreign owner; a user outside the group cannot keep that either.
  if (::fchown(descriptor, old.st_uid, old.st_gid) != 0)
    static_cast<void>(::fchown(descriptor, static_cast<uid_t>(-1), old.st_gid) == 0);
  if (::fchmod(descriptor, old.st_mode & 07777) != 0) return false;
  copyExtendedAttributes(target_, descriptor);
  return true;
}

bool FileReplacement::bringToDisk() {
  if (content_ == beside_) return takeOverAttributes(file_.number()) && fileCalls().sync(file_.number()) == 0;
  const Descriptor written(::open(content_.c_str(), O_RDWR | O_CLOEXEC));
  return written.isOpen() && takeOverAttributes(written.number()) && fileCalls().sync(written.number()) == 0;
}

std::optional<FileFault> FileReplacement::commit() {
  if (fault_) return fault_;
  const bool isDone = bringToDisk() && fileCalls().rename(content_.c_str(), target_.c_str()) == 0;
  if (!isDone) {
    fail(FileFault::Step::write, systemReason(errno));
    return fault_;
  }
  if (content_ == beside_) beside_.clear();
  if (!syncFolder(parentFolder(target_))) fail(FileFault::Step::write, systemReason(errno));
  return fault_;
}

std::optional<FileFault> writeWholeFile(std::wstring_view path, std::string_view bytes) {
  FileReplacement file(path);
  file.write(bytes);
  return file.commit();
}

std::optional<std::wstring> replaceFile(std::wstring_view path, std::string_view bytes) {
  const std::optional<FileFault> fault = writeWholeFile(path, bytes);
  if (!fault) return std::nullopt;
  return fault->step == FileFault::Step::open ? fault->reason : L"cannot be written: " + fault->reason;
}

KeptFile keepBeside(std::wstring_view path, std::wstring_view word) {
  const std::string target = fileBehindLinks(path);
  std::error_code error;
  if (!fs::exists(target, error)) return {};
  if (!fs::is_regular_file(target, error))
    return {{}, FileFault{FileFault::Step::open, L"is not a regular file"}};
  for (int number = 1; number < nameAttempts; ++number) {
    fs::path kept = target;
    const std::string extension = kept.extension().string();
    kept.replace_extension("." + toUtf8(word) + "-" + std::to_string(number) + extension);
    // A second name costs no space and cannot be half done; some file systems know none.
    if (fileCalls().link(target.c_str(), kept.c_str()) == 0) return {fromUtf8(kept.string()), std::nullopt};
    if (errno == EEXIST) continue;
    if (fs::copy_file(target, kept, fs::copy_options::none, error))
      return {fromUtf8(kept.string()), std::nullopt};
    if (error != std::errc::file_exists)
      return {{}, FileFault{FileFault::Step::write, fromUtf8(error.message())}};
  }
  return {{}, FileFault{FileFault::Step::write, L"there are too many files of this kind"}};
}

} // namespace brenvolt
