// `zan_bv_wire_select` and `zan_bv_pf_wire_select`: wire size lookup for a motor's and for a load's circuit, each
// returning (size parallelNote). `zan_bv_wire_fields`: what was chosen beside the size.
#pragma once

#include "host/result_list.h"

namespace brenvolt {

[[nodiscard]] ResultList wireSelect(const ResultList& arguments);
[[nodiscard]] ResultList powerFeedWireSelect(const ResultList& arguments);
[[nodiscard]] ResultList wireFields(const ResultList& arguments);

} // namespace brenvolt
