// The dialog in which the user configures a circuit, inserts its units one by one or all at once, undoes insertions,
// and saves the configuration under a name.
#pragma once

#include "build/driver.h"
#include "flows/config_insertion.h"
#include "flows/config_pages.h"
#include "widgets/config_dialog_service.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

class ZanDlgConfig final : public CKvUiDialog, private ZanConfigDialogService {
public:
  /// `build` has its units; it must outlive the dialog.
  ZanDlgConfig(ZanBrenvolt& build, KvWindow* parent);

  [[nodiscard]] bool isFinished() const { return end_ == BuildEnd::finished; }
  /// Ends the build of the dialog, without a question: one that is neither finished nor taken back yet is taken
  /// back. Only a quit of the host leaves what has been inserted.
  void LeaveBuild();

protected:
  bool OnInitDialog() override;
  void OnEvent(const KvUiEvent& event) override;
  void OnOK() override;
  void OnCancel() override;
  void OnHelp() override;
  void OnTimer(int timer) override;
  bool OnValidateCell(std::wstring_view role, int row, int column, std::wstring_view text) override;
  bool OnCellChoices(
      std::wstring_view role, int row, int column, std::vector<std::wstring>& choices) override;

private:
  enum class BuildEnd { open, finished, takenBack, quit };
  class EditorScope;

  bool PickMotor(std::vector<std::wstring>& values) override;
  bool PickLoad(std::vector<std::wstring>& values) override;
  void HandOverEditor(EditorOwner owner) override;
  void StartWindowTimer(int timer, int milliseconds) override { StartTimer(timer, milliseconds); }
  void KillWindowTimer(int timer) override { KillTimer(timer); }
  [[nodiscard]] bool pick(
      std::optional<std::vector<std::wstring>> (*ask)(ZanCircuitData&), std::vector<std::wstring>& values);

  void showNames();
  [[nodiscard]] std::vector<std::wstring> takenNames();
  [[nodiscard]] std::wstring ProposeName();
  void Insert(InsertScope scope);
  [[nodiscard]] std::optional<RunResult> RunInsertion(InsertScope scope);
  void Undo();
  void UpdateButtons();
  [[nodiscard]] std::optional<std::wstring> acceptName();
  [[nodiscard]] bool confirmRest();
  [[nodiscard]] bool keepConfiguration(const std::wstring& name);
  void takeBack();

  ZanBrenvolt& build_;
  std::optional<ConfigPages> pages_; ///< while the dialog's controls exist
  BuildEnd end_ = BuildEnd::open;
  bool hasLentEditor_ = false; ///< to the host, for a lookup
};

/// Lets the user configure a prepared interactive build. True when it is finished; otherwise it has been taken back,
/// exceptions included.
[[nodiscard]] bool runConfiguration(ZanBrenvolt& build, KvWindow* parent);

} // namespace brenvolt
