// Lists of keyed entries, ((key ...) (key ...) ...): which keys they hold, and taking entries out.
#pragma once

#include "host/result_list.h"

#include <string_view>

namespace brenvolt {

/// Takes every entry out whose first element is this text, without case. False, with the list untouched, when the
/// list is malformed.
bool removeKeyedEntry(ResultList& list, std::wstring_view key);

/// Returns whether an entry's first element is this text, without case. False for a list that is empty or malformed
/// before the entry.
[[nodiscard]] bool hasKeyedEntry(const ResultList& list, std::wstring_view key);

} // namespace brenvolt
