// The configuration workbook that a subcommand works on, and the saved configurations beside it.
#pragma once

#include "build/workbook_catalogue.h"
#include "drawing/history.h"
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

/// The catalogue, its circuits read. Throws BadInput with the reason.
[[nodiscard]] brenvolt::ZanCircuitCatalog readCatalogue(const std::string& workbook);

/// Reads the history file beside the workbook; false when there is none. Throws BadInput when it cannot be read.
[[nodiscard]] bool openHistory(brenvolt::ZanXmlHistory& history, const std::string& workbook);
/// Opens the saved configuration of this name. Throws BadInput when there is none.
void openConfiguration(
    brenvolt::ZanXmlHistory& history, const std::string& workbook, const std::string& circuit,
    const std::string& type, const std::string& name);

} // namespace simhost
