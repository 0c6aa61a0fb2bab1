// A circuit is built at the scale that it was saved at, whatever the scale of the session is.
#pragma once

#include "simhost/lisp/evaluator.h"

#include <string>

namespace simhost {

/// The form, run with these scales of the circuit and of its components; an empty one is that of the session. Throws
/// BadInput for a text that is not a number greater than 0.
[[nodiscard]] std::wstring atScale(
    const lisp::Interpreter& interpreter, const std::wstring& form, const std::wstring& circuit,
    const std::wstring& components);

} // namespace simhost
