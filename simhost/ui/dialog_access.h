// What a window system reaches of a running dialog: its state, and the events that the flow overrides.
#pragma once

#include "host/host_api_ui.h"
#include "simhost/ui/window_system.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct CKvUiDialog::State {
  std::wstring form;
  KvWindow* parent = nullptr;
  std::wstring name; ///< under which place and size are kept
  std::unique_ptr<simhost::DialogWindow> window;
  std::optional<int> result; ///< set once the dialog is to end
};

/// Raises the events of a dialog.
class KvUiDialogAccess final {
public:
  explicit KvUiDialogAccess(CKvUiDialog& dialog) : dialog_(dialog) {}

  [[nodiscard]] const CKvUiDialog::State& state() const { return *dialog_.state_; }
  [[nodiscard]] bool isEnded() const { return dialog_.state_->result.has_value(); }
  void end(int result) { dialog_.EndDialog(result); }
  void event(const KvUiEvent& event) { dialog_.OnEvent(event); }
  void ok() { dialog_.OnOK(); }
  void cancel() { dialog_.OnCancel(); }
  void help() { dialog_.OnHelp(); }
  void timer(int timer) { dialog_.OnTimer(timer); }
  [[nodiscard]] bool validateCell(std::wstring_view role, int row, int column, std::wstring_view text) {
    return dialog_.OnValidateCell(role, row, column, text);
  }
  [[nodiscard]] bool cellChoices(
      std::wstring_view role, int row, int column, std::vector<std::wstring>& choices) {
    return dialog_.OnCellChoices(role, row, column, choices);
  }

private:
  CKvUiDialog& dialog_;
};
