// Keyed alerts: the task dialogs for a failed database and for missing tables, each missing table reported once, and
// the common way to show any keyed task dialog.
#pragma once

#include "host/host_api_ui.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace brenvolt {

/// Where the host finds the plug-in's task dialogs.
inline constexpr wchar_t taskDialogResource[] = L"/ZanTaskDialogsRes;component/TaskDialogs.xaml";

/// Tables whose absence the user has accepted, with the id of the button (kvui::firstCommand). The caller that runs a
/// reader lends them: they live as long as the process, and closing a drawing does not clear them. Creating a motor's
/// or load's page clears them: each circuit asks again.
using AcceptedTables = std::map<std::wstring, int>;

/// What was being read when a table was missing; decides the key of the alert.
enum class AlertKind { table = 0, motorTable = 1, loadTable = 2, componentTable = 3 };

/// Shows the task dialog of a key over `parent` and returns the id of the button; nothing when the key does not load.
[[nodiscard]] std::optional<int> showTaskDialog(
    const wchar_t* key, const std::vector<KdTaskDialogParameter>& parameters, KvWindow* parent);

/// Reports that the database could not be opened.
void alertDatabaseError(KvWindow* parent);

/// The one entry for readers of tables: reports which tables of the data source `source` are missing.
/// @param missing tables of the current code standard
/// @param missingDefault tables of the default set; nothing can replace these
/// @return whether the reader may continue. Never with default tables missing, even if the user accepted each.
[[nodiscard]] bool alertTables(
    const std::wstring& source, const std::vector<std::wstring>& missing,
    const std::vector<std::wstring>& missingDefault, AlertKind kind, AcceptedTables& accepted);

enum class TableSet { ofStandard, defaults };

/// Shows the alert for those of `names` that were not accepted before; false when the reader must stop. The default
/// set's alert shows even when every name was accepted.
[[nodiscard]] bool showTables(
    const std::vector<std::wstring>& names, const std::wstring& source, AlertKind kind, TableSet set,
    AcceptedTables& accepted);

} // namespace brenvolt
