#include "flows/dlg_power_feed.h"

namespace brenvolt {

bool runLoadPicker(KvWindow* parent, AcceptedTables& acceptedTables, RatingSelection& selection) {
  ZanDlgPowerFeed dialog(parent, acceptedTables, selection);
  if (dialog.DoModal() != kvui::ok) return false;
  selection = dialog.selection();
  return true;
}

} // namespace brenvolt
