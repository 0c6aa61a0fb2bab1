// Every circuit of a site built in memory and thrown away: with its default choices, and so that every two options meet.
#pragma once

#include "circuits/check/check_session.h"
#include "circuits/check/table_rules.h"
#include "circuits/check/template_set.h"

namespace circuits {

/// Tells what fails while circuits are built and what is wrong in the drawings. Drawings that forms insert are added to
/// `templates`.
void runCircuits(
    const SiteModel& site, CheckSession& session, const TableSet& tables,
    const std::vector<ElectricalCode>& codes, TemplateSet& templates, Findings& findings);

} // namespace circuits
