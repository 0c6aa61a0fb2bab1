// The windows of a check: nobody is there to answer. Every question is noted and answered with a cancel, so that nothing
// waits, and the next circuit can be tried.
#pragma once

#include "simhost/ui/window_system.h"

#include <string>
#include <utility>
#include <vector>

namespace circuits {

class QuietWindows final : public simhost::WindowSystem {
public:
  struct Question {
    std::wstring key;  ///< of the task dialog; empty for any other question
    std::wstring text; ///< what was asked
  };

  /// What was asked since the last call.
  [[nodiscard]] std::vector<Question> takeQuestions() { return std::exchange(questions_, {}); }

  [[nodiscard]] simhost::TaskAnswer askTask(const simhost::TaskQuestion& question) override {
    questions_.push_back({question.key, question.text});
    return {};
  }
  [[nodiscard]] simhost::EntityPick pickEntity(const std::wstring& prompt, bool) override {
    questions_.push_back({{}, prompt});
    return {};
  }
  [[nodiscard]] simhost::FileAnswer askFile(
      const simhost::FileQuestion& question, const simhost::FileEvents&) override {
    questions_.push_back({{}, question.fileName});
    return {};
  }
  [[nodiscard]] std::unique_ptr<simhost::DialogWindow> openDialog(
      const std::wstring& form, CKvUiDialog&) override {
    questions_.push_back({{}, form});
    failure_ = L"the dialog " + form + L" was opened";
    return nullptr;
  }
  bool showMessage(const std::wstring& text) override {
    questions_.push_back({{}, text});
    return true;
  }
  bool showHelp(const std::wstring&) override { return true; }
  [[nodiscard]] KvWindow* mainWindow() override { return nullptr; }
  [[nodiscard]] KvWindow* foregroundWindow() override { return nullptr; }
  [[nodiscard]] KvWindow* promptFrame() override { return &frame_; }
  void showWaitCursor(bool) override {}
  [[nodiscard]] bool messageWaiting() override { return false; }
  bool pumpMessage() override { return true; }
  void postQuit() override {}
  void beginRun() override { failure_.clear(); }
  [[nodiscard]] const std::wstring& failure() const override { return failure_; }

private:
  KvWindow frame_;
  std::wstring failure_;
  std::vector<Question> questions_;
};

} // namespace circuits
