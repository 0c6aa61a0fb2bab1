// `zan_bv_build_circuit`: builds the circuit whose template was inserted. Answers T or nil, never a list.
#pragma once

#include "host/result_list.h"

namespace brenvolt {

[[nodiscard]] ResultList buildCircuit(const ResultList& arguments);

} // namespace brenvolt
