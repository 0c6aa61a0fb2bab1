// What template drawings can have wrong, by themselves and against the worksheets whose markers they hold.
#pragma once

#include "circuits/check/template_set.h"

namespace circuits {

void checkTemplates(const SiteModel& site, TemplateSet& templates, Findings& findings);

} // namespace circuits
