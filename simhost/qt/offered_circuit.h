// What a dialog's controls say together of the circuit that it is about: which one is chosen, and what its options lack.
#pragma once

#include "simhost/qt/circuit_facts.h"
#include "simhost/qt/view_set.h"

#include <QStringList>

namespace simhost {

/// The circuit that is chosen in a dialog that offers circuits; of empty names without one.
[[nodiscard]] OfferedCircuit offeredCircuit(const ViewSet& views);

/// The options of which one has to be chosen for a list of options to be of use; empty when one is, or none has to.
/// `facts`: null for nothing known.
[[nodiscard]] QStringList missingFor(const ViewSet& views, CircuitFacts* facts, const ListModel& list);

/// Inserts all units that wait to be inserted.
void insertWhatWaits(const ViewSet& views);

} // namespace simhost
