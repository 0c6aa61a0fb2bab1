// The conductors of a row's motor or load: the size that the row fixes, or the one that the tables propose.
#pragma once

#include "circuits/building/circuit_rows.h"
#include "simhost/site/wire_request.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace circuits {

/// What is wrong with a cell.
using FieldFault = std::pair<SetField, std::wstring>;

struct RowWire {
  std::optional<brenvolt::WireCandidate> wire{}; ///< nothing where there is none
  FieldFault fault{};                            ///< why not, then
  std::vector<FieldFault> findings{};            ///< of a wire that needs a look
};

/// What chooses the tables of wires, and what is not of a row.
[[nodiscard]] simhost::WireTexts wireTextsOf(const SetSettings& settings, const SetCircuit& circuit);

/// The fixed size of the circuit, which is drawn as it is, else the one that the tables propose.
[[nodiscard]] RowWire wireOf(
    const SetSettings& settings, const SetCircuit& circuit, const simhost::WireRequest& request,
    simhost::WireRequests& wires);

/// A drop that the tables give no figures for is "-": nothing is known of it then.
[[nodiscard]] std::wstring percentText(const std::wstring& cell);

} // namespace circuits
