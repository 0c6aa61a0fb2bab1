#include "flows/dlg_motor_select.h"

namespace brenvolt {

bool runMotorPicker(KvWindow* parent, RatingSelection& selection) {
  ZanDlgMotorSelect dialog(parent, selection);
  if (dialog.DoModal() != kvui::ok) return false;
  selection = dialog.selection();
  return true;
}

} // namespace brenvolt
