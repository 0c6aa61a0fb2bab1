// Direct builds that save what they chose. The parent product saves a configuration from the configuration dialog
// only; the tool and its tests want histories without a dialog.
#pragma once

#include "simhost/lisp/evaluator.h"

#include <string>

namespace simhost {

/// From now on `zan_bv_build_circuit` in this LISP builds with the driver inside of the tool and saves the history
/// under the name before the end steps. It answers nil when the build or the saving fails.
void recordBuild(lisp::Interpreter& interpreter, const std::wstring& historyName);

} // namespace simhost
