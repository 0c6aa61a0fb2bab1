// The rows of these options.
#include "simhost/cli/site_options.h"

namespace simhost {

OptionRow SiteOptions::siteRow() {
  return {"--site", &site, "Folder of the site, with its tables", "DIR", {.isRequired = true}};
}

OptionRow SiteOptions::standardRow() {
  return {"--standard-code", &standardCode, "Code standard; " + standardCode + " without it", "CODE"};
}

OptionRows SiteWorkbookOptions::rows() {
  return {
      {"--site", &site, "Folder of the site", "DIR", {.isRequired = true}},
      {"--workbook", &workbook, "Another workbook than the site's; the history lies beside it", "FILE"},
  };
}

} // namespace simhost
