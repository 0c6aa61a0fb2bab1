// The motor picker.
#pragma once

#include "flows/rating_picker.h"

#include <utility>

namespace brenvolt {

class ZanDlgMotorSelect final : public RatingPicker {
public:
  ZanDlgMotorSelect(KvWindow* parent, const LentTables& tables, RatingSelection given)
      : RatingPicker(motorPicker(), parent, tables, std::move(given)) {}
};

/// Shows the motor picker over `parent`, started from `selection`. True when the user accepted: `selection` is then
/// what was chosen. Otherwise it is unchanged.
[[nodiscard]] bool runMotorPicker(KvWindow* parent, const LentTables& tables, RatingSelection& selection);

} // namespace brenvolt
