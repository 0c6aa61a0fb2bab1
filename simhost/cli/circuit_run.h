// A circuit of the workbook that the tool has to build: how it is found, and the call of the site's LISP that does it.
#pragma once

#include "simhost/ui/session_file.h"

#include <string>

namespace simhost {

enum class CircuitBuild { direct, withDialog };

/// The call of `site-build` for the circuit of `run`. Throws BadInput when the workbook does not hold it, when its
/// worksheet cannot be read, and for a history or a preset that is not there: a build says no word of these.
/// @param workbook  full path
[[nodiscard]] std::wstring circuitForm(
    const SessionRun& run, const std::string& workbook, CircuitBuild build);

/// Names the project's database to the site's LISP.
[[nodiscard]] std::wstring projectForm(const std::string& database);
/// Names the workbook that the circuit selection opens.
[[nodiscard]] std::wstring workbookForm(const std::string& workbook);

} // namespace simhost
