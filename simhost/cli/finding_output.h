// Findings of a site as the tool shows them: for a reader, and for a program.
#pragma once

#include "circuits/check/check.h"

#include <nlohmann/json_fwd.hpp>

namespace simhost {

[[nodiscard]] nlohmann::ordered_json findingsJson(const std::vector<circuits::Finding>& findings);

/// To standard output, with a line of counts at the end.
void printFindings(const circuits::CheckReport& report);

} // namespace simhost
