#include "flows/dlg_database.h"

#include "host/alerts.h"
#include "widgets/common_roles.h"

namespace brenvolt {

void ZanGridBase::OnEvent(const KvUiEvent& event) {
  if (event.role != role::grid) {
    OnControlEvent(event);
    return;
  }
  switch (event.kind) {
  case KvUiEventKind::selected:
    OnRowSelected(event.row, event.column);
    break;
  case KvUiEventKind::doubleClicked:
    OnRowDoubleClicked(event.row);
    break;
  case KvUiEventKind::editBegun:
    OnEditBegun();
    break;
  case KvUiEventKind::rowCommitted:
    OnRowCommitted(event.row, event.column == 1);
    break;
  case KvUiEventKind::clicked:
  case KvUiEventKind::changed:
  case KvUiEventKind::committed:
  case KvUiEventKind::cellEdited:
  case KvUiEventKind::deleteKey:
    break;
  }
}

bool ZanGridBase::OnValidateCell(std::wstring_view role, int, int column, std::wstring_view text) {
  return role != role::grid || ValidateCell(column, text);
}

void ZanGridBase::OnControlEvent(const KvUiEvent&) {}

bool ZanGridBase::ValidateCell(int, std::wstring_view) {
  return true;
}

void ZanGridBase::OnRowSelected(int, int) {}

void ZanGridBase::OnRowDoubleClicked(int) {}

void ZanGridBase::OnRowCommitted(int, bool) {
  OnEditEnded();
}

void ZanGridBase::OnEditBegun() {
  Button(role::ok).Enable(false);
}

void ZanGridBase::OnEditEnded() {
  Button(role::ok).Enable(true);
}

std::wstring ZanGridBase::ColumnTitle(std::wstring_view name) const {
  return std::wstring(name);
}

KvUiGrid& ZanGridBase::grid() const {
  return Grid(role::grid);
}

bool ZanDlgDatabase::Connect() {
  if (openEngineeringDatabase(connection_)) return true;
  alertDatabaseError(window());
  return false;
}

} // namespace brenvolt
