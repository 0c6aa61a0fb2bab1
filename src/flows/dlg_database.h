// The base of the dialogs that show rows of the engineering database: a grid whose events arrive as operations, and a
// connection that the dialog lends to its services.
#pragma once

#include "data/db_service.h"
#include "data/table_watch.h"
#include "host/host_api_ui.h"

#include <string>
#include <string_view>

namespace brenvolt {

/// A dialog with one result grid, role::grid. Rows count from 1, columns from 0.
class ZanGridBase : public CKvUiDialog {
public:
  using CKvUiDialog::CKvUiDialog;

protected:
  /// Events of the grid become the operations below; all others reach `OnControlEvent`.
  void OnEvent(const KvUiEvent& event) final;
  bool OnValidateCell(std::wstring_view role, int row, int column, std::wstring_view text) final;
  virtual void OnControlEvent(const KvUiEvent& event);

  /// Whether a typed cell text is taken.
  virtual bool ValidateCell(int column, std::wstring_view text);
  /// Row 0 is none.
  virtual void OnRowSelected(int row, int column);
  virtual void OnRowDoubleClicked(int row);
  virtual void OnRowCommitted(int row, bool changed);
  /// While a row is edited OK is disabled.
  virtual void OnEditBegun();
  virtual void OnEditEnded();
  /// The title of a column of a table for the user; an unknown name is returned unchanged.
  [[nodiscard]] virtual std::wstring ColumnTitle(std::wstring_view name) const;

  [[nodiscard]] KvUiGrid& grid() const;
};

class ZanDlgDatabase : public ZanGridBase {
public:
  /// What is lent must outlive the dialog.
  ZanDlgDatabase(const wchar_t* form, KvWindow* parent, LentTables tables)
      : ZanGridBase(form, parent), tables_(tables), connection_(tables.observer) {}

protected:
  /// Opens the dialog's connection. A failure is reported to the user; the dialog must then end as cancelled.
  [[nodiscard]] bool Connect();
  /// Owned by the dialog; closed when the dialog is destroyed.
  [[nodiscard]] ZanOleDbConnection& connection() { return connection_; }
  /// Missing tables that the user accepted.
  [[nodiscard]] AcceptedTables& acceptedTables() { return tables_.accepted; }

private:
  LentTables tables_;
  ZanOleDbConnection connection_;
};

} // namespace brenvolt
