// The values that a picker keeps for the user from one run to the next.
#pragma once

#include "data/option_tables.h"
#include "flows/rating_picker_kind.h"

namespace brenvolt {

/// Below this a number that a caller gives counts as not given. Finer than the tolerance of typed numbers.
inline constexpr double givenNumberTolerance = 1e-6;

/// Completes what the caller gave: nothing given takes what was kept for the user, and a multiplier that is then still
/// missing comes from the options.
void completeSelection(const RatingPickerKind& kind, ZanOptTableReader& options, RatingSelection& selection);

/// Keeps an accepted selection. A value that cannot be written is lost without a word.
void keepSelection(const RatingPickerKind& kind, const RatingSelection& selection);

} // namespace brenvolt
