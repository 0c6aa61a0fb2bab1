// A dialog with pages of groups and nothing else, for managers that need a window, and the session in which it runs.
#pragma once

#include "host/host_api_ui.h"
#include "tests/support/sample_session.h"
#include "widgets/settings_window.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt::test {

class PageDialog final : public CKvUiDialog, public ZanConfigDialogService {
public:
  PageDialog() : CKvUiDialog(L"page", nullptr) {}

  /// The result of a pick in the drawing; nothing is a cancelled one.
  std::optional<std::vector<std::wstring>> picked;
  /// Called when the window is open, and when the user presses OK.
  std::function<void(ZanSettingsWnd&)> onOpen;
  std::function<void(ZanSettingsWnd&)> onOk;
  /// The calls of the dialog: "editor host", "editor dialog", "pick motor", "pick load", "timer 105 254",
  /// "kill 105".
  std::vector<std::string> calls;

  /// The controls are gone when the dialog has ended, so its window has to go, too.
  void dropWindow() { window_.reset(); }

  [[nodiscard]] bool PickMotor(std::vector<std::wstring>& values) override;
  [[nodiscard]] bool PickLoad(std::vector<std::wstring>& values) override;
  void HandOverEditor(EditorOwner owner) override;
  void StartWindowTimer(int timer, int milliseconds) override;
  void KillWindowTimer(int timer) override;

protected:
  bool OnInitDialog() override;
  void OnEvent(const KvUiEvent& event) override { window_->OnEvent(event); }
  void OnOK() override;
  void OnTimer(int timer) override { window_->OnTimer(timer); }
  bool OnValidateCell(std::wstring_view role, int row, int, std::wstring_view text) override {
    return window_->OnValidateCell(role, row, text);
  }
  bool OnCellChoices(std::wstring_view role, int row, int, std::vector<std::wstring>& choices) override {
    return window_->OnCellChoices(role, row, choices);
  }

private:
  [[nodiscard]] bool pick(const char* what, std::vector<std::wstring>& values);

  std::unique_ptr<ZanSettingsWnd> window_;
};

/// The pages are called "settings": the first group of the first page is "settings.1.0", its lookup button
/// "settings.1.0.button.0".
class PageSession final : public SampleSession {
public:
  /// The user's actions in the dialog, as actions of an answer file without their brackets; "ok" is pressed at the
  /// end.
  explicit PageSession(std::string_view actions = {});

  /// Runs the dialog to its end; its window is gone afterwards.
  static void run(PageDialog& dialog);
};

/// "label=value" of each row, separated by " | ".
[[nodiscard]] std::string describeGroup(const ZanGroupCtrl* group);

} // namespace brenvolt::test
