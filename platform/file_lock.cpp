#include "platform/file_lock.h"

#include "platform/file_calls.h"
#include "text/encoding.h"

#include <algorithm>
#include <cerrno>
#include <random>
#include <sstream>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brenvolt {

namespace {

/// The limit of the turns of others after which a program gives up.
constexpr int mostTurns = 30;

/// Locks over parts of a file, as office programs take them.
bool hasRangeLock(int descriptor) {
  struct flock wholeFile = {};
  wholeFile.l_type = F_WRLCK;
  wholeFile.l_whence = SEEK_SET;
  return ::fcntl(descriptor, F_GETLK, &wholeFile) == 0 && wholeFile.l_type != F_UNLCK;
}

/// The lock on a file as one. It is taken for the moment of the question.
bool hasFileLock(int descriptor) {
  if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) return true;
  ::flock(descriptor, LOCK_UN);
  return false;
}

/// Different for each program, so that waiting programs do not try in step.
std::chrono::microseconds pause() {
  static std::minstd_rand numbers(static_cast<std::minstd_rand::result_type>(::getpid()));
  return std::chrono::microseconds(1000 + static_cast<long>(numbers() % 4000));
}

std::string userName() {
  std::vector<char> buffer(4096);
  struct passwd entry = {};
  struct passwd* found = nullptr;
  if (::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr)
    return entry.pw_name;
  return std::to_string(::geteuid());
}

std::string machineName() {
  char name[256] = {};
  return ::gethostname(name, sizeof name - 1) == 0 ? name : "";
}

} // namespace

bool isFileInUse(std::wstring_view path) {
  const Descriptor file(::open(toUtf8(path).c_str(), O_RDWR | O_CLOEXEC));
  return file.isOpen() && (hasRangeLock(file.number()) || hasFileLock(file.number()));
}

FileUser thisFileUser() {
  return {fromUtf8(userName()), fromUtf8(machineName()), std::to_wstring(::getpid())};
}

std::wstring fileUserText(const FileUser& user) {
  return user.user + L" on " + user.machine + L", process " + user.process;
}

FileLock::FileLock(std::wstring_view path, std::chrono::milliseconds patience)
    : path_(fileBehindLinks(path) + ".lock") {
  acquire(patience);
  if (fault_)
    file_.close();
  else
    writeHolder();
}

FileLock::~FileLock() {
  // While the lock is still held: a waiting program finds the name gone, or with another file, and starts again.
  if (file_.isOpen() && isNamed(file_.number(), path_)) fileCalls().unlink(path_.c_str());
}

bool FileLock::open() {
  file_.reset(fileCalls().open(path_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  // The leftovers of a killed program must not exclude others, whatever its own settings for new files were.
  if (file_.isOpen()) return ::fchmod(file_.number(), 0666) == 0;
  // Another machine has replaced what the name stood for: as if the holder had just removed it.
  if (errno == ESTALE) errno = EAGAIN;
  if (errno != EEXIST) return false;
  file_.reset(::open(path_.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
  if (!file_.isOpen() && errno == EACCES)
    file_.reset(::open(path_.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
  // The holder removes the file at its end, possibly between the two attempts.
  if (!file_.isOpen() && (errno == ENOENT || errno == ESTALE)) errno = EAGAIN;
  return file_.isOpen();
}

void FileLock::acquire(std::chrono::milliseconds patience) {
  using Clock = std::chrono::steady_clock;
  auto end = Clock::now() + patience;
  // Where many programs take turns, each of them is waited for: none of them blocks the others.
  const auto lastEnd = Clock::now() + mostTurns * patience;
  for (;;) {
    const bool isOpen = file_.isOpen() || open();
    if (!isOpen && errno != EAGAIN) break;
    const bool isLocked = isOpen && ::flock(file_.number(), LOCK_EX | LOCK_NB) == 0;
    if (isLocked && isNamed(file_.number(), path_)) return;
    if (isOpen && !isLocked && errno != EWOULDBLOCK && errno != EINTR && errno != ESTALE) break;
    if (Clock::now() >= end) {
      if (isOpen) holder_ = readHolder();
      fault_ =
          holder_ ? L"is being changed by " + fileUserText(*holder_) : L"is being changed by another program";
      return;
    }
    if (isLocked || !isNamed(file_.number(), path_)) {
      // That turn has ended, and another program may have begun the next one.
      file_.close();
      end = std::min(Clock::now() + patience, lastEnd);
    } else {
      std::this_thread::sleep_for(pause());
    }
  }
  fault_ = systemReason(errno);
}

void FileLock::writeHolder() const {
  const FileUser user = thisFileUser();
  const std::string text = toUtf8(user.user + L"\n" + user.machine + L"\n" + user.process + L"\n");
  // Only information for waiting programs: a full disk does not affect the lock.
  if (::ftruncate(file_.number(), 0) == 0)
    static_cast<void>(::pwrite(file_.number(), text.data(), text.size(), 0) < 0);
}

std::optional<FileUser> FileLock::readHolder() const {
  char text[1024];
  const ssize_t count = ::pread(file_.number(), text, sizeof text, 0);
  std::istringstream lines(count > 0 ? std::string(text, static_cast<std::size_t>(count)) : std::string());
  std::string user;
  std::string machine;
  std::string process;
  if (!std::getline(lines, user) || !std::getline(lines, machine) || !std::getline(lines, process))
    return std::nullopt;
  return FileUser{fromUtf8(user), fromUtf8(machine), fromUtf8(process)};
}

} // namespace brenvolt
