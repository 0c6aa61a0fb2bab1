// Finding a site's workbook.
#include "simhost/cli/site_workbook.h"

#include "simhost/host/errors.h"
#include "text/encoding.h"

#include <filesystem>

namespace simhost {

namespace fs = std::filesystem;
using brenvolt::fromUtf8;
using brenvolt::toUtf8;

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

} // namespace simhost
