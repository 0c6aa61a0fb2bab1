// The window system without a screen: the steps of an answer file are used in order, and every question, its display
// and its answer is recorded. There is no silent default: a question that the next step does not answer ends the
// run.
#pragma once

#include "simhost/ui/recorder.h"
#include "simhost/ui/step_queue.h"

#include <memory>
#include <string>
#include <vector>

namespace simhost {

class ScriptedWindows final : public AnsweredWindows {
public:
  /// No steps: no question has an answer. `source` names the steps in messages.
  explicit ScriptedWindows(std::vector<AnswerStep> steps = {}, std::string source = "no answer file");
  ~ScriptedWindows() override;

  [[nodiscard]] TaskAnswer askTask(const TaskQuestion& question) override;
  [[nodiscard]] EntityPick pickEntity(const std::wstring& prompt, bool emptyIsAllowed) override;
  [[nodiscard]] FileAnswer askFile(const FileQuestion& question, const FileEvents& events) override;
  [[nodiscard]] std::unique_ptr<DialogWindow> openDialog(
      const std::wstring& form, CKvUiDialog& dialog) override;
  bool showMessage(const std::wstring& text) override;
  bool showHelp(const std::wstring& topic) override;
  [[nodiscard]] KvWindow* mainWindow() override { return nullptr; }
  [[nodiscard]] KvWindow* foregroundWindow() override { return nullptr; }
  [[nodiscard]] KvWindow* promptFrame() override { return &frame_; }
  void showWaitCursor(bool) override {}
  [[nodiscard]] bool messageWaiting() override { return quitPosted_; }
  bool pumpMessage() override { return !quitPosted_; }
  void postQuit() override { quitPosted_ = true; }
  [[nodiscard]] bool hasLeft() const override { return steps_.hasLeft(); }
  void beginRun() override {
    quitPosted_ = false;
    steps_.beginRun();
  }
  [[nodiscard]] const std::wstring& failure() const override { return steps_.failure(); }

  void setRun(const SessionRun& run) override;
  [[nodiscard]] std::size_t unusedSteps() const override { return steps_.unused(); }
  [[nodiscard]] std::string recording() const override;

private:
  StepQueue steps_;
  bool quitPosted_ = false;
  KvWindow frame_;
  std::unique_ptr<Recorder> recorder_; ///< dialogs that are open hold a reference
};

} // namespace simhost
