// Wildcard patterns of the host's command line, as `kvutWcMatch` promises them.
#pragma once

#include <string_view>

namespace simhost {

/// Whether `text` matches one of the comma-separated alternatives of `pattern`, without case. A "[" that is never
/// closed and a trailing "`" match themselves. Costs at most text length times pattern length.
[[nodiscard]] bool matchesWildcard(std::wstring_view text, std::wstring_view pattern);

} // namespace simhost
