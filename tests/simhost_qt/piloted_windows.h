// Real windows driven by an answer file: the same steps as without a screen, made on the widgets. Each window must
// show its model.
#pragma once

#include "simhost/qt/qt_windows.h"
#include "simhost/qt/window_pilot.h"
#include "simhost/ui/step_queue.h"

namespace simhost::test {

/// Whose record is kept: the pilot's, in the words of the answer file, or that of the windows, as for a user.
enum class RecordOf { pilot, person };

/// Answers the windows from steps, through the widgets. Its recording covers only dialogs: picks and messages record
/// themselves.
class StepPilot final : public WindowPilot {
public:
  /// The windows must outlive it, and it the use of them.
  StepPilot(QtWindows& windows, std::vector<AnswerStep> steps, std::string source, RecordOf record);
  /// As a user, with these steps of an answer file.
  StepPilot(QtWindows& windows, std::string_view steps);

  [[nodiscard]] StepQueue& steps() { return steps_; }
  [[nodiscard]] const StepQueue& steps() const { return steps_; }
  /// Answers a pick in place of a drawing.
  [[nodiscard]] EntityPick pick(bool emptyIsAllowed);

  void drive(QtDialog& dialog) override;
  void drive(TaskBox& box, const TaskQuestion& question) override;
  void drive(FileWindow& window, DialogRecord& record) override;
  void drive(QMessageBox& box) override;

private:
  QtWindows& windows_;
  StepQueue steps_;
  RecordOf record_;
};

class PilotedWindows final : public AnsweredWindows {
public:
  PilotedWindows(std::vector<AnswerStep> steps, std::string source, RecordOf record = RecordOf::pilot);
  ~PilotedWindows() override;

  [[nodiscard]] std::size_t unusedSteps() const override { return pilot_.steps().unused(); }
  void setRun(const SessionRun& run) override { windows_->recorder().setRun(run); }
  [[nodiscard]] std::string recording() const override { return windows_->recording(); }

  [[nodiscard]] TaskAnswer askTask(const TaskQuestion& question) override;
  [[nodiscard]] EntityPick pickEntity(const std::wstring& prompt, bool emptyIsAllowed) override;
  [[nodiscard]] FileAnswer askFile(const FileQuestion& question, const FileEvents& events) override;
  [[nodiscard]] std::unique_ptr<DialogWindow> openDialog(
      const std::wstring& form, CKvUiDialog& dialog) override;
  bool showMessage(const std::wstring& text) override;
  bool showHelp(const std::wstring& topic) override;
  [[nodiscard]] KvWindow* mainWindow() override { return windows_->mainWindow(); }
  [[nodiscard]] KvWindow* foregroundWindow() override { return nullptr; }
  [[nodiscard]] KvWindow* promptFrame() override { return &promptFrame_; }
  void showWaitCursor(bool isShown) override { windows_->showWaitCursor(isShown); }
  [[nodiscard]] bool messageWaiting() override { return windows_->messageWaiting(); }
  bool pumpMessage() override { return windows_->pumpMessage(); }
  void postQuit() override { windows_->postQuit(); }
  [[nodiscard]] bool hasLeft() const override { return pilot_.steps().hasLeft(); }
  [[nodiscard]] bool isBusy() const override { return windows_->isBusy(); }
  void beginRun() override {
    windows_->beginRun();
    pilot_.steps().beginRun();
  }
  [[nodiscard]] const std::wstring& failure() const override;

private:
  /// Called by the windows, which record the result.
  class Picker final : public DrawingPicker {
  public:
    explicit Picker(StepPilot& pilot) : pilot_(pilot) {}
    EntityPick pickEntity(const std::wstring&, bool emptyIsAllowed) override {
      return pilot_.pick(emptyIsAllowed);
    }

  private:
    StepPilot& pilot_;
  };

  std::unique_ptr<QtWindows> windows_; ///< made when the application runs
  StepPilot pilot_;
  Picker picker_{pilot_};
  KvWindow promptFrame_;
};

/// The QApplication of a test program, without a screen.
void startApplication();

} // namespace simhost::test
