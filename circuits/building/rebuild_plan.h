// What a circuit of the drawing is built from when it is built again with other choices: a row as a list would have it,
// and its choices as a saved configuration.
#pragma once

#include "circuits/building/circuit_rows.h"
#include "circuits/provenance/circuit_objects.h"
#include "simhost/site/site_run.h"

#include <string>
#include <utility>
#include <vector>

namespace circuits {

struct RebuildRequest {
  std::string site;     ///< folder
  std::string workbook; ///< full path
  std::wstring circuit; ///< id
  /// The tag of the motor or load that the choices mean, where the circuit has several; another text means none.
  std::wstring load{};
  /// Column of a motor list or CODE of the worksheet, and the cell: "load" "15", "DISC" "20,1", "DISC" "Circuit
  /// breaker". What is not named stays as the circuit has it.
  std::vector<std::pair<std::wstring, std::wstring>> choices{};
};

struct RebuildPlan {
  SetCircuit row;
  std::string history;                 ///< a file with its choices alone
  bool hasDrop = false;                ///< the row says what the wires come to
  std::vector<std::string> findings{}; ///< what needs a look in the wires, a sentence each
};

/// `copy`: the tag of the circuit that is built beside this one; empty to build this one again. Throws BadInput with all
/// reasons, a line each.
[[nodiscard]] RebuildPlan planRebuild(
    simhost::SiteRun& run, const RebuildRequest& request, const CircuitObject& circuit,
    const std::wstring& copy);

// What `circuit_rebuild` and `circuit_configure` share with it.

[[nodiscard]] simhost::DrawingDatabase& drawingOf(simhost::SiteRun& run);
/// Gives the row what the site knew of the circuit by variables of the drawing when it was built, except what the request
/// chooses.
void takeSiteVariables(SetCircuit& row, const CircuitObject& circuit, const RebuildRequest& request);
/// What the drawing keeps of a row's wires, after the circuit as it is now; a voltage drop is known only while motors and
/// wires are the same.
void takeWireFacts(SetCircuit& row, const CircuitObject& before, const CircuitObject& now);

} // namespace circuits
