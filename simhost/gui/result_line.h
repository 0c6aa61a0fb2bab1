// The answer of a look-up in a designer's words.
#pragma once

#include "simhost/gui/host_texts.h"
#include "simhost/lisp/value.h"

namespace simhost {

/// A line that says what a command answered, such as "Motor: 10 HP, 460 V, 60 Hz, 14 A x 1.25"; empty for an answer that
/// has nothing to say in words.
[[nodiscard]] QString resultLine(const HostTexts& texts, HostText command, const lisp::Value& answer);

} // namespace simhost
