// The result of a lookup as a line for designers.
#pragma once

#include "simhost/gui/host_texts.h"
#include "simhost/lisp/value.h"

namespace simhost {

/// A line with the result of a command, such as "Motor: 10 HP, 460 V, 60 Hz, 14 A x 1.25"; empty for a result without
/// such a text.
[[nodiscard]] QString resultLine(const HostTexts& texts, HostText command, const lisp::Value& answer);

} // namespace simhost
