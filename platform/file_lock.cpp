#include "platform/file_lock.h"

#include "text/encoding.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

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

} // namespace

bool isFileInUse(std::wstring_view path) {
  const int descriptor = ::open(toUtf8(path).c_str(), O_RDWR | O_CLOEXEC);
  if (descriptor < 0) return false;
  const bool isInUse = hasRangeLock(descriptor) || hasFileLock(descriptor);
  ::close(descriptor);
  return isInUse;
}

} // namespace brenvolt
