// The rows of these options.
#include "simhost/cli/site_options.h"

namespace simhost {

OptionRow SiteOptions::siteRow() {
  return {"--site", &site, "Folder of the site, with its tables", "DIR", {.isRequired = true}};
}

OptionRow SiteOptions::standardRow() {
  return {"--standard-code", &standardCode, "Electrical code; default: " + standardCode, "CODE"};
}

OptionRows SiteWorkbookOptions::rows() {
  return {
      {"--site", &site, "Folder of the site", "DIR", {.isRequired = true}},
      {"--workbook", &workbook,
       "Use this workbook instead of the site's, with the history file in its folder", "FILE"},
  };
}

} // namespace simhost
