// The drawing's file: opened, saved, kept as a copy for the case of a crash, and guarded against another window or program
// that has it open or changes it.
#pragma once

#include "simhost/drawing/undo_log.h"
#include "simhost/gui/open_file.h"
#include "simhost/gui/window_services.h"

#include <QTimer>

#include <optional>

namespace simhost {

class DrawingFiles final {
public:
  /// The drawing of the site's session is open.
  explicit DrawingFiles(const WindowServices& services);
  DrawingFiles(const DrawingFiles&) = delete;
  DrawingFiles& operator=(const DrawingFiles&) = delete;

  /// Empty for a new drawing.
  [[nodiscard]] const QString& file() const { return file_; }
  /// The file's name, or the word for a new drawing; `baseName` is without ending.
  [[nodiscard]] QString name() const;
  [[nodiscard]] QString baseName() const;
  [[nodiscard]] bool isReadOnly() const { return isReadOnly_; }
  /// Whether the drawing differs from its file.
  [[nodiscard]] bool isChanged() const;

  /// Opens a drawing; false, with the reason in the status line and on the command line, when it cannot be read.
  bool open(const QString& file);
  bool saveTo(const QString& file);
  /// Commands: a new drawing, a file to be opened that the user chooses (empty for none), and saving.
  void startNew();
  [[nodiscard]] QString chooseFile();
  void save();
  void saveAs();
  /// Whether the drawing may be left: saved, or dropped by the user.
  [[nodiscard]] bool mayLeave();
  /// The name under which something of this drawing is saved, as the user chooses it; empty for none.
  [[nodiscard]] QString askSaveName(HostText title, HostText type, const QString& ending) const;

  /// Asks the questions about the drawing with which the program was started: whether to open it although it is open
  /// elsewhere, and whether to recover unsaved work.
  void askAtStart();
  /// Keeps a copy of what is not saved yet, for the case of a crash; this also happens by itself from time to time.
  void keepCopy();
  /// The program ends: nothing is left to recover.
  void removeCopy() { open_.removeCopy(); }

  /// Another drawing is open.
  std::function<void()> onTaken;
  /// Name, right to write or saved state are others now.
  std::function<void()> onState;

private:
  [[nodiscard]] bool take(const QString& file);
  /// Whether the file is opened to be read only; nothing when it is not opened. The user is asked when it is open
  /// elsewhere.
  [[nodiscard]] std::optional<bool> mayOpen(const QString& file);
  /// Recovers unsaved work of an earlier run, if the user agrees.
  void recoverCopy();
  /// Whether the file may be written; the user is asked when another program has changed it.
  [[nodiscard]] bool mayOverwrite();
  [[nodiscard]] int ask(HostText title, const QString& text, std::initializer_list<HostText> answers);

  WindowServices services_;
  OpenFile open_;
  QString file_;
  bool isReadOnly_ = false;
  bool isAsking_ = false; ///< about the drawing's file
  UndoLog::State savedState_;
  UndoLog::State copiedState_; ///< of the copy that is kept
  QTimer copying_;
};

} // namespace simhost
