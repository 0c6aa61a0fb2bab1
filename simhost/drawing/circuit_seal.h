// Whether a circuit is still as it was built: a digest of what it shows, kept in its record when it was built. Whoever
// builds it again wants to know what gets lost.
#pragma once

#include "simhost/drawing/drawing_database.h"

#include <optional>
#include <string>

namespace simhost {

/// Keeps the digest of the circuit as it is now; a circuit without a record stays without.
void sealCircuit(DrawingDatabase& drawing, const std::wstring& circuit);
/// Whether something of it has changed since; nothing where no digest was kept. A circuit that was moved as a whole
/// has not.
[[nodiscard]] std::optional<bool> isChangedSinceBuilt(
    const DrawingDatabase& drawing, const std::wstring& circuit);

} // namespace simhost
