// The options by which a subcommand names a site, its tables and its workbook.
#pragma once

#include "simhost/cli/command_table.h"
#include "simhost/site/engineering_run.h"
#include "simhost/site/site_workbook.h"

#include <string>

namespace simhost {

struct SiteOptions {
  std::string site;
  std::string standardCode = assumedStandard;

  [[nodiscard]] OptionRow siteRow();
  [[nodiscard]] OptionRow standardRow();
};

struct SiteWorkbookOptions {
  std::string site;     ///< folder
  std::string workbook; ///< empty for the one of the site

  [[nodiscard]] OptionRows rows();
  [[nodiscard]] std::string path() const { return workbookPath(site, workbook); }
};

} // namespace simhost
