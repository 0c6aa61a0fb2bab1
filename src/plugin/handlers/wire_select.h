// `zan_bv_wire_select`: wire size lookup for a motor circuit, (size parallelNote).
#pragma once

#include "host/result_list.h"

namespace brenvolt {

[[nodiscard]] ResultList wireSelect(const ResultList& arguments);

} // namespace brenvolt
