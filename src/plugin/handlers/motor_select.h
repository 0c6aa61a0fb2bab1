// `zan_bv_motor_select`: the user picks a motor from the motor table.
#pragma once

#include "flows/rating_selection.h"
#include "host/result_list.h"

namespace brenvolt {

/// Arguments by position: type phase voltage speed power units fla frequency derating.
[[nodiscard]] RatingSelection readMotorArguments(const ResultList& arguments);

/// (type power units voltage phase frequency speed fla derating): the order of the fields of `ZanCircuitData`, where
/// power is `load` and derating `flaMultiplier`.
[[nodiscard]] ResultList motorAnswer(const RatingSelection& selection);

/// Nil when the user cancels. The document stays locked while the picker is open.
[[nodiscard]] ResultList motorSelect(const ResultList& arguments);

} // namespace brenvolt
