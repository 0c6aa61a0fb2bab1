#include "flows/dlg_motor_select.h"

namespace brenvolt {

bool runMotorPicker(KvWindow* parent, AcceptedTables& acceptedTables, RatingSelection& selection) {
  ZanDlgMotorSelect dialog(parent, acceptedTables, selection);
  if (dialog.DoModal() != kvui::ok) return false;
  selection = dialog.selection();
  return true;
}

} // namespace brenvolt
