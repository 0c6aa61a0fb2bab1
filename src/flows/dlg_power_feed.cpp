#include "flows/dlg_power_feed.h"

namespace brenvolt {

bool runLoadPicker(KvWindow* parent, const LentTables& tables, RatingSelection& selection) {
  ZanDlgPowerFeed dialog(parent, tables, selection);
  if (dialog.DoModal() != kvui::ok) return false;
  selection = dialog.selection();
  return true;
}

} // namespace brenvolt
