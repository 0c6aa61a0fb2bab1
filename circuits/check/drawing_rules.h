// What is wrong in the drawing of a circuit: components without a tag, wires that end nowhere, texts on each other.
#pragma once

#include "circuits/check/finding.h"
#include "simhost/drawing/drawing_database.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace circuits {

/// Where a wire of the template begins, and the layer that belongs to its size.
struct WireStart {
  std::wstring code;
  double x = 0.0;
  double y = 0.0;
  std::wstring layer; ///< empty when the template names no format
};

/// Findings of a circuit that are already reported: other choices would repeat them.
using ReportedFindings = std::set<std::wstring>;

struct DrawnCircuit {
  const simhost::DrawingDatabase& drawing;
  FindingPlace place;   ///< of the circuit, without a position
  std::wstring choices; ///< for a reader
  std::vector<WireStart> starts;
  /// Of each component the CODE whose forms placed it, as far as it is known; by handle.
  std::map<std::uint64_t, std::wstring> codes;
  /// CODEs whose components the tables rate, in upper case.
  std::set<std::wstring> rated;
  /// The parts that were handed to the forms of each CODE, in upper case: table and catalogue number.
  std::map<std::wstring, std::vector<std::pair<std::wstring, std::wstring>>> parts;
};

void checkDrawing(const DrawnCircuit& circuit, ReportedFindings& reported, Findings& findings);

} // namespace circuits
