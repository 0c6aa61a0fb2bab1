// A circuit of the open drawing built again in its place with other choices, or once more at another place. Tool and main
// window do it alike: show `rebuildWarning`, then call `rebuildCircuit` inside of one command, so that it is one step of
// undo:
//
//   steps.runSteps(L"Build again", [&](const CommandSteps::Evaluate&) -> std::optional<lisp::Value> {
//     circuits::rebuildCircuit(run, {site, workbook, circuit.id, {}, {{L"load", L"15"}, {L"DISC", L"Circuit breaker"}}});
//     return lisp::Value::truth(true);
//   });
//
// A circuit that was moved with `moveCircuit` is built where it is now.
#pragma once

#include "circuits/building/rebuild_plan.h"

#include <functional>
#include <string>
#include <vector>

namespace circuits {

/// What is lost when the circuit is built again; empty where it is as it was built.
[[nodiscard]] std::wstring rebuildWarning(
    const simhost::DrawingDatabase& drawing, const CircuitObject& circuit);

/// Builds the circuit again in the run's current drawing. It keeps its id, tags and terminal numbers, and its motors their
/// data and wires, except those of the motor that the choices change. Returns what needs a look in its wires, a sentence
/// each. Throws BadInput with all reasons, a line each, and the drawing is as before then.
std::vector<std::string> rebuildCircuit(simhost::SiteRun& run, const RebuildRequest& request);

struct CopiedCircuit {
  std::wstring id;
  std::vector<std::string> findings; ///< what needs a look in its wires, a sentence each
};
/// Builds the circuit once more, as a new one, with the choices of the request. `tag`: as a motor list names it; empty
/// for a circuit that has none, whose tags the site counts on. Errors as above.
CopiedCircuit copyCircuit(
    simhost::SiteRun& run, const RebuildRequest& request, const std::wstring& tag, const KvPoint3d& at);

// What `circuit_configure` shares.

/// Throws BadInput for an id that the drawing does not have.
[[nodiscard]] CircuitObject needCircuit(const simhost::DrawingDatabase& drawing, const std::wstring& id);
/// Which saved configuration the record says that the circuit was built from; empty for none.
void setConfiguration(simhost::DrawingDatabase& drawing, const std::wstring& id, const std::wstring& name);
/// Takes the circuit out of the drawing and lets `build` draw it at the same point; id, terminal numbers and the site's
/// variables are as before. `finishRow` completes what the drawing keeps of a row of a list. False, with the drawing as
/// before, when `build` returns false; so it is when `build` throws.
[[nodiscard]] bool replaceCircuit(
    simhost::SiteRun& run, const CircuitObject& circuit, SetCircuit row,
    const std::function<bool(const SetCircuit&, const KvPoint3d&)>& build,
    const std::function<void(SetCircuit&)>& finishRow);

} // namespace circuits
