// Real windows whose user is an answer file: the same steps as without a screen, made on the widgets. Each window must
// show what stands behind it.
#pragma once

#include "simhost/qt/qt_windows.h"
#include "simhost/qt/window_pilot.h"
#include "simhost/ui/step_queue.h"

namespace simhost::test {

/// Whose record is kept: the pilot's, in the words of the answer file, or that of the windows, as for a person.
enum class RecordOf { pilot, person };

class PilotedWindows final : public AnsweredWindows, private WindowPilot {
public:
  PilotedWindows(std::vector<AnswerStep> steps, std::string source, RecordOf record = RecordOf::pilot);
  ~PilotedWindows() override;

  [[nodiscard]] std::size_t unusedSteps() const override { return steps_.unused(); }
  void setRun(const SessionRun& run) override { windows_.recorder().setRun(run); }
  [[nodiscard]] std::string recording() const override { return windows_.recording(); }
  [[nodiscard]] QtWindows& windows() { return windows_; }
  /// Is called before each action of a dialog, and before it is left.
  void setWatcher(std::function<void(QtDialog&)> watcher) { watcher_ = std::move(watcher); }

  [[nodiscard]] TaskAnswer askTask(const TaskQuestion& question) override;
  [[nodiscard]] EntityPick pickEntity(const std::wstring& prompt, bool emptyIsAllowed) override;
  [[nodiscard]] FileAnswer askFile(const FileQuestion& question, const FileEvents& events) override;
  [[nodiscard]] std::unique_ptr<DialogWindow> openDialog(
      const std::wstring& form, CKvUiDialog& dialog) override;
  bool showMessage(const std::wstring& text) override;
  bool showHelp(const std::wstring& topic) override;
  [[nodiscard]] KvWindow* mainWindow() override { return windows_.mainWindow(); }
  [[nodiscard]] KvWindow* foregroundWindow() override { return nullptr; }
  [[nodiscard]] KvWindow* promptFrame() override { return &promptFrame_; }
  void showWaitCursor(bool isShown) override { windows_.showWaitCursor(isShown); }
  [[nodiscard]] bool messageWaiting() override { return windows_.messageWaiting(); }
  bool pumpMessage() override { return windows_.pumpMessage(); }
  void postQuit() override { windows_.postQuit(); }
  [[nodiscard]] const std::wstring& failure() const override;

private:
  void drive(QtDialog& dialog) override;
  void drive(TaskBox& box, const TaskQuestion& question) override;
  void drive(FileWindow& window, DialogRecord& record) override;
  void drive(QMessageBox& box) override;
  EntityPick pick(const std::wstring& prompt, bool emptyIsAllowed);

  /// Answers picks from the steps.
  class Picker final : public DrawingPicker {
  public:
    explicit Picker(PilotedWindows& windows) : windows_(windows) {}
    EntityPick pickEntity(const std::wstring& prompt, bool emptyIsAllowed) override {
      return windows_.pick(prompt, emptyIsAllowed);
    }

  private:
    PilotedWindows& windows_;
  };

  StepQueue steps_;
  Picker picker_{*this};
  QtWindows windows_;
  KvWindow promptFrame_;
  RecordOf record_;
  std::function<void(QtDialog&)> watcher_;
};

/// The QApplication of a test program, without a screen.
void startApplication();

} // namespace simhost::test
