// The configuration workbook of a site, and the saved configurations beside it.
#pragma once

#include "project/circuit_list.h"
#include "project/history_file.h"

#include <string>

namespace simhost {

/// The full path of a workbook, of the site's own one when none is named. Throws BadInput when folder or file is
/// missing.
[[nodiscard]] std::string workbookPath(const std::string& site, const std::string& workbook = {});

/// The circuit list of a workbook. Throws BadInput with the reason.
[[nodiscard]] brenvolt::ZanCircuitCatalog readCircuitList(const std::string& workbook);

/// Reads the history file beside the workbook; one that is absent when there is none. Throws BadInput when it cannot be
/// used.
[[nodiscard]] brenvolt::HistoryFile readHistory(const std::string& workbook);
/// Throws BadInput when the history file does not hold the configuration.
void needConfiguration(const brenvolt::HistoryFile& file, const brenvolt::HistoryKey& key);

} // namespace simhost
