// `brenvolt catalog`: the circuits of a site's workbook, and what its author has to put right.
#include "simhost/cli/finding_output.h"
#include "simhost/cli/site_options.h"
#include "simhost/cli/subcommand.h"
#include "simhost/json/json_text.h"
#include "text/encoding.h"

#include <nlohmann/json.hpp>

#include <cstdio>
#include <filesystem>
#include <memory>

namespace simhost {

namespace {

using brenvolt::toUtf8;
using Json = nlohmann::ordered_json;

struct CatalogOptions {
  SiteWorkbookOptions site;
  bool asJson = false;
  bool isCheck = false;
};

Json circuitsJson(const brenvolt::ZanCircuitCatalog& list) {
  Json circuits = Json::array();
  for (const auto& [circuit, types] : list.circuits()) {
    Json entries = Json::array();
    for (const brenvolt::ZanCircuitEntry& entry : types.entries)
      entries.push_back(
          {{"type", toUtf8(entry.type)},
           {"template", toUtf8(entry.drawingTemplate)},
           {"worksheet", toUtf8(entry.worksheet)},
           {"presets", toUtf8(entry.presetKey)}});
    circuits.push_back({{"circuit", toUtf8(circuit)}, {"types", std::move(entries)}});
  }
  return circuits;
}

void printText(const brenvolt::ZanCircuitCatalog& list) {
  for (const auto& [circuit, types] : list.circuits()) {
    std::printf("%s\n", toUtf8(circuit).c_str());
    for (const brenvolt::ZanCircuitEntry& entry : types.entries)
      std::printf(
          "  %-28s %-36s %-10s %s\n", toUtf8(entry.type).c_str(), toUtf8(entry.drawingTemplate).c_str(),
          toUtf8(entry.worksheet).c_str(), toUtf8(entry.presetKey).c_str());
  }
}

/// What `check` finds in the workbook, its forms and its templates.
circuits::CheckReport checkCatalogue(
    const CatalogOptions& options, const std::string& workbook, const FindingLanguages& languages) {
  using circuits::CheckKind;
  circuits::CheckOptions check;
  check.site = std::filesystem::absolute(options.site.site).lexically_normal();
  check.workbook = workbook;
  check.kinds = {CheckKind::workbook, CheckKind::forms, CheckKind::templates};
  check.depth = circuits::CheckDepth::quick;
  check.languages = languages.all();
  return circuits::checkSite(check);
}

ExitCode runCatalog(const CatalogOptions& options) {
  const std::string workbook = options.site.path();
  const brenvolt::ZanCircuitCatalog list = readCircuitList(workbook);
  const FindingLanguages languages;
  const circuits::FindingWords& words = languages.words({});
  circuits::CheckReport report;
  if (options.isCheck) report = checkCatalogue(options, workbook, languages);
  if (options.asJson) {
    const Json all = {{"circuits", circuitsJson(list)}, {"findings", findingsJson(report.findings, words)}};
    std::puts(jsonText(all, 2).c_str());
  } else {
    printText(list);
    if (options.isCheck) printFindings(report, words);
  }
  return report.findings.empty() ? ExitCode::done : ExitCode::findings;
}

} // namespace

CommandTable catalogCommand() {
  auto options = std::make_shared<CatalogOptions>();
  return {
      .name = "catalog",
      .description = "list the circuits of the site's workbook and check it",
      .options = joinedRows(
          {options->site.rows(),
           {{"--json", &options->asJson, "Print as JSON"},
            {"--check", &options->isCheck,
             "Also check workbook, forms and templates as check does; exit code 5 for findings"}}}),
      .examples = {"brenvolt catalog --site site", "brenvolt catalog --site site --check"},
      .page = "workbook.md",
      .run = [options] { return runCatalog(*options); },
  };
}

} // namespace simhost
