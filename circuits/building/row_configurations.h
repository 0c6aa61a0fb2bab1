// The configurations of a set's rows as a history file: what a direct build draws a row from, and what the configuration
// dialog shows when the circuit is opened later.
#pragma once

#include "circuits/building/circuit_rows.h"

#include "project/entry_content.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace circuits {

/// How deep templates are nested at most; a choice is looked for at the depth at which its marker comes.
inline constexpr int deepestTemplate = 3;

/// A history file with an entry under the tag of each circuit that has data of its own, piece by piece: a long list's
/// file would fill the memory.
void writeHistory(
    const std::vector<SetCircuit>& circuits, const std::string& workbook,
    const std::function<void(std::string_view)>& write);

/// The data of a circuit's motor or load and its wires, as a configuration keeps them; none for a circuit without either.
[[nodiscard]] std::vector<brenvolt::EntryRow> loadRows(const SetCircuit& circuit);

/// A folder with a copy of the workbook, whose history file holds one configuration at a time.
class ConfigurationFolder final {
public:
  /// Makes the folder. Throws CannotWrite.
  ConfigurationFolder(std::filesystem::path folder, const std::string& workbook);
  ConfigurationFolder(const ConfigurationFolder&) = delete;
  ConfigurationFolder& operator=(const ConfigurationFolder&) = delete;
  /// Removes it.
  ~ConfigurationFolder();

  /// For files of this process alone.
  [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }
  /// The workbook from which the circuit is built: the copy with the circuit's configuration beside it, or the site's
  /// own for a circuit that starts from a configuration there.
  [[nodiscard]] std::string workbookFor(const SetCircuit& circuit) const;
  /// The copy with this history file beside it. Throws CannotWrite.
  [[nodiscard]] std::string workbookWith(const std::string& history) const;

private:
  std::filesystem::path folder_;
  std::string workbook_;
};

} // namespace circuits
