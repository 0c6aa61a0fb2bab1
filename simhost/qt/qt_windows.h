// The window system on a screen: every question of a run as a window of Qt, and the recording of the user's actions,
// in the format of answer files. The window with the drawing is connected by two interfaces.
#pragma once

#include "simhost/qt/dialog_stack.h"
#include "simhost/ui/recorder.h"
#include "simhost/ui/window_system.h"

#include <QPointer>
#include <QWidget>

#include <filesystem>
#include <memory>
#include <string>

namespace simhost {

/// Asks in the window that shows the drawing.
class DrawingPicker {
public:
  virtual ~DrawingPicker();
  /// Lets the user pick one entity and returns after the answer; events run meanwhile. Escape cancels; Enter, or a
  /// click beside all entities, picks nothing where `emptyIsAllowed`, and otherwise asks again.
  [[nodiscard]] virtual EntityPick pickEntity(const std::wstring& prompt, bool emptyIsAllowed) = 0;
};

class QtWindows final : public WindowSystem {
public:
  /// A QApplication must run.
  QtWindows();
  ~QtWindows() override;

  /// The open dialogs, and what all of them use.
  [[nodiscard]] DialogStack& dialogs() { return dialogs_; }
  [[nodiscard]] Recorder& recorder() { return recorder_; }
  /// All questions, displays and answers so far as the text of an answer file.
  [[nodiscard]] std::string recording() const { return recorder_.text(); }

  /// The parent of all dialogs. Null: dialogs have no parent, and the host has no main window.
  void setMainWindow(QWidget* window);
  /// Null: every pick is cancelled. Must outlive its use here.
  void setPicker(DrawingPicker* picker) { picker_ = picker; }
  /// Where the pages of help are.
  void setHelpFolder(std::filesystem::path folder) { helpFolder_ = std::move(folder); }

  /// A dialog or a question is open, or hidden while the host has the editor: no other command may begin.
  [[nodiscard]] bool isBusy() const override { return dialogs_.isBusy(); }
  void beginRun() override;

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
  /// Whom a new window belongs to: the dialog on top that is seen, else the main window.
  [[nodiscard]] QWidget* parentOfNext() const;

  Recorder recorder_;
  DialogStack dialogs_;
  QPointer<QWidget> mainWindow_;
  std::unique_ptr<KvWindow> mainFace_; ///< the main window for the plug-in
  DrawingPicker* picker_ = nullptr;
  std::filesystem::path helpFolder_;
  std::wstring failure_;
  bool quitPosted_ = false;
  bool isPumped_ = false;
};

} // namespace simhost
