// Parses one action of an answer file and checks every member.
#pragma once

#include "simhost/ui/answers.h"

#include <nlohmann/json_fwd.hpp>

namespace simhost {

/// Parses an action. Throws AnswerError with the reason alone; the caller knows file and step.
[[nodiscard]] AnswerAction readAction(const nlohmann::ordered_json& action);

} // namespace simhost
