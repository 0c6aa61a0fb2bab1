// A disk that fails, a program that is killed, a power failure: put into the calls that change files, at the call of a
// chosen number.
#pragma once

#include "platform/file_calls.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <string>

#include <unistd.h>

namespace brenvolt::test {

/// While it lives, it intercepts the calls between the program and the disk.
class FileFaults final {
public:
  enum class Kind {
    diskFull,  ///< the call and all later ones that take space fail
    readOnly,  ///< the call and all later ones fail
    kill,      ///< the process ends at the call
    powerLoss, ///< nothing after the call happens, and `losePower` drops what was not synced
  };

  FileFaults(Kind kind, int call) : kind_(kind), call_(call), former_(fileCalls()) {
    current_ = this;
    fileCalls() = {open, write, sync, rename, link, unlink};
  }
  FileFaults(const FileFaults&) = delete;
  FileFaults& operator=(const FileFaults&) = delete;
  ~FileFaults() {
    fileCalls() = former_;
    current_ = nullptr;
  }

  /// Whether the chosen call was reached.
  [[nodiscard]] bool hasStruck() const { return calls_ > call_; }

  /// What a disk may hold after a power failure in the worst case: of unsynced files nothing, and of a renaming whose
  /// folder was not synced either the former state or the new one.
  void losePower(bool keepsRenaming) {
    namespace fs = std::filesystem;
    if (!keepsRenaming && renamed_) {
      fs::rename(renamed_->to, renamed_->from);
      if (renamed_->former) std::ofstream(renamed_->to, std::ios::binary) << *renamed_->former;
      if (isSynced_.contains(renamed_->to)) isSynced_[renamed_->from] = isSynced_[renamed_->to];
      isSynced_.erase(renamed_->to);
    }
    for (const auto& [path, isSynced] : isSynced_)
      if (!isSynced && fs::exists(path)) fs::resize_file(path, 0);
  }

private:
  struct Renaming {
    std::string from;
    std::string to;
    std::optional<std::string> former;
  };

  /// Whether the call fails.
  static bool strikes(bool takesSpace = true) {
    FileFaults& self = *current_;
    const bool isHit = self.calls_++ >= self.call_;
    if (!isHit) return false;
    if (self.kind_ == Kind::kill) ::_exit(0);
    if (self.kind_ == Kind::diskFull && !takesSpace) return false;
    errno = self.kind_ == Kind::diskFull ? ENOSPC : self.kind_ == Kind::readOnly ? EROFS : EIO;
    return true;
  }
  static std::string nameOf(int descriptor) {
    return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor)).string();
  }

  static int open(const char* path, int flags, mode_t mode) {
    if (strikes()) return -1;
    const int descriptor = current_->former_.open(path, flags, mode);
    if (descriptor >= 0) current_->isSynced_[nameOf(descriptor)] = false;
    return descriptor;
  }
  static ssize_t write(int descriptor, const void* bytes, std::size_t count) {
    // The half of it succeeds: code that checks only the first call loses the rest.
    if (strikes()) return -1;
    const ssize_t written = current_->former_.write(descriptor, bytes, count > 1 ? count / 2 : count);
    current_->isSynced_[nameOf(descriptor)] = false;
    return written;
  }
  static int sync(int descriptor) {
    if (strikes(false)) return -1;
    const std::string name = nameOf(descriptor);
    if (std::filesystem::is_directory(name))
      current_->renamed_.reset();
    else
      current_->isSynced_[name] = true;
    return 0;
  }
  static int rename(const char* from, const char* to) {
    if (strikes(false)) return -1;
    Renaming renaming{from, to, std::nullopt};
    if (std::ifstream in(to, std::ios::binary); in)
      renaming.former = std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    const int result = current_->former_.rename(from, to);
    if (result != 0) return result;
    current_->renamed_ = std::move(renaming);
    auto entry = current_->isSynced_.extract(from);
    current_->isSynced_.erase(to);
    if (!entry.empty()) current_->isSynced_[to] = entry.mapped();
    return result;
  }
  static int link(const char* from, const char* to) {
    return strikes() ? -1 : current_->former_.link(from, to);
  }
  static int unlink(const char* path) { return strikes(false) ? -1 : current_->former_.unlink(path); }

  static inline FileFaults* current_ = nullptr;
  Kind kind_;
  int call_;
  int calls_ = 0;
  FileCalls former_;
  std::map<std::string, bool> isSynced_;
  std::optional<Renaming> renamed_;
};

} // namespace brenvolt::test
