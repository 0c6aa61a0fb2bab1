// `zan_bv_power_feed_select`: the user picks a load from the load table.
#pragma once

#include "flows/rating_selection.h"
#include "host/result_list.h"

namespace brenvolt {

/// Arguments by position: type phase voltage power units fla frequency derating.
[[nodiscard]] RatingSelection readLoadArguments(const ResultList& arguments);

/// (type power units voltage phase frequency fla derating).
[[nodiscard]] ResultList loadAnswer(const RatingSelection& selection);

/// Nil when the user cancels. The document stays locked while the picker is open.
[[nodiscard]] ResultList powerFeedSelect(const ResultList& arguments);

} // namespace brenvolt
