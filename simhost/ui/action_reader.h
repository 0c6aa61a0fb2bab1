// One action of an answer file, checked member by member.
#pragma once

#include "simhost/ui/answers.h"

#include <nlohmann/json_fwd.hpp>

namespace simhost {

/// Takes an action apart. Throws AnswerError with the reason alone; the caller knows file and step.
[[nodiscard]] AnswerAction readAction(const nlohmann::ordered_json& action);

} // namespace simhost
