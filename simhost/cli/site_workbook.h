// The configuration workbook that a subcommand works on, and the saved configurations beside it.
#pragma once

#include "project/circuit_list.h"
#include "project/history_file.h"
#include "simhost/cli/command_table.h"

#include <string>

namespace simhost {

struct SiteWorkbookOptions {
  std::string site;     ///< folder
  std::string workbook; ///< empty for the one of the site

  [[nodiscard]] OptionRows rows();
  /// The full path. Throws BadInput when neither folder nor file is there.
  [[nodiscard]] std::string path() const;
};

/// The circuit list of a workbook. Throws BadInput with the reason.
[[nodiscard]] brenvolt::ZanCircuitCatalog readCircuitList(const std::string& workbook);

/// Reads the history file beside the workbook; one that is absent when there is none. Throws BadInput when it cannot be
/// used.
[[nodiscard]] brenvolt::HistoryFile readHistory(const std::string& workbook);
/// Throws BadInput when the history file does not hold the configuration.
void needConfiguration(const brenvolt::HistoryFile& file, const brenvolt::HistoryKey& key);

} // namespace simhost
