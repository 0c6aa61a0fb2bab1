// The window system without a screen: answers come from the steps of an answer file in their order, and every
// question, what it showed and how it was answered is recorded. There is no silent default: a question that the next
// step does not answer ends the run.
#pragma once

#include "simhost/ui/answers.h"
#include "simhost/ui/scripted_dialog.h"
#include "simhost/ui/window_system.h"

#include <memory>
#include <string>
#include <vector>

namespace simhost {

class ScriptedWindows final : public WindowSystem, private StepSource {
public:
  /// No steps: every question is without an answer. `source` names the steps in messages.
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
  [[nodiscard]] const std::wstring& failure() const override { return failure_; }

  /// How many steps nothing has asked for yet.
  [[nodiscard]] std::size_t unusedSteps() const { return steps_.size() - next_; }
  /// All that was asked, shown and answered so far as the text of an answer file.
  [[nodiscard]] std::string recording() const;

private:
  /// The next step when it answers this dialog; null, with the reason in `failure`, when it does not.
  const AnswerStep* take(std::string_view dialog, std::string_view says = {});
  const AnswerStep* takeStep(const std::string& dialog, const AnswerStep* last) override;
  void fail(const std::string& message);
  void failAt(const AnswerStep& step, const std::string& message) override;
  [[nodiscard]] bool hasFailed() const override { return !failure_.empty(); }

  std::vector<AnswerStep> steps_;
  std::string source_;
  std::size_t next_ = 0;
  std::wstring failure_;
  bool quitPosted_ = false;
  KvWindow frame_;
  std::unique_ptr<Recorder> recorder_; ///< dialogs that are open hold a reference
};

} // namespace simhost
