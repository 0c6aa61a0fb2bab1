#include "platform/file_lock.h"

#include "text/encoding.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace brenvolt {

namespace {

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

/// A signal that comes meanwhile ends no waiting.
bool waitForFileLock(int descriptor) {
  int result;
  do
    result = ::flock(descriptor, LOCK_EX);
  while (result != 0 && errno == EINTR);
  return result == 0;
}

} // namespace

bool isFileInUse(std::wstring_view path) {
  const int descriptor = ::open(toUtf8(path).c_str(), O_RDWR | O_CLOEXEC);
  if (descriptor < 0) return false;
  const bool isInUse = hasRangeLock(descriptor) || hasFileLock(descriptor);
  ::close(descriptor);
  return isInUse;
}

FileLock::FileLock(std::wstring_view path)
    : descriptor_(::open(toUtf8(path).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666)) {
  if (descriptor_ >= 0 && waitForFileLock(descriptor_)) return;
  fault_ = fromUtf8(std::generic_category().message(errno));
}

FileLock::~FileLock() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

} // namespace brenvolt
