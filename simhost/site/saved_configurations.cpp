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
  return {circuits.workbook, brenvolt::savedConfigurations(circuits, history)};
}

} // namespace simhost
