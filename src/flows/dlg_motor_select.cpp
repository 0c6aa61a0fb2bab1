#include "flows/dlg_motor_select.h"

namespace brenvolt {

bool runMotorPicker(KvWindow* parent, const LentTables& tables, RatingSelection& selection) {
  ZanDlgMotorSelect dialog(parent, tables, selection);
  if (dialog.DoModal() != kvui::ok) return false;
  selection = dialog.selection();
  return true;
}

} // namespace brenvolt
