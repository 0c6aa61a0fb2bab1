// The record of the current circuit: motor or load data and wire choices, kept from one LISP call to the next. This is
// how a motor chosen in one call reaches the wire lookup and the build that follow.
#pragma once

#include "data/ratings.h"

#include <array>
#include <cstddef>
#include <string>

namespace brenvolt {

/// What `openField` counts: true while the user may change the field, false when the circuit's configuration fixes it.
using OpenField = Rating;
inline constexpr std::size_t openFieldCount = ratingCount;

[[nodiscard]] constexpr std::array<bool, openFieldCount> allOpen() {
  std::array<bool, openFieldCount> flags{};
  flags.fill(true);
  return flags;
}

/// A double that is not above the tolerance is not given; readers then take the option's default.
struct ZanCircuitData : Ratings {
  double extraCurrent = -1.0; ///< amperes on top of the load's current
  bool fromSelection = false; ///< set by the motor dialog, cleared when the wire dialog stores its fields
  std::array<bool, openFieldCount> openField = allOpen();
  std::wstring wireStandard;
  std::wstring wireMetal;
  std::wstring insulation;
  std::wstring temperature; ///< names the ampacity column
  bool useVoltageDrop = false;
  double length = -1.0;
  std::wstring lengthUnits;
  std::wstring raceway;
  double powerFactor = -1.0;
  bool useDropLimit = true;
  double dropLimit = -1.0; ///< percent
  bool useContinuousLoad = true;
  double continuousFactor = 0.8;
  bool useFill = false;
  std::wstring fillRange;
  double fillFactor = -1.0;
  bool useAmbient = false;
  std::wstring ambientRange;
  double ambientFactor = -1.0;
  double overallFactor = 0.8;
  bool useParallel = false;
  std::wstring parallelCount;   ///< highest count
  std::wstring parallelMinSize; ///< smallest size that may run in parallel
  double energyPrice = 0.0;     ///< per kWh
  bool showUndersized = true;   ///< keep rows up to 300 % load
  int quantity = 1;
  std::wstring groundSize; ///< without blanks
  bool wireChosen = false; ///< a row was accepted in the wire dialog

  [[nodiscard]] bool isOpen(OpenField field) const { return openField[static_cast<std::size_t>(field)]; }
  /// Sets one flag; an index of 9 or more is ignored.
  void setOpenField(std::size_t index, bool value);
  void resetOpenFields();
};

/// A load's own multiplier and power factor, separate from the motor's.
struct ZanLoadFactors {
  double flaMultiplier = -1.0;
  double powerFactor = -1.0;
};

/// The data that one LISP call passes to the next about the current circuit. A handler passes it to the functions that
/// it calls; nothing below a handler reads it elsewhere.
struct CircuitContext {
  ZanCircuitData circuit;
  ZanLoadFactors load;
};

/// The record of the process, from first use to its end. LISP that a flow runs may call a handler, which works on the
/// same record: this is how the result of a lookup reaches the page that requested it.
[[nodiscard]] CircuitContext& circuitContext();
[[nodiscard]] inline ZanCircuitData& circuitData() {
  return circuitContext().circuit;
}
[[nodiscard]] inline ZanLoadFactors& loadFactors() {
  return circuitContext().load;
}

} // namespace brenvolt
