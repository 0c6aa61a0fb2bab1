// The values that the components of a project already have for an attribute, so that a new circuit can take one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// The texts that the project database holds for an attribute, each once. Which column and which tables are asked
/// depends on the attribute, compared without case; what the database lacks is passed over. Empty without a project
/// database.
[[nodiscard]] std::vector<std::wstring> readProjectValues(std::wstring_view attribute);

} // namespace brenvolt
