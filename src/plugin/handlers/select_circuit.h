// `zan_bv_select_circuit`: the user picks a circuit and how to configure it; nothing is drawn.
#pragma once

#include "host/result_list.h"

namespace brenvolt {

[[nodiscard]] ResultList selectCircuit(const ResultList& arguments);

} // namespace brenvolt
