// Finding and checking a site's workbook.
#include "simhost/cli/site_workbook.h"

#include "simhost/host/errors.h"
#include "text/encoding.h"

#include <filesystem>
#include <set>

namespace simhost {

namespace fs = std::filesystem;
using brenvolt::fromUtf8;
using brenvolt::toUtf8;

namespace {

constexpr wchar_t catalogueSheet[] = L"ZAN_CIRCS";

/// What one entry names, and whether it is there.
void checkEntry(
    const brenvolt::ZanCircuitEntry& entry, const std::wstring& name, const std::string& site,
    std::vector<brenvolt::WorkbookFinding>& findings) {
  std::error_code error;
  if (!fs::is_regular_file(fs::path(site) / toUtf8(entry.drawingTemplate), error))
    findings.push_back(
        {catalogueSheet, 0, 3, name + L": the site holds no template " + entry.drawingTemplate});
  if (entry.worksheet.empty()) findings.push_back({catalogueSheet, 0, 4, name + L": names no worksheet"});
}

} // namespace

OptionRows SiteWorkbookOptions::rows() {
  return {
      {"--site", &site, "Folder of the site", "DIR", {.isRequired = true}},
      {"--workbook", &workbook, "Another workbook than the site's; the history lies beside it", "FILE"},
  };
}

std::string SiteWorkbookOptions::path() const {
  const fs::path file =
      workbook.empty() ? fs::path(site) / toUtf8(brenvolt::defaultWorkbook) : fs::path(workbook);
  std::error_code error;
  if (!fs::is_directory(site, error)) throw BadInput(site + ": is no folder");
  if (!fs::is_regular_file(file, error)) throw BadInput(file.string() + ": there is no such workbook");
  return fs::absolute(file, error).lexically_normal().string();
}

brenvolt::ZanCircuitCatalog readCatalogue(const std::string& workbook) {
  brenvolt::ZanCircuitCatalog catalogue(fromUtf8(workbook));
  if (!catalogue.readCircuits()) throw BadInput(workbook + ": " + toUtf8(catalogue.error()));
  return catalogue;
}

bool openHistory(brenvolt::ZanXmlHistory& history, const std::string& workbook) {
  history.context = fromUtf8(workbook);
  const fs::path file = fs::path(workbook).replace_filename(toUtf8(brenvolt::historyFileName));
  std::error_code error;
  if (!fs::exists(file, error)) return false;
  if (!history.Reload())
    throw BadInput(
        file.string() + ": " +
        (history.error.empty() ? "is no history of version 1.0 or later" : toUtf8(history.error)));
  return true;
}

void openConfiguration(
    brenvolt::ZanXmlHistory& history, const std::string& workbook, const std::string& circuit,
    const std::string& type, const std::string& name) {
  history.circuit = fromUtf8(circuit);
  history.circuitType = fromUtf8(type);
  history.historyName = fromUtf8(name);
  if (openHistory(history, workbook) && history.OpenHistory()) return;
  throw BadInput(circuit + " / " + type + ": there is no history \"" + name + "\"");
}

std::vector<brenvolt::WorkbookFinding> checkWorkbook(const std::string& workbook, const std::string& site) {
  std::vector<brenvolt::WorkbookFinding> findings;
  const brenvolt::ZanCircuitCatalog catalogue = readCatalogue(workbook);
  std::set<std::wstring, brenvolt::CollatingLess> seen;
  for (const auto& [circuit, types] : catalogue.circuits())
    for (const brenvolt::ZanCircuitEntry& entry : types.entries) {
      checkEntry(entry, circuit + L" / " + entry.type, site, findings);
      if (entry.worksheet.empty() || !seen.insert(entry.worksheet).second) continue;
      brenvolt::ZanCircuitCatalog sheet(fromUtf8(workbook));
      if (!sheet.readWorksheet(entry.worksheet)) findings.push_back({entry.worksheet, 0, 0, sheet.error()});
      findings.insert(findings.end(), sheet.findings().begin(), sheet.findings().end());
    }
  return findings;
}

std::string findingText(const brenvolt::WorkbookFinding& finding) {
  std::string text = "sheet " + toUtf8(finding.sheet);
  if (finding.row > 0) text += ", row " + std::to_string(finding.row);
  if (finding.column > 0) text += ", column " + std::to_string(finding.column);
  return text + ": " + toUtf8(finding.text);
}

} // namespace simhost
