// The saved configurations of a site's circuits, for a list from which a user picks one to build again.
#pragma once

#include <string>
#include <vector>

namespace simhost {

/// What a direct build needs of one.
struct SavedConfiguration {
  std::wstring circuit;
  std::wstring type;
  std::wstring name;
  std::wstring drawingTemplate;
  std::wstring worksheet;
  std::wstring workbook;
};

/// Those of the history file beside the site's workbook whose circuit and type the workbook has, in the order of the
/// file; none without a history. Throws BadInput when workbook or history cannot be read.
[[nodiscard]] std::vector<SavedConfiguration> savedConfigurations(const std::string& site);

} // namespace simhost
