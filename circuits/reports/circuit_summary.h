// A drawing's circuits as lines of a list that a designer works from: what each is, what it feeds, and what is wrong
// with it according to the drawing.
#pragma once

#include "circuits/provenance/circuit_objects.h"

#include <string>
#include <vector>

namespace circuits {

enum class CircuitFault {
  noRecord,   ///< the drawing does not keep what it was built from, so it cannot be built again
  noLoadData, ///< its motor or load was never chosen
  noWireSize, ///< it has a motor or load, and a wire of it has no size
  tagTwice    ///< another circuit has a component of the same tag
};

struct CircuitFinding {
  CircuitFault fault;
  std::wstring tag{}; ///< that is meant; empty for the circuit as a whole
};

struct CircuitSummary {
  std::wstring id{};
  std::wstring number{}; ///< the site's own, else its place in the drawing
  std::wstring tag{};
  std::wstring circuit{};
  std::wstring type{};
  std::wstring load{};  ///< "10 HP, 460 V"; empty without a motor or load
  std::wstring wires{}; ///< "10AWG, PE 8AWG"
  std::vector<CircuitFinding> findings{};
};

/// In the order of the circuits.
[[nodiscard]] std::vector<CircuitSummary> summariesOf(const std::vector<CircuitObject>& circuits);

/// Wire sizes of a circuit's list of wires, each once, the grounding conductor marked: "10AWG, PE 8AWG".
[[nodiscard]] std::wstring wireSizesOf(const std::wstring& wires);

} // namespace circuits
