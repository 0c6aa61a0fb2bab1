// The expectations of an answer file about a dialog.
#pragma once

#include "simhost/ui/answers.h"
#include "simhost/ui/gestures.h"

#include <optional>
#include <string>

namespace simhost {

/// Why the dialog does not match the "expect", nothing when it matches. Throws AnswerError when what it names is not
/// there.
[[nodiscard]] std::optional<std::string> findUnmet(
    DialogModel& dialog, Gestures& gestures, const AnswerAction& expect);

} // namespace simhost
