// The wire size of a build without dialogs: the same arithmetic as the wire lookup, and the first size that passes.
#pragma once

#include "data/circuit_data.h"
#include "data/wire_defaults.h"

#include <optional>
#include <string>

namespace brenvolt {

/// What a voltage drop limit requires of a size in a build.
struct AutoDropTest {
  DropCircuit circuit;
  double voltage = 0.0;
  /// Compared with drop / voltage, a fraction, although the limit is a percentage figure: so the test admits nearly
  /// every size. The mismatch with the wire lookup's filter is required behaviour.
  double limit = 0.0;
};

/// Whether a drop in volts passes. 0 V / 0 V passes, and a drop on 0 V does not.
[[nodiscard]] bool passesAutoDrop(double volts, const AutoDropTest& test);

/// The multiplier of a build: the circuit's, the options', or 1.25 where neither gives one.
[[nodiscard]] WireValue autoMultiplier(const WireDefaults& defaults, const ZanCircuitData& data);
/// The design current of a build in amperes: fla times the multiplier. The extra current takes no part.
[[nodiscard]] double autoDesignCurrent(const WireDefaults& defaults, const ZanCircuitData& data);

/// A size that a build takes.
struct AutoWire {
  std::wstring size;     ///< as shown
  double ampacity = 0.0; ///< as the table has it, amperes
  double factor = 1.0;   ///< applied to the table
  /// False when no size passes: it is then the largest one.
  bool isLargeEnough = false;
};

/// The first size in ascending ampacity that carries a current in amperes (an equal ampacity passes here) and, with
/// voltage drop on, passes the drop test; the last row when none does; nothing without rows.
[[nodiscard]] std::optional<AutoWire> autoWire(
    const WireDefaults& defaults, const ZanCircuitData& data, double current);

/// A grounding conductor that is sized unattended.
struct BesideGround {
  std::wstring size; ///< as shown; empty when the tables give none
  /// A size whose area the tables do not give, though it is needed: the grounding conductor is then the one for the
  /// smallest conductors that the current allows. Empty for none.
  std::wstring withoutArea{};
};

/// The grounding conductor of a build for the circuit's full-load current. `conductors` is the size of the circuit's
/// conductors without blanks, empty where it is not known.
[[nodiscard]] BesideGround autoGround(
    const WireDefaults& defaults, const ZanCircuitData& data, std::wstring_view conductors);

/// The same for a proposal of the wire lookup, which is by the formula alone. `smallest` is the size that the current alone
/// requires; empty where no size is large enough.
/// Beside larger conductors, for the voltage drop or by choice, it grows: in proportion to their areas (NEC 250.122(B)),
/// or, in mm2, to their area up to 16, to 16 up to 35, and to half of it above (IEC 60364-5-54, table 54.7). It does not
/// have to be larger than the conductors, whatever the formula of the rating gives (NEC 250.122(A), IEC 60364-5-54).
[[nodiscard]] BesideGround groundBeside(
    const WireDefaults& defaults, const WireTableSet& tables, const std::wstring& proposal,
    std::wstring_view smallest, std::wstring_view conductors);

} // namespace brenvolt
