// The form of the wire lookup. It holds no rule: it opens the tables, hands every change to its control manager and
// answers with the chosen size.
#pragma once

#include "data/wire_tables.h"
#include "flows/dlg_database.h"
#include "flows/wire_lookup_form.h"
#include "flows/wire_select_ctrl_mgr.h"

#include <optional>
#include <string>
#include <string_view>

namespace brenvolt {

class ZanDlgWireSelect final : public ZanDlgDatabase, private WireLookupForm {
public:
  /// The manager belongs to whoever opens the dialog and must outlive it.
  ZanDlgWireSelect(ZanDlgWireSelectBaseCtrlMgr& manager, KvWindow* parent);

  /// For the report, when the lookup is opened out of a configuration.
  void setCircuitName(std::wstring_view name) { circuitName_ = std::wstring(name); }

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
  [[nodiscard]] KvUiControl& control(WireControl control) const override;
  [[nodiscard]] KvUiText& edit(WireControl control) const override;
  [[nodiscard]] KvUiList& list(WireControl control) const override;
  [[nodiscard]] KvUiTick& tick(WireControl control) const override;
  [[nodiscard]] KvUiText& text(std::wstring_view role) const override;
  [[nodiscard]] KvUiGrid& results() const override;
  [[nodiscard]] ZanWireTableReader& reader() override;
  [[nodiscard]] const std::wstring& code() const override { return code_; }
  [[nodiscard]] std::optional<std::wstring> circuitName() const override { return circuitName_; }
  [[nodiscard]] KvWindow* parentWindow() const override { return window(); }
  void endCancelled() override { EndDialog(kvui::cancel); }
  void showHeldBackSoon() override;

  ZanDlgWireSelectBaseCtrlMgr& manager_;
  std::optional<ZanWireTableReader> reader_; ///< on the form's connection, once it is open
  std::wstring code_;
  std::optional<std::wstring> circuitName_;
  std::wstring size_;
  std::wstring parallelNote_;
};

/// What the wire lookup answers.
struct WireLookupAnswer {
  std::wstring size;
  std::wstring parallelNote;
};

/// Runs the lookup; nothing when the user cancels or the tables cannot be opened.
[[nodiscard]] std::optional<WireLookupAnswer> runWireLookup(
    ZanDlgWireSelectBaseCtrlMgr& manager, KvWindow* parent);

} // namespace brenvolt
