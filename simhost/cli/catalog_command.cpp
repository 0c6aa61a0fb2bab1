// `brenvolt catalog`: the circuits of a site's workbook, and what its author has to put right.
#include "simhost/cli/site_workbook.h"
#include "simhost/cli/subcommand.h"
#include "simhost/json/json_text.h"
#include "text/encoding.h"

#include <nlohmann/json.hpp>

#include <cstdio>
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

void printJson(
    const brenvolt::ZanCircuitCatalog& catalogue, const std::vector<brenvolt::WorkbookFinding>& findings) {
  Json circuits = Json::array();
  for (const auto& [circuit, types] : catalogue.circuits()) {
    Json entries = Json::array();
    for (const brenvolt::ZanCircuitEntry& entry : types.entries)
      entries.push_back(
          {{"type", toUtf8(entry.type)},
           {"template", toUtf8(entry.drawingTemplate)},
           {"worksheet", toUtf8(entry.worksheet)},
           {"presets", toUtf8(entry.presetKey)}});
    circuits.push_back({{"circuit", toUtf8(circuit)}, {"types", std::move(entries)}});
  }
  Json problems = Json::array();
  for (const brenvolt::WorkbookFinding& finding : findings)
    problems.push_back(
        {{"sheet", toUtf8(finding.sheet)},
         {"row", finding.row},
         {"column", finding.column},
         {"text", toUtf8(finding.text)}});
  const Json all = {{"circuits", std::move(circuits)}, {"findings", std::move(problems)}};
  std::puts(jsonText(all, 2).c_str());
}

void printText(
    const brenvolt::ZanCircuitCatalog& catalogue, const std::vector<brenvolt::WorkbookFinding>& findings) {
  for (const auto& [circuit, types] : catalogue.circuits()) {
    std::printf("%s\n", toUtf8(circuit).c_str());
    for (const brenvolt::ZanCircuitEntry& entry : types.entries)
      std::printf(
          "  %-28s %-36s %-10s %s\n", toUtf8(entry.type).c_str(), toUtf8(entry.drawingTemplate).c_str(),
          toUtf8(entry.worksheet).c_str(), toUtf8(entry.presetKey).c_str());
  }
  for (const brenvolt::WorkbookFinding& finding : findings)
    std::fprintf(stderr, "brenvolt: %s\n", findingText(finding).c_str());
}

ExitCode runCatalog(const CatalogOptions& options) {
  const std::string workbook = options.site.path();
  const brenvolt::ZanCircuitCatalog catalogue = readCatalogue(workbook);
  std::vector<brenvolt::WorkbookFinding> findings;
  if (options.isCheck) findings = checkWorkbook(workbook, options.site.site);
  if (options.asJson)
    printJson(catalogue, findings);
  else
    printText(catalogue, findings);
  return findings.empty() ? ExitCode::done : ExitCode::findings;
}

} // namespace

CommandTable catalogCommand() {
  auto options = std::make_shared<CatalogOptions>();
  return {
      .name = "catalog",
      .description = "list the circuits of the site's workbook and check it",
      .options = joinedRows(
          {options->site.rows(),
           {{"--json", &options->asJson, "Print for a machine"},
            {"--check", &options->isCheck,
             "Read every worksheet too; exit code 5 when something is wrong"}}}),
      .examples = {"brenvolt catalog --site site", "brenvolt catalog --site site --check"},
      .page = "workbook.md",
      .run = [options] { return runCatalog(*options); },
  };
}

} // namespace simhost
