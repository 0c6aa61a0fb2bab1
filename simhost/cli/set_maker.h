// The sheets of a set and what is made from them.
#pragma once

#include "simhost/cli/set_plan.h"

#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace simhost {

struct MadeSet {
  std::vector<std::string> findings; ///< a sentence each
  std::size_t leftOut = 0;           ///< circuits that are on no sheet
};

/// Puts the parts on sheets, without those of the failed circuits, and writes sheets, lists, saved configurations and
/// set.json, the sheets in so many processes. Throws BadInput for a frame that cannot be used and CannotWrite.
[[nodiscard]] MadeSet makeSet(
    const SetOptions& options, const SetPlan& plan, const std::set<std::size_t>& failed, int processes);

} // namespace simhost
