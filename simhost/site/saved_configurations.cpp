// Opening a site's workbook and its history file.
#include "simhost/site/saved_configurations.h"

#include "simhost/host/errors.h"
#include "text/encoding.h"

#include <filesystem>

namespace simhost {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;

SiteConfigurations savedConfigurations(const std::string& site) {
  const std::filesystem::path file = std::filesystem::path(site) / toUtf8(brenvolt::defaultWorkbook);
  const std::string workbook = std::filesystem::absolute(file).lexically_normal().string();
  brenvolt::ZanCircuitCatalog circuits(fromUtf8(workbook));
  if (!circuits.readCircuits()) throw BadInput(workbook + ": " + toUtf8(circuits.error()));
  brenvolt::HistoryFile history;
  const std::wstring path = brenvolt::historyPathOf(circuits.workbook);
  if (history.read(path) == brenvolt::HistoryFile::State::refused)
    throw BadInput(toUtf8(path) + ": " + toUtf8(history.error()));
  SiteConfigurations found{circuits.workbook, brenvolt::savedConfigurations(circuits, history), {}, {}};
  for (const brenvolt::SavedConfiguration& saved : found.saved)
    found.controls.push_back(brenvolt::savedControls(history, saved.key));
  for (const auto& [name, circuit] : circuits.circuits())
    for (const brenvolt::ZanCircuitEntry& entry : circuit.entries)
      found.types.push_back({{name, entry.type, {}}, entry.drawingTemplate, entry.worksheet});
  return found;
}

} // namespace simhost
