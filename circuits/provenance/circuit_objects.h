// The circuits of a drawing as objects: what builds drew there, by the marks that they left on entities. A circuit is
// listed, moved, copied and erased as one thing; undo sees each of these as the changes of its entities.
#pragma once

#include "simhost/drawing/drawing_database.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace circuits {

/// A motor or load of a circuit, as its symbols carry it.
struct CircuitLoad {
  std::wstring tag{};
  std::wstring params{}; ///< its data, as fields between ";"
  std::wstring wires{};  ///< as a list of texts
  std::vector<KvDbHandle> symbols{};
};

struct CircuitObject {
  std::wstring id{};
  simhost::CircuitFields fields{};    ///< what the drawing keeps of its build; empty when it keeps nothing
  std::vector<std::wstring> tags{};   ///< of its components, each once, in drawing order
  std::vector<KvDbHandle> entities{}; ///< in drawing order, attributes not counted
  std::map<std::wstring, int>
      byCode{};                     ///< how many of them each CODE drew; the empty CODE is the template's own
  std::vector<CircuitLoad> loads{}; ///< each once, in drawing order
  // Of the first load that has data, by which lists name the circuit.
  std::wstring loadTag{};
  std::wstring params{};
  std::wstring wires{};
  simhost::Box extents{}; ///< of all that it shows; empty where it was not measured

  /// The tag in the list that it was built from, else that of its motor or load, else the first one.
  [[nodiscard]] std::wstring name() const;
};

/// Whether the extents of circuits are found too, which takes as long as everything else.
enum class CircuitExtents { measured, unknown };

/// In the order of their first entities, of both spaces.
[[nodiscard]] std::vector<CircuitObject> circuitsOf(
    const simhost::DrawingDatabase& drawing, CircuitExtents extents = CircuitExtents::measured);

/// The circuits that a text means: that of the id or the name, else those that have a component of this tag. Names
/// compare without case.
[[nodiscard]] std::vector<const CircuitObject*> findCircuits(
    const std::vector<CircuitObject>& circuits, std::wstring_view text);

void eraseCircuit(simhost::DrawingDatabase& drawing, const CircuitObject& circuit);
/// Moves all of it, and the point that its record keeps. Why it cannot go there; nothing when it has moved.
[[nodiscard]] simhost::Fault moveCircuit(
    simhost::DrawingDatabase& drawing, const CircuitObject& circuit, double dx, double dy);

} // namespace circuits
