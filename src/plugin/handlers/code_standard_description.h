// `zan_bv_code_std_desc`: the full name of the electrical code standard in use. And the list of all standards, for
// sibling modules.
#pragma once

#include "host/result_list.h"

#include <map>
#include <string>

namespace brenvolt {

/// (description), or nil when no standard is set or its option table names none.
[[nodiscard]] ResultList codeStandardDescription(const ResultList& arguments);

/// Full name to code of every standard that has tables. With `withCurrent` the standard in use is added with a note
/// when it has none. Empty when the engineering database does not open.
void readAllCodeStandards(std::map<std::wstring, std::wstring>& standards, bool withCurrent);

} // namespace brenvolt
