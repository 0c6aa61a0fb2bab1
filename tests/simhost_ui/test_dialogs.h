// A dialog with a control of every kind that writes down its events, and what runs it from steps.
#pragma once

#include "host/host_api_ui.h"
#include "simhost/ui/step_queue.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace simhost {

class EverythingDialog final : public CKvUiDialog {
public:
  EverythingDialog();

  /// One line an event: kind, role, numbers, text.
  std::vector<std::string> events;
  /// Called with each line, so that a test can act like a flow.
  std::function<void(EverythingDialog&, const std::string&)> onEvent;
  bool initialAnswer = true;

  using CKvUiDialog::BeginEditorCommand;
  using CKvUiDialog::Button;
  using CKvUiDialog::CompleteEditorCommand;
  using CKvUiDialog::EndDialog;
  using CKvUiDialog::Grid;
  using CKvUiDialog::HasControl;
  using CKvUiDialog::KillTimer;
  using CKvUiDialog::List;
  using CKvUiDialog::Pages;
  using CKvUiDialog::SetTitle;
  using CKvUiDialog::StartTimer;
  using CKvUiDialog::Text;
  using CKvUiDialog::Tick;
  using CKvUiDialog::Tree;

protected:
  bool OnInitDialog() override;
  void OnEvent(const KvUiEvent& event) override;
  void OnOK() override;
  void OnCancel() override;
  void OnHelp() override { note("help"); }
  void OnTimer(int timer) override { note("timer " + std::to_string(timer)); }
  /// Letters are not taken.
  bool OnValidateCell(std::wstring_view role, int row, int column, std::wstring_view text) override;
  bool OnCellChoices(
      std::wstring_view role, int row, int column, std::vector<std::wstring>& choices) override;

private:
  void note(const std::string& line);
};

/// Lets the test wait until its windows are gone before it looks at the results.
struct Outcome {
  int result = 0;
  std::vector<std::string> events;
  std::string failure;
  std::string recording;
  std::size_t unusedSteps = 0;
};

/// Makes the windows in which the dialog runs: without a screen, unless a test program sets another maker.
using WindowsMaker =
    std::function<std::unique_ptr<AnsweredWindows>(std::vector<AnswerStep>, std::string source)>;
[[nodiscard]] WindowsMaker& windowsMaker();

using Prepare = std::function<void(EverythingDialog&)>;

/// Runs the dialog with these actions as its only step.
[[nodiscard]] Outcome runActions(const std::string& actions, const Prepare& prepare = {});
/// Runs it with a whole list of steps.
[[nodiscard]] Outcome runSteps(const std::string& steps, const Prepare& prepare = {});
/// The same with a whole file, such as a recording.
[[nodiscard]] Outcome runFile(const std::string& file, const Prepare& prepare = {});

} // namespace simhost
