#include "circuits/check/check.h"

#include "circuits/check/allowances.h"
#include "circuits/check/check_session.h"
#include "circuits/check/dry_run.h"
#include "circuits/check/form_rules.h"
#include "circuits/check/lisp_rules.h"
#include "circuits/check/saved_rules.h"
#include "circuits/check/table_rules.h"
#include "circuits/check/template_rules.h"
#include "circuits/check/workbook_rules.h"
#include "simhost/site/code_standard.h"

#include <algorithm>
#include <iterator>
#include <tuple>

namespace circuits {

namespace {

std::set<CheckKind> kindsOf(const CheckOptions& options) {
  std::set<CheckKind> kinds = options.kinds;
  if (kinds.empty())
    for (int number = 0; number < kindCount; ++number)
      kinds.insert(static_cast<CheckKind>(number));
  if (options.depth == CheckDepth::quick) kinds.erase(CheckKind::run);
  return kinds;
}

/// A check may look at more than was asked for; only the kinds asked for are reported.
void keepKinds(std::vector<Finding>& findings, const std::set<CheckKind>& kinds) {
  std::erase_if(findings, [&kinds](const Finding& each) { return !kinds.contains(each.rule->kind); });
}

/// A form that is at fault fails in a build as well: that says nothing more.
void dropConsequences(std::vector<Finding>& findings) {
  std::set<std::tuple<std::wstring, int, int>> cells; // sheet, row, column
  for (const Finding& each : findings)
    if (each.rule->kind == CheckKind::forms && each.rule->severity == Severity::error)
      cells.emplace(each.place.sheet, each.place.row, each.place.column);
  std::erase_if(findings, [&cells](const Finding& each) {
    return each.rule->id == L"run-form-fails" &&
           cells.contains({each.place.sheet, each.place.row, each.place.column});
  });
}

} // namespace

CheckReport checkSite(const CheckOptions& options) {
  const std::set<CheckKind> kinds = kindsOf(options);
  const auto has = [&kinds](CheckKind kind) { return kinds.contains(kind); };

  Findings findings;
  const SiteModel site = readSite(options.site, options.workbook, findings);
  checkLists(site, findings);
  CheckSession session(site, options.module, findings);
  FormRules forms(site, session, findings);
  TemplateSet templates(site);
  // All rules for one sheet before the next: in a workbook of some hundred sheets most of the time is spent on fetching
  // the texts from memory.
  for (const SheetModel& sheet : site.models) {
    checkSheet(site, sheet, findings);
    checkCombinations(site, sheet, findings);
    forms.check(sheet);
    templates.addNamed(sheet);
  }
  checkLisp(site, session, findings);

  const TableSet tables = readTables(site, session, options.depth, findings);
  const std::vector<ElectricalCode> codes = codesOf(tables, simhost::sessionStandard(session.interpreter()));
  if (has(CheckKind::tables)) {
    checkTableForms(tables, findings);
    checkFamilies(tables, codes, findings);
    checkWireTables(tables, codes, findings);
    checkRatingTables(tables, codes, findings);
    checkOptions(tables, codes, findings);
  }
  std::vector<SavedPart> savedParts;
  if (has(CheckKind::saved)) {
    savedParts = checkSaved(site, tables, codes, findings);
    std::ranges::move(checkSelections(site, tables, findings), std::back_inserter(savedParts));
  }

  if (has(CheckKind::run)) runCircuits(site, session, tables, codes, templates, findings);
  if (options.depth == CheckDepth::whole)
    checkSavedParts(site, session, tables, codes, templates, std::move(savedParts), findings);
  checkTemplates(site, templates, findings);

  CheckReport report;
  Allowances allowances(site, options.languages, findings);
  report.findings = findings.take();
  keepKinds(report.findings, kinds);
  dropConsequences(report.findings);
  report.allowed = allowances.takeAllowed(report.findings);
  if (has(CheckKind::allow)) {
    Findings unused;
    for (const Finding& finding : report.findings)
      unused.add(finding);
    allowances.addUnused(kinds, unused);
    report.findings = unused.take();
  }
  return report;
}

} // namespace circuits
