// The drawing's file while it is open in this window: whether it is open elsewhere, whether it was changed since it
// was read, and the copy in the same folder from which work is recovered after a crash.
#pragma once

#include "platform/file_replace.h"

#include <QLockFile>
#include <QString>

#include <memory>
#include <optional>

namespace simhost {

class OpenFile final {
public:
  /// `folder`: where copies of drawings without a file are kept; empty keeps none.
  explicit OpenFile(QString folder) : folder_(std::move(folder)) {}
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile();

  /// The other user of the file, for a message; empty for none.
  [[nodiscard]] static QString userElsewhere(const QString& file);
  /// Where the copy of a file's drawing is kept.
  [[nodiscard]] static QString copyOf(const QString& file);

  /// Releases the previous file and takes this one, empty for a new drawing, in its present state on disk. The copy of
  /// the previous file is removed: the user was asked before closing it.
  void take(const QString& file);
  /// The file has been written by this window.
  void noteSaved();
  /// Somebody else has written the file, or removed it, since it was read or written here.
  [[nodiscard]] bool isChangedElsewhere() const;

  [[nodiscard]] const QString& file() const { return file_; }
  /// Where this drawing's copy is kept; empty for nowhere.
  [[nodiscard]] const QString& copy() const { return copy_; }
  /// The copy is this window's: the user has decided what becomes of it.
  void claimCopy() { ownsCopy_ = true; }
  /// Whether this window may write the copy, which is its own from now on. One of an earlier run that the user has not
  /// decided about is put aside for that; where there is one aside already, false: neither is overwritten.
  [[nodiscard]] bool mayWriteCopy();
  /// What was put aside is the copy again, unless there is another one.
  void bringBackCopy();
  /// Removes this window's copy; unsaved work of an earlier run stays until the user has been asked.
  void removeCopy();

private:
  void lock();

  QString folder_;
  QString file_;
  QString copy_;
  bool ownsCopy_ = false;
  std::unique_ptr<QLockFile> lock_; ///< null where another window has it, or nothing can be written
  std::optional<brenvolt::FileStamp> stamp_;
};

} // namespace simhost
