// What template drawings can have wrong, by themselves and against the worksheets whose markers they hold.
#pragma once

#include "circuits/check/template_set.h"

namespace circuits {

void checkTemplates(const SiteModel& site, TemplateSet& templates, Findings& findings);

/// The layer formats of the wire markers, those of all templates beside each other.
void checkWireFormats(const std::vector<const TemplateDrawing*>& drawings, Findings& findings);

} // namespace circuits
