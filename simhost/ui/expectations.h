// What an answer file says that a dialog must show.
#pragma once

#include "simhost/ui/answers.h"
#include "simhost/ui/gestures.h"

#include <optional>
#include <string>

namespace simhost {

/// Why the dialog does not show what the "expect" says, nothing when it does. Throws AnswerError when what it names
/// is not there.
[[nodiscard]] std::optional<std::string> findUnmet(
    DialogModel& dialog, Gestures& gestures, const AnswerAction& expect);

} // namespace simhost
