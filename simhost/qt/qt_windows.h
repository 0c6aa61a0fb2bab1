// The window system on a screen: every question of a run as a window of Qt, and the recording of the user's actions,
// in the format of answer files. The window with the drawing is connected by two interfaces.
#pragma once

#include "simhost/qt/qt_dialog.h"
#include "simhost/ui/recorder.h"
#include "simhost/ui/window_system.h"

#include <QPointer>
#include <QWidget>

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace simhost {

class CircuitFacts;
class UserSettings;
class WindowPilot;

/// Asks in the window that shows the drawing.
class DrawingPicker {
public:
  virtual ~DrawingPicker();
  /// Lets the user pick one entity and returns after the answer; events run meanwhile. Escape cancels; Enter, or a
  /// click beside all entities, picks nothing where `emptyIsAllowed`, and otherwise asks again.
  [[nodiscard]] virtual EntityPick pickEntity(const std::wstring& prompt, bool emptyIsAllowed) = 0;
};

class QtWindows final : public WindowSystem, private DialogSurroundings {
public:
  /// A QApplication must run.
  QtWindows();
  ~QtWindows() override;

  /// The parent of all dialogs. Null: dialogs have no parent, and the host has no main window.
  void setMainWindow(QWidget* window);
  /// Null: every pick is cancelled. Must outlive its use here.
  void setPicker(DrawingPicker* picker) { picker_ = picker; }
  /// Where place and size of dialogs are kept; null forgets them. Must outlive its use here.
  void setSettings(UserSettings* settings) { settings_ = settings; }
  /// Null: a user answers. Must outlive its use here.
  void setPilot(WindowPilot* pilot) { pilot_ = pilot; }
  /// Whether a dialog driven by a pilot is recorded like a user's, and not by the pilot.
  void setRecordsPerson(bool records) { recordsPerson_ = records; }
  /// Whether OK of a dialog that inserts units inserts first what waits: where a circuit is there already, leaving a part
  /// of it out would be a loss.
  void setInsertsBeforeOk(bool inserts) { insertsBeforeOk_ = inserts; }
  /// Null: dialogs show what their flows put in. Must outlive its use here.
  void setCircuitFacts(CircuitFacts* facts) { circuitFacts_ = facts; }
  void setWords(WindowWords words) { words_ = std::move(words); }
  /// Where the pages of help are.
  void setHelpFolder(std::filesystem::path folder) { helpFolder_ = std::move(folder); }

  /// A dialog or a question is open, or hidden while the host has the editor: no other command may begin.
  [[nodiscard]] bool isBusy() const override { return openWindows_ > 0 || !dialogs_.empty(); }
  /// A dialog stands on the screen and waits for its user.
  [[nodiscard]] bool isDialogSeen() const;
  /// The topmost dialog, if it is beside the drawing and waits for its user; null for none.
  [[nodiscard]] QtDialog* dialogBeside() const;
  /// The name of the topmost dialog's form, also while it is aside; empty for none.
  [[nodiscard]] QString topForm() const;
  void beginRun() override;
  /// All questions, displays and answers so far as the text of an answer file.
  [[nodiscard]] std::string recording() const { return recorder_.text(); }
  [[nodiscard]] Recorder& recorder() { return recorder_; }

  [[nodiscard]] TaskAnswer askTask(const TaskQuestion& question) override;
  [[nodiscard]] EntityPick pickEntity(const std::wstring& prompt, bool emptyIsAllowed) override;
  [[nodiscard]] FileAnswer askFile(const FileQuestion& question, const FileEvents& events) override;
  [[nodiscard]] std::unique_ptr<DialogWindow> openDialog(
      const std::wstring& form, CKvUiDialog& dialog) override;
  /// A message box.
  bool showMessage(const std::wstring& text) override;
  /// Shows the page of the topic beside the calling window; false for a topic without a page.
  bool showHelp(const std::wstring& topic) override;
  /// The same beside `window`, as the user's own look into the manual: no part of a recording.
  bool openManual(std::wstring_view topic, QWidget* window);
  [[nodiscard]] KvWindow* mainWindow() override;
  [[nodiscard]] KvWindow* foregroundWindow() override;
  [[nodiscard]] KvWindow* promptFrame() override;
  void showWaitCursor(bool isShown) override;
  /// Once a round: true until the messages that wait have been pumped.
  [[nodiscard]] bool messageWaiting() override;
  bool pumpMessage() override;
  /// Ends the current run when it next processes messages: called when the main window is closed.
  void postQuit() override;
  [[nodiscard]] bool hasLeft() const override { return quitPosted_; }
  [[nodiscard]] const std::wstring& failure() const override { return failure_; }
  /// Cancels everything that is open, and all questions until the next run.
  void fail(const std::wstring& reason) { failure_ = reason; }

private:
  void dialogOpens(QtDialog& dialog) override;
  void dialogCloses(QtDialog& dialog) override;
  void dialogLends(QtDialog& dialog) override;
  void dialogTakesBack(QtDialog& dialog) override;
  [[nodiscard]] bool isOnTop(const QtDialog& dialog) const override;
  [[nodiscard]] bool isPiloted() const override { return pilot_ != nullptr; }
  [[nodiscard]] bool keepsRecord() const override { return pilot_ == nullptr || recordsPerson_; }
  [[nodiscard]] const WindowWords& words() const override { return words_; }
  [[nodiscard]] CircuitFacts* circuitFacts() const override { return circuitFacts_; }
  [[nodiscard]] bool insertsBeforeOk() const override { return insertsBeforeOk_; }
  void pilot(QtDialog& dialog) override;
  /// Hides all dialogs that are seen, and shows them again: the lowest one first, so that the topmost one is modal.
  [[nodiscard]] std::vector<QtDialog*> putDialogsAside();
  void showAgain(const std::vector<QtDialog*>& dialogs);
  /// A new window must be usable while a caller waits: the arrow cursor is shown until it is closed.
  void suspendWaitCursor();
  void resumeWaitCursor();
  void applyCursor() const;
  /// Counts a window as open, with the arrow for a cursor, for a scope.
  class OpenScope;
  /// Whom a new window belongs to: the dialog on top that is seen, else the main window.
  [[nodiscard]] QWidget* parentOfNext() const;

  Recorder recorder_;
  QPointer<QWidget> mainWindow_;
  std::unique_ptr<KvWindow> mainFace_; ///< the main window for the plug-in
  DrawingPicker* picker_ = nullptr;
  WindowPilot* pilot_ = nullptr;
  bool recordsPerson_ = false;
  bool insertsBeforeOk_ = false;
  CircuitFacts* circuitFacts_ = nullptr;
  UserSettings* settings_ = nullptr;
  WindowWords words_;
  std::filesystem::path helpFolder_;
  std::vector<QtDialog*> dialogs_; ///< open ones, the topmost last; their runs own them
  std::map<const QtDialog*, std::vector<QtDialog*>>
      aside_;                     ///< whom a dialog that lends the editor has hidden
  int waiting_ = 0;               ///< number of wait cursors since the topmost window opened
  std::vector<int> waitingBelow_; ///< the same for those below it
  int openWindows_ = 0;           ///< questions that are not dialogs
  std::wstring failure_;
  bool quitPosted_ = false;
  bool isPumped_ = false;
};

} // namespace simhost
