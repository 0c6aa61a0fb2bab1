// What a circuit of a drawing was built with, as a saved configuration: the options that its record keeps, and of each
// motor and load the data and the wires that its symbol carries. A configuration dialog that starts from it shows the
// circuit as it is now, with several motors too.
#pragma once

#include "circuits/provenance/circuit_objects.h"
#include "project/code_record.h"
#include "project/history_file.h"

#include <map>
#include <string>

namespace circuits {

/// The records of the circuit's worksheet by CODE.
using CodeRecords = std::map<std::wstring, brenvolt::ZanCodeRecord>;

/// Puts the circuit's choices into the file under `key`. What an entry of this key says beside them stays where its
/// options are those of the circuit: scales, chosen parts. Throws `brenvolt::XmlError` for a text that XML does not allow.
void putPlacedChoices(
    brenvolt::HistoryFile& file, const brenvolt::HistoryKey& key, const CodeRecords& records,
    const simhost::DrawingDatabase& drawing, const CircuitObject& circuit);

/// The name of the last entry that says the same of options and loads as the drawing does of the circuit; empty for
/// none.
[[nodiscard]] std::wstring savedAs(
    const brenvolt::HistoryFile& file, const CodeRecords& records, const simhost::DrawingDatabase& drawing,
    const CircuitObject& circuit);

} // namespace circuits
