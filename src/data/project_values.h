// The values that the components of a project already have for an attribute, so that a new circuit can take one.
#pragma once

#include "platform/tables.h"

#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// The texts that the project database contains for an attribute, each once. The column and the tables depend on the
/// attribute, compared without case; missing tables are skipped. Empty without a project database. `observer` may be
/// null.
[[nodiscard]] std::vector<std::wstring> readProjectValues(
    std::wstring_view attribute, TableObserver* observer);

} // namespace brenvolt
