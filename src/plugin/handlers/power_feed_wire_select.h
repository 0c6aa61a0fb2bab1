// `zan_bv_pf_wire_select`: wire size lookup for a load circuit, (size parallelNote).
#pragma once

#include "host/result_list.h"

namespace brenvolt {

[[nodiscard]] ResultList powerFeedWireSelect(const ResultList& arguments);

} // namespace brenvolt
