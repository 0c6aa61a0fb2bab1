// Whether somebody else is at work on a file: office programs lock what they have open.
#pragma once

#include <string_view>

namespace brenvolt {

/// True when the file exists, could be written by this user, and is locked by another program (either kind of lock
/// that the system knows). A file that cannot be opened for writing is not in use: it is only read anyway.
[[nodiscard]] bool isFileInUse(std::wstring_view path);

} // namespace brenvolt
