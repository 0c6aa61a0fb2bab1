// The origin of entities: the circuit of the build that drew them, and the number of earlier entities of its marker.
// It is stored as data of the entity, so it is copied, undone and saved with it; entities drawn by hand have none.
#pragma once

#include "simhost/drawing/entity.h"

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace simhost {

/// The application whose entity data it is: the circuit, and for what a marker's forms drew its CODE and order.
inline constexpr std::wstring_view provenanceApplication = L"CIRCUIT";

struct Provenance {
  std::wstring circuit; ///< id of the circuit in its drawing
  std::wstring code{};  ///< CODE of the marker; empty for entities of the template
  int order = 0;        ///< from 1 among what the forms of the marker drew; 0 without a CODE
  friend bool operator==(const Provenance&, const Provenance&) = default;
};

/// Nothing for an entity of no circuit, and for data of a form that is not known.
[[nodiscard]] std::optional<Provenance> provenanceOf(const Entity& entity);
void setProvenance(Entity& entity, const Provenance& provenance);

/// What a drawing knows of one circuit as a whole: texts by name, in the order in which they are saved.
using CircuitFields = std::vector<std::pair<std::wstring, std::wstring>>;
using CircuitRecords = std::map<std::wstring, CircuitFields>; ///< by id
/// Empty when there is none of the name.
[[nodiscard]] std::wstring circuitField(const CircuitFields& fields, std::wstring_view name);
/// The point that the circuit was built at, on the plane of the drawing; nothing where none is kept.
[[nodiscard]] std::optional<KvPoint3d> circuitPoint(const CircuitFields& fields);

} // namespace simhost
