// The wire size of a build that nobody watches: the same arithmetic as the wire lookup, and the first size that passes.
#pragma once

#include "data/circuit_data.h"
#include "data/wire_tables.h"

#include <string>
#include <vector>

namespace brenvolt {

/// What a voltage drop asks of a size in a build.
struct AutoDropTest {
  DropCircuit circuit;
  double voltage = 0.0;
  /// Compared with drop / voltage, a fraction, although the limit is a percentage figure: so the test admits nearly
  /// every size. The mismatch with the wire lookup's filter is required behaviour.
  double limit = 0.0;
};

/// Whether a drop in volts passes. 0 V / 0 V passes, and a drop on 0 V does not.
[[nodiscard]] bool passesAutoDrop(double volts, const AutoDropTest& test);

/// The design current of a build in amperes: fla times the multiplier, or the options' where none is given. The extra
/// current takes no part.
[[nodiscard]] double autoDesignCurrent(ZanWireTableReader& reader, const ZanCircuitData& data);

/// The size for a current in amperes, without blanks: the first in ascending ampacity that carries it (an exact meet
/// passes here) and, with voltage drop on, passes the drop test; the last row when none does; empty without rows.
/// The reader's options must be loaded.
[[nodiscard]] std::wstring autoWireSize(
    const ZanWireTableReader& reader, const ZanCircuitData& data, double current);

} // namespace brenvolt
