// What a workbook can have wrong without a look at its forms: lists, sheets, records, groups, options, pairs, presets.
#pragma once

#include "circuits/check/site_model.h"

namespace circuits {

void checkWorkbook(const SiteModel& site, Findings& findings);
/// Sums of option values against the codes that forms stand for.
void checkCombinations(const SiteModel& site, Findings& findings);

} // namespace circuits
