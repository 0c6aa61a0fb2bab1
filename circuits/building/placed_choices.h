// What a circuit of a drawing was built with, as a saved configuration: the options that its record keeps, and of each
// motor and load the data and the wires that its symbol carries. A configuration dialog that starts from it shows the
// circuit as it is now, with several motors too.
#pragma once

#include "circuits/provenance/circuit_objects.h"
#include "project/code_record.h"
#include "project/entry_content.h"
#include "project/history_file.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace circuits {

/// The records of the circuit's worksheet by CODE.
using CodeRecords = std::map<std::wstring, brenvolt::ZanCodeRecord>;

/// What is chosen otherwise than the drawing has it.
struct ChangedChoices {
  std::map<std::wstring, std::vector<brenvolt::EntryOption>>
      options{}; ///< by CODE in upper case; other groups stay
  std::map<std::uint64_t, std::vector<brenvolt::EntryRow>> loads{}; ///< by symbol of the motor or load
  /// Of a circuit whose drawing has no data of a motor or load.
  std::vector<brenvolt::EntryRow> newLoad{};
};

/// The saved configurations beside the workbook; none where the file cannot be used.
[[nodiscard]] brenvolt::HistoryFile siteHistory(const std::string& workbook);
[[nodiscard]] brenvolt::HistoryFile emptyHistory(const std::string& workbook);

/// Puts the circuit's choices into the file under `key`. What an entry of this key says beside them stays: scales, and
/// the parts that were chosen for the same motors, loads and options. Throws BadInput for a text that XML does not allow.
void putPlacedChoices(
    brenvolt::HistoryFile& file, const brenvolt::HistoryKey& key, const CodeRecords& records,
    const simhost::DrawingDatabase& drawing, const CircuitObject& circuit,
    const ChangedChoices& changes = {});

/// The name of the last entry that says the same of options and loads as the drawing does of the circuit; empty for
/// none.
[[nodiscard]] std::wstring savedAs(
    const brenvolt::HistoryFile& file, const CodeRecords& records, const simhost::DrawingDatabase& drawing,
    const CircuitObject& circuit);

} // namespace circuits
