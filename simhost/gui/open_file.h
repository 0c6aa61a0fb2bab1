// The drawing's file while it is open in this window: whether somebody else has it open, whether it has been written
// since it was read, and the copy beside it from which work is recovered after a crash.
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

  /// Who else has the file open, for a message; empty for nobody.
  [[nodiscard]] static QString userElsewhere(const QString& file);
  /// Where the copy of a file's drawing is kept.
  [[nodiscard]] static QString copyOf(const QString& file);

  /// Lets go of the file before and takes this one, empty for a new drawing, as it is on the disk now. The copy of the
  /// file before goes: whoever leaves a drawing has been asked.
  void take(const QString& file);
  /// The file has been written by this window.
  void noteSaved();
  /// Somebody else has written the file, or removed it, since it was read or written here.
  [[nodiscard]] bool isChangedElsewhere() const;

  [[nodiscard]] const QString& file() const { return file_; }
  /// Where this drawing's copy is kept; empty for nowhere.
  [[nodiscard]] const QString& copy() const { return copy_; }
  /// The copy is this window's: it has written it, or the user has decided what becomes of it.
  void claimCopy() { ownsCopy_ = true; }
  /// Removes a copy that is this window's; what an earlier run left stays until the user has been asked.
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
