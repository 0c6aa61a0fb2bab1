// Locks and copies are hidden files with the same name in the folder of the file.
#include "simhost/gui/open_file.h"

#include "simhost/qt/qt_text.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace simhost {

namespace {

/// The number of drawings without a file that are kept apart, each of its own window.
constexpr int mostUntitled = 9;

QString beside(const QString& file, const char* ending) {
  const QFileInfo info(file);
  return info.absoluteDir().filePath(QLatin1Char('.') + info.fileName() + QLatin1String(ending));
}

QString asideOf(const QString& copy) {
  return copy + QLatin1Char('~');
}

std::unique_ptr<QLockFile> lockOf(const QString& file) {
  auto lock = std::make_unique<QLockFile>(beside(file, ".lock"));
  // Somebody may work in a window for days: only the end of its process frees the file.
  lock->setStaleLockTime(0);
  return lock;
}

} // namespace

OpenFile::~OpenFile() = default;

QString OpenFile::userElsewhere(const QString& file) {
  const std::unique_ptr<QLockFile> lock = lockOf(file);
  if (lock->tryLock(0) || lock->error() != QLockFile::LockFailedError) return {};
  qint64 process = 0;
  QString host;
  QString program;
  static_cast<void>(lock->getLockInfo(&process, &host, &program));
  return QStringLiteral("%1, %2, %3").arg(program, host, QString::number(process));
}

QString OpenFile::copyOf(const QString& file) {
  return beside(file, ".autosave");
}

void OpenFile::take(const QString& file) {
  const bool isSame = lock_ != nullptr && !file.isEmpty() && file == file_;
  if (!isSame) lock_.reset();
  file_ = file;
  if (!isSame) lock();
  noteSaved();
}

void OpenFile::lock() {
  copy_.clear();
  ownsCopy_ = false;
  if (!file_.isEmpty()) {
    lock_ = lockOf(file_);
    if (!lock_->tryLock(0)) lock_.reset();
    // The copy belongs to the holder of the lock: two windows must not write one.
    if (lock_ != nullptr) copy_ = copyOf(file_);
    return;
  }
  if (folder_.isEmpty()) return;
  for (int number = 1; number <= mostUntitled; ++number) {
    const QString name = QDir(folder_).filePath(QStringLiteral("untitled-%1.json").arg(number));
    lock_ = lockOf(name);
    if (lock_->tryLock(0)) {
      copy_ = copyOf(name);
      return;
    }
  }
  lock_.reset();
}

void OpenFile::noteSaved() {
  stamp_ = file_.isEmpty() ? std::nullopt : brenvolt::fileStamp(fromQt(file_));
}

bool OpenFile::isChangedElsewhere() const {
  return !file_.isEmpty() && brenvolt::fileStamp(fromQt(file_)) != stamp_;
}

bool OpenFile::mayWriteCopy() {
  if (copy_.isEmpty()) return false;
  if (!ownsCopy_ && QFile::exists(copy_) && !QFile::rename(copy_, asideOf(copy_))) return false;
  ownsCopy_ = true;
  return true;
}

void OpenFile::bringBackCopy() {
  if (!copy_.isEmpty() && !ownsCopy_ && QFile::exists(asideOf(copy_)) && !QFile::exists(copy_))
    QFile::rename(asideOf(copy_), copy_);
}

void OpenFile::removeCopy() {
  if (ownsCopy_ && !copy_.isEmpty()) QFile::remove(copy_);
  ownsCopy_ = false;
}

} // namespace simhost
