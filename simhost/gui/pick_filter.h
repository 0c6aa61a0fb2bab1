// What may be picked: only such entities light up under the pointer, and a click on any other one says why not. The rules
// are those by which whoever asks takes an entity; where they are not known, everything may be picked.
#pragma once

#include "simhost/drawing/drawing_database.h"
#include "simhost/gui/host_texts.h"

#include <QString>

namespace simhost {

enum class PickKind {
  any,
  circuit, ///< an entity of a circuit
  motor,
  load,
  motorOrLoad,
  sized ///< whose wires can be sized: a motor, a load or a component
};

/// What a dialog asks for when it lends the drawing, by the name of its form.
[[nodiscard]] PickKind pickKindOf(const QString& form);
[[nodiscard]] bool fits(const DrawingDatabase& drawing, KvDbHandle entity, PickKind kind);
/// Why an entity does not fit.
[[nodiscard]] HostText reasonOf(PickKind kind);

} // namespace simhost
