// The load picker.
#pragma once

#include "flows/rating_picker.h"

#include <utility>

namespace brenvolt {

class ZanDlgPowerFeed final : public RatingPicker {
public:
  ZanDlgPowerFeed(KvWindow* parent, const LentTables& tables, RatingSelection given)
      : RatingPicker(loadPicker(), parent, tables, std::move(given)) {}
};

/// Shows the load picker over `parent`, started from `selection`. True when the user accepted: `selection` is then what
/// was chosen. Otherwise it is unchanged.
[[nodiscard]] bool runLoadPicker(KvWindow* parent, const LentTables& tables, RatingSelection& selection);

} // namespace brenvolt
