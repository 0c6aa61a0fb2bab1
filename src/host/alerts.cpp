// The keys of the alerts and the memory of what the user has accepted.
#include "host/alerts.h"

#include "host/host_api_documents.h"
#include "text/split.h"

namespace brenvolt {

namespace {

/// The button that continues without the table.
constexpr int continueButton = kvui::firstCommand;

const wchar_t* keyOf(AlertKind kind) {
  switch (kind) {
  case AlertKind::table:
    return L"ZanBrenvolt.TableNotFound";
  case AlertKind::motorTable:
    return L"ZanBrenvolt.MotorTableNotFound";
  case AlertKind::loadTable:
    return L"ZanBrenvolt.LoadTableNotFound";
  case AlertKind::componentTable:
    return L"ZanBrenvolt.MotorITableNotFound";
  }
  return L"ZanBrenvolt.TableNotFound";
}

bool isAccepted(const AcceptedTables& accepted, const std::wstring& table) {
  const auto found = accepted.find(table);
  return found != accepted.end() && found->second == continueButton;
}

} // namespace

std::optional<int> showTaskDialog(
    const wchar_t* key, const std::vector<KdTaskDialogParameter>& parameters, KvWindow* parent) {
  CKdTaskDialog dialog;
  if (!dialog.LoadFromFile(taskDialogResource, key, parameters.data(), static_cast<int>(parameters.size()))) {
    return std::nullopt;
  }
  return dialog.ShowDialog(parent);
}

void alertDatabaseError(KvWindow* parent) {
  // There is nothing to decide here, so neither the button nor a missing text matters.
  static_cast<void>(showTaskDialog(L"ZanBrenvolt.DatabaseError", {}, parent));
}

bool alertTables(
    const std::wstring& source, const std::vector<std::wstring>& missing,
    const std::vector<std::wstring>& missingDefault, AlertKind kind, AcceptedTables& accepted) {
  if (!missingDefault.empty()) {
    static_cast<void>(showTables(missingDefault, source, kind, TableSet::defaults, accepted));
    return false;
  }
  return showTables(missing, source, kind, TableSet::ofStandard, accepted);
}

bool showTables(
    const std::vector<std::wstring>& names, const std::wstring& source, AlertKind kind, TableSet set,
    AcceptedTables& accepted) {
  if (names.empty()) return true;
  std::vector<std::wstring> pending;
  for (const std::wstring& name : names) {
    if (!isAccepted(accepted, name)) pending.push_back(name);
  }
  const std::vector<KdTaskDialogParameter> parameters = {
      {L"source", source}, {L"tablename", join(pending, L", ")}};
  if (set == TableSet::defaults) {
    static_cast<void>(showTaskDialog(L"ZanBrenvolt.DefaultTableNotFound", parameters, kdsw_korvoMainWnd()));
    return false;
  }
  if (pending.empty()) return true;

  const wchar_t* key = keyOf(kind);
  CKdTaskDialog dialog;
  if (!dialog.LoadFromFile(taskDialogResource, key, parameters.data(), static_cast<int>(parameters.size()))) {
    return false;
  }
  // Read before showing: ticking "do not show again" in this dialog must not prevent its result from being remembered
  // per table.
  const CKdHideableDialogSettingsDictionary* settings = CKdTaskDialog::GetHideableDialogSettingsDictionary();
  const int hidden = settings == nullptr ? 0 : settings->GetResult(key);
  if (dialog.ShowDialog(kdsw_korvoMainWnd()) != continueButton) return false;
  if (hidden == 0) {
    for (const std::wstring& name : pending)
      accepted[name] = continueButton;
  }
  return true;
}

} // namespace brenvolt
