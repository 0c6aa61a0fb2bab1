// `zan_bv_edit_wiresize`: a new wire size for a placed circuit or a device.
#pragma once

#include "host/result_list.h"

namespace brenvolt {

[[nodiscard]] ResultList editWireSize(const ResultList& arguments);

} // namespace brenvolt
