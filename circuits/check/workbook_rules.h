// What a workbook can have wrong without a look at its forms: lists, sheets, records, groups, options, pairs, presets.
#pragma once

#include "circuits/check/site_model.h"

namespace circuits {

/// The list of circuits, the sheets that none uses, the annotation presets.
void checkLists(const SiteModel& site, Findings& findings);
/// A circuit's sheet row by row, and its records.
void checkSheet(const SiteModel& site, const SheetModel& sheet, Findings& findings);
/// Sums of option values against the codes that forms stand for.
void checkCombinations(const SiteModel& site, const SheetModel& sheet, Findings& findings);

} // namespace circuits
