// A circuit of the workbook that the tool has to build: how it is found, and the call of the site's LISP that does it.
#pragma once

#include "simhost/cli/host_run.h"
#include "simhost/ui/session_file.h"

#include <optional>
#include <string>
#include <vector>

namespace simhost {

enum class CircuitBuild { direct, withDialog };

/// The call of `site-build`, and the scales that are set before.
struct CircuitCall {
  std::vector<lisp::Value> arguments;
  std::optional<double> circuitScale;   ///< none: that of the site
  std::optional<double> componentScale; ///< none: that of the site
  bool isPresetOverHistory = false;     ///< the preset changes choices of a saved configuration
};

/// The call for the circuit of `run`. A preset changes the choices of a saved configuration, whose scales and whose motor
/// or load with its wires stay unless the run has its own; a motor of the run without wires is sized. Throws BadInput when the workbook does not hold the circuit, when
/// its worksheet cannot be read, and for a history, a preset or a scale that cannot be used: a build says no word of
/// these. @param workbook  full path
[[nodiscard]] CircuitCall circuitCall(const SessionRun& run, const std::string& workbook, CircuitBuild build);
/// Calls the site's LISP; the value is nil when the build fails.
lisp::Value callSite(HostRun& host, const CircuitCall& call);

/// Names the project's database to the site's LISP.
void useProject(HostRun& host, const std::string& database);
/// Names the workbook that the circuit selection opens.
[[nodiscard]] std::wstring workbookForm(const std::string& workbook);

} // namespace simhost
