// `zan_bv_code_std_desc`: the full name of the electrical code standard in use, (description).
#pragma once

#include "host/result_list.h"

namespace brenvolt {

[[nodiscard]] ResultList codeStandardDescription(const ResultList& arguments);

} // namespace brenvolt
