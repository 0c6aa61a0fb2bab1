// Saved configurations against today's workbook and tables: what they name and what is gone.
#pragma once

#include "circuits/check/site_model.h"
#include "circuits/check/table_rules.h"

namespace circuits {

void checkSaved(
    const SiteModel& site, const TableSet& tables, const std::vector<ElectricalCode>& codes,
    Findings& findings);

} // namespace circuits
