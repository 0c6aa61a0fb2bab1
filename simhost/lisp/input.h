// Typed input: when a form that was begun has come to its end.
#pragma once

#include <string_view>

namespace simhost::lisp {

/// Whether all parentheses and texts that were opened are closed; remarks do not count.
[[nodiscard]] bool isCompleteInput(std::wstring_view text);

} // namespace simhost::lisp
