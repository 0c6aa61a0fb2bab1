// Saved configurations for a site's LISP.
#pragma once

#include "simhost/lisp/evaluator.h"

namespace simhost {

void defineHistoryFunctions(lisp::Interpreter& interpreter);

} // namespace simhost
