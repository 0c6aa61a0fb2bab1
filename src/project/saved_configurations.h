// The saved configurations of a workbook's circuits, for a list from which a user picks one to build again.
#pragma once

#include "project/circuit_list.h"
#include "project/history_file.h"

#include <string>
#include <vector>

namespace brenvolt {

/// What a direct build needs of one.
struct SavedConfiguration {
  HistoryKey key; ///< circuit and type as the workbook writes them
  std::wstring drawingTemplate;
  std::wstring worksheet;
  std::wstring circuitScale{}; ///< decimal texts
  std::wstring componentScale{};
};

/// Those whose circuit and type the workbook has, in the order of the history file.
[[nodiscard]] std::vector<SavedConfiguration> savedConfigurations(
    const ZanCircuitCatalog& circuits, const HistoryFile& history);

/// The data and the wires of a motor or load of a saved configuration.
struct SavedControl {
  struct Wire {
    std::wstring size;
    bool isGrounding = false;
  };

  std::vector<std::wstring> fields;
  std::vector<Wire> wires;

  /// `"a";"";"c"`; empty without fields.
  [[nodiscard]] std::wstring fieldsText() const;
};
/// Of each CODE that asks for a motor or load once, in the order of the file, which may have a CODE for each depth.
[[nodiscard]] std::vector<SavedControl> savedControls(const HistoryFile& history, const HistoryKey& key);

} // namespace brenvolt
