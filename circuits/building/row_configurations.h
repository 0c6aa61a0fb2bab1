// The configurations of a set's rows as a history file: what a direct build draws a row from, and what the configuration
// dialog shows when the circuit is opened later.
#pragma once

#include "circuits/building/circuit_rows.h"

#include <filesystem>
#include <string>
#include <vector>

namespace circuits {

/// The bytes of a history file with an entry under the tag of each circuit that has data of its own.
[[nodiscard]] std::string historyOf(
    const std::vector<const SetCircuit*>& circuits, const std::string& workbook);

/// A folder with a copy of the workbook, whose history file holds one configuration at a time.
class ConfigurationFolder final {
public:
  /// Makes the folder. Throws CannotWrite.
  ConfigurationFolder(std::filesystem::path folder, const std::string& workbook);
  ConfigurationFolder(const ConfigurationFolder&) = delete;
  ConfigurationFolder& operator=(const ConfigurationFolder&) = delete;
  /// Removes it.
  ~ConfigurationFolder();

  /// The workbook from which the circuit is built: the copy with the circuit's configuration beside it, or the site's
  /// own for a circuit that starts from a configuration there.
  [[nodiscard]] std::string workbookFor(const SetCircuit& circuit) const;

private:
  std::filesystem::path folder_;
  std::string workbook_;
};

} // namespace circuits
