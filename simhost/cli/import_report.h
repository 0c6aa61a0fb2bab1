// The report of an import: its tables, or why nothing was written.
#pragma once

#include "platform/table_import.h"
#include "simhost/cli/exit_code.h"
#include "simhost/cli/table_output.h"

#include <string>

namespace simhost {

/// One line that is written over with each table, on a terminal only.
void showImportProgress(std::size_t index, std::size_t count, const std::wstring& table);

/// Prints the tables of an import that is done. Throws BadInput or CannotWrite for one that is not; `remedyForCells` says
/// what to do about cells that do not hold what their column needs.
ExitCode reportImport(
    const brenvolt::ImportReport& report, const OutputOptions& output, const std::string& remedyForCells);

} // namespace simhost
