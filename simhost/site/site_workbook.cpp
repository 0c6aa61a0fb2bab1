// Finding a site's workbook.
#include "simhost/site/site_workbook.h"

#include "simhost/host/errors.h"
#include "text/encoding.h"

#include <filesystem>

namespace simhost {

namespace fs = std::filesystem;
using brenvolt::fromUtf8;
using brenvolt::toUtf8;

std::string workbookPath(const std::string& site, const std::string& workbook) {
  const fs::path file =
      workbook.empty() ? fs::path(site) / toUtf8(brenvolt::defaultWorkbook) : fs::path(workbook);
  std::error_code error;
  if (!fs::is_directory(site, error)) throw BadInput(site + ": not a folder");
  if (!fs::is_regular_file(file, error)) throw BadInput(file.string() + ": no such workbook");
  return fs::absolute(file, error).lexically_normal().string();
}

brenvolt::ZanCircuitCatalog readCircuitList(const std::string& workbook) {
  brenvolt::ZanCircuitCatalog list(fromUtf8(workbook));
  if (!list.keepOpen() || !list.readCircuits()) throw BadInput(workbook + ": " + toUtf8(list.error()));
  return list;
}

brenvolt::HistoryFile readHistory(const std::string& workbook) {
  const std::wstring path = brenvolt::historyPathOf(fromUtf8(workbook));
  brenvolt::HistoryFile file;
  if (file.read(path) == brenvolt::HistoryFile::State::refused)
    throw BadInput(
        toUtf8(path) + ": not a history file: " + toUtf8(file.error()) +
        " \"brenvolt history recover\" takes over what can be read");
  return file;
}

void needConfiguration(const brenvolt::HistoryFile& file, const brenvolt::HistoryKey& key) {
  if (key.isComplete() && !file.find(key).history.isNull()) return;
  throw BadInput(
      toUtf8(key.circuit) + " / " + toUtf8(key.type) + ": no saved configuration \"" + toUtf8(key.name) +
      "\"");
}

} // namespace simhost
