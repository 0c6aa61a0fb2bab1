// The windows of a check: nobody is there to answer. A question is answered with a cancel unless the check knows a better
// answer, so that nothing waits, and the next circuit can be tried.
#pragma once

#include "simhost/ui/window_system.h"

#include <functional>
#include <memory>
#include <string>

namespace circuits {

class QuietWindows final : public simhost::WindowSystem {
public:
  /// Answers every task dialog with a button.
  std::function<int(const simhost::TaskQuestion&)> onTask;

  [[nodiscard]] simhost::TaskAnswer askTask(const simhost::TaskQuestion& question) override {
    return {onTask ? onTask(question) : kvui::cancel, false};
  }
  /// A pick is answered with nothing instead of a cancel.
  bool picksNothing = false;

  [[nodiscard]] simhost::EntityPick pickEntity(const std::wstring&, bool) override {
    simhost::EntityPick pick;
    if (picksNothing) pick.kind = simhost::EntityPick::Kind::nothing;
    return pick;
  }
  [[nodiscard]] simhost::FileAnswer askFile(
      const simhost::FileQuestion&, const simhost::FileEvents&) override {
    return {};
  }
  [[nodiscard]] std::unique_ptr<simhost::DialogWindow> openDialog(
      const std::wstring& form, CKvUiDialog&) override {
    failure_ = L"the dialog " + form + L" was opened";
    return nullptr;
  }
  bool showMessage(const std::wstring&) override { return true; }
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
};

} // namespace circuits
