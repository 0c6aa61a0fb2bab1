// The window of the wire lookup. It opens the tables, passes every change to the lookup and returns the size that is
// chosen there.
#pragma once

#include "flows/dlg_database.h"
#include "flows/wire_lookup_form.h"
#include "flows/wire_lookup_view.h"
#include "flows/wire_report_file.h"
#include "flows/wire_select_ctrl_mgr.h"

#include <optional>
#include <string>
#include <string_view>

namespace brenvolt {

class ZanDlgWireSelect final : public ZanDlgDatabase, private WireLookupForm {
public:
  /// The caller owns the manager and what is lent, which must outlive the dialog. `circuit` is the name for the
  /// report, when the lookup is opened from a configuration.
  ZanDlgWireSelect(
      ZanDlgWireSelectBaseCtrlMgr& manager, KvWindow* parent, const LentTables& tables,
      std::optional<std::wstring> circuit);

  /// The chosen size without blanks; empty when no row was selected.
  [[nodiscard]] const std::wstring& size() const { return size_; }
  /// "(count)" for parallel runs, else empty.
  [[nodiscard]] const std::wstring& parallelNote() const { return parallelNote_; }

protected:
  bool OnInitDialog() override;
  void OnOK() override;
  void OnHelp() override;
  void OnControlEvent(const KvUiEvent& event) override;
  void OnRowSelected(int row, int column) override;
  void OnRowDoubleClicked(int row) override;
  void OnTimer(int timer) override;

private:
  [[nodiscard]] KvUiText& text(std::wstring_view role) const override { return Text(role); }
  [[nodiscard]] KvUiList& list(std::wstring_view role) const override { return List(role); }
  [[nodiscard]] KvUiTick& tick(std::wstring_view role) const override { return Tick(role); }
  [[nodiscard]] KvUiGrid& results() const override { return grid(); }
  [[nodiscard]] bool goesOnWithout(const MissingTables& missing) override;
  void showHeldBackSoon() override;

  [[nodiscard]] bool begin();
  void openSpareInputs();
  [[nodiscard]] bool isOverloadAccepted() const;
  void exportReport();

  ZanDlgWireSelectBaseCtrlMgr& manager_;
  std::optional<WireTableCache> tables_; ///< on the dialog's connection, once it is open
  std::optional<WireLookup> lookup_;
  std::optional<WireLookupView> view_;
  const std::optional<std::wstring> circuitName_;
  ReportPlace lastReport_;
  std::wstring size_;
  std::wstring parallelNote_;
};

/// What the user chose in the wire lookup.
struct WireLookupAnswer {
  std::wstring size;
  std::wstring parallelNote;
};

/// Runs the lookup; nothing when the user cancels or the tables cannot be opened.
[[nodiscard]] std::optional<WireLookupAnswer> runWireLookup(
    ZanDlgWireSelectBaseCtrlMgr& manager, KvWindow* parent, const LentTables& tables,
    const std::optional<std::wstring>& circuit = std::nullopt);

} // namespace brenvolt
