// The saved configurations of a site.
#pragma once

#include "project/saved_configurations.h"

#include <string>
#include <vector>

namespace simhost {

struct SiteConfigurations {
  std::wstring workbook; ///< full path
  std::vector<brenvolt::SavedConfiguration> saved;
  std::vector<std::vector<brenvolt::SavedControl>> controls; ///< motors and loads of `saved`, place by place
  std::vector<brenvolt::SavedConfiguration> types; ///< all that the workbook has; the names are empty
};

/// Those of the history file beside the site's workbook; none without a history. Throws BadInput when workbook or
/// history cannot be read.
[[nodiscard]] SiteConfigurations savedConfigurations(const std::string& site);

} // namespace simhost
