// Saved configurations against today's workbook, tables and parts: what they name and what is gone.
#pragma once

#include "circuits/check/check_session.h"
#include "circuits/check/part_lookups.h"
#include "circuits/check/site_model.h"
#include "circuits/check/table_rules.h"
#include "circuits/check/template_set.h"

#include <string>
#include <vector>

namespace circuits {

/// A part that a saved configuration or a selection holds.
struct SavedPart {
  std::wstring saved; ///< circuit, type and name of the configuration, or table and row
  FindingPlace place;
  const CircuitEntry* entry = nullptr;
  const SheetForm* lookup = nullptr; ///< the form of its group
  KnownPart part;
};

/// Returns the parts whose groups the workbook still has.
std::vector<SavedPart> checkSaved(
    const SiteModel& site, const TableSet& tables, const std::vector<ElectricalCode>& codes,
    Findings& findings);

/// The parts that users chose for their motors, which the dialog brings back: reports those of a CODE or a table that the
/// workbook has no more, and returns the others.
std::vector<SavedPart> checkSelections(const SiteModel& site, const TableSet& tables, Findings& findings);

/// Reports parts that the site's lookups return for no motor or load of the tables. A lookup goes by the motor of the
/// circuit that was built last, so circuits are built with one motor after the other until every part has come up.
void checkSavedParts(
    const SiteModel& site, CheckSession& session, const TableSet& tables,
    const std::vector<ElectricalCode>& codes, TemplateSet& templates, std::vector<SavedPart> parts,
    Findings& findings);

} // namespace circuits
