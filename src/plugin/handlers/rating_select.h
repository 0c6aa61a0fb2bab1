// `zan_bv_motor_select` and `zan_bv_power_feed_select`: the user picks a motor or a load from its table.
#pragma once

#include "flows/rating_selection.h"
#include "host/result_list.h"

#include <span>

namespace brenvolt {

/// The positions of the selection's fields in a picker's arguments and in its result.
struct RatingPlaces {
  std::span<const Rating> arguments;
  std::span<const Rating> answer;

  /// An argument of another type leaves its field and the walk continues; arguments beyond the fields are ignored.
  [[nodiscard]] RatingSelection read(const ResultList& list) const;
  [[nodiscard]] ResultList listOf(const RatingSelection& selection) const;
};

/// Arguments: type phase voltage speed power units fla frequency derating. Answer: (type power units voltage phase
/// frequency speed fla derating), the order of the fields of `ZanCircuitData`, where power is `load` and derating
/// `flaMultiplier`.
extern const RatingPlaces motorPlaces;
/// Arguments: type phase voltage power units fla frequency derating. Answer: (type power units voltage phase frequency
/// fla derating).
extern const RatingPlaces loadPlaces;

/// Nil when the user cancels. The document stays locked while the picker is open.
[[nodiscard]] ResultList motorSelect(const ResultList& arguments);
[[nodiscard]] ResultList powerFeedSelect(const ResultList& arguments);

} // namespace brenvolt
