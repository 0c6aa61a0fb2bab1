// The arithmetic of conductor selection on plain records: design current, derating, candidate rows, voltage drop,
// loss and cost, filters, proposal, grounding. Reading tables and showing rows are elsewhere, so that every figure
// can be checked on paper against one function.
//
// A row keeps the cells as they are shown. Where one column follows from another it follows from the shown number,
// so that what the user sees adds up.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// A size as shown with its ampacity in amperes.
struct ZanWireRow {
  std::wstring size;
  double ampacity = 0.0;
};

/// Reactance and resistance of one conductor in ohms per kilometre.
struct Impedance {
  double x = 0.0;
  double r = 0.0;
};

/// The design current in amperes: fla x multiplier + extra; an extra current that is not given is left out.
[[nodiscard]] double totalCurrent(double fla, double multiplier, double extraCurrent);

/// A current as its field shows it: "%.4f" without trailing zeros, read back.
[[nodiscard]] double shownCurrent(double amperes);

/// The factors of the derating; absent where the control is off.
struct DeratingFactors {
  std::optional<double> continuous;
  std::optional<double> fill;
  std::optional<double> ambient;
};

/// The overall factor: the smaller of continuous and fill, not their product (the continuous-load allowance and the
/// conduit-fill derating do not stack), times ambient. A continuous or fill factor below 1e-5 counts as 1.0; the
/// ambient factor has no such guard.
[[nodiscard]] double overallFactor(const DeratingFactors& factors);

/// A load percentage from which the lookup asks whether the overload is meant; the text is that of the cell.
inline constexpr double fullLoadPercent = 100.0;
inline constexpr std::wstring_view fullLoadText = L"100";

/// One candidate as the wire lookup shows it. Cells that are not computed are empty.
struct WireCandidate {
  std::wstring size;
  std::wstring count;     ///< parallel runs only: conductors a phase
  std::wstring fillRange; ///< parallel runs only
  std::wstring ampacity;  ///< derated, amperes
  std::wstring loadPercent;
  std::wstring drop;        ///< volts
  std::wstring dropPercent; ///< of the circuit voltage
  std::wstring loss;        ///< kilowatts
  std::wstring yearlyCost;
  bool isOverloaded = false; ///< the load percentage is shown in red
  bool lacksImpedance =
      false; ///< the tables have no figure: "-" is not a drop of zero, and no limit was compared with it
};

/// One entry of the conduit fill list with the factor as the list gives it.
struct FillEntry {
  std::wstring range;
  double factor = 1.0;
};

/// One row a size in the order given: ampacity times the overall factor, two decimals, trimmed.
[[nodiscard]] std::vector<WireCandidate> singleRunRows(
    const std::vector<ZanWireRow>& rows, double overallFactor);

struct ParallelInput {
  double total = 0.0;           ///< amperes; not above 1e-5 gives no rows
  int highestCount = 0;         ///< conductors a phase
  double minimumAmpacity = 0.0; ///< of the smallest size that may be paralleled, amperes
  std::size_t selectedFill = 0; ///< index into the fill list
};

/// Returns rows with as many equal conductors as carry the load, one for each fill range in which they still do. Uses
/// the raw ampacity with the fill factor only, not the combined factor. A size below the minimum gives one row with
/// count 1; a set that exactly meets the load is dropped; a raw ampacity of 0 gives nothing.
[[nodiscard]] std::vector<WireCandidate> parallelRows(
    const std::vector<ZanWireRow>& rows, const std::vector<FillEntry>& fill, const ParallelInput& input);

/// Fills the load percentage (total / ampacity x 100; "-" when not above 1e-5) and marks as overloaded every row up
/// to the last whose ratio is 1 or more: rows are in ascending ampacity.
void fillLoadPercent(std::vector<WireCandidate>& rows, double total);

/// The circuit of a voltage drop.
struct DropCircuit {
  bool isSinglePhase = false;
  bool isMetres = false;
  double length = 0.0;      ///< one way, feet or metres
  double current = 0.0;     ///< amperes, without the multiplier: the drop is for the actual current
  double powerFactor = 1.0; ///< above 1.0 the drop is 0
};

/// The figures of the formula, as its text has them.
inline constexpr double singlePhaseFactor = 2.0;
inline constexpr double threePhaseFactor = 1.732;
inline constexpr double feetPerMetre = 3.280833;
inline constexpr double kilometresPerFoot = 0.0003048;

/// Volts: k x length x m x 0.0003048 x current x (R x pf + X x sqrt(1 - pf^2)), multiplied in this order, with k 2.0
/// or 1.732 and m 3.280833 for metres, 1.0 for feet.
[[nodiscard]] double voltageDrop(const DropCircuit& circuit, const Impedance& impedance);

/// A drop in volts as its cell: two decimals, trimmed, "-" for zero and for a figure that is not finite.
[[nodiscard]] std::wstring dropCell(double volts);

/// Percent of the circuit voltage from the drop cell. Zero volts give "-".
[[nodiscard]] std::wstring dropPercentCell(std::wstring_view dropCell, double circuitVoltage);

/// Kilowatts lost: c x drop x fla x 0.001 from the drop cell; c is 1.0 when the phase is exactly 1, else 1.732.
[[nodiscard]] std::wstring lossCell(std::wstring_view dropCell, double phase, double fla);

/// Cost of a year of 24 x 365.25 hours from the loss cell, with the currency word and a blank ahead.
[[nodiscard]] std::wstring costCell(
    std::wstring_view lossCell, double energyPrice, std::wstring_view currency);

enum class UndersizedRows { hide, show };

/// Takes out the stretch from the first to the last row above 300 % load or, when undersized rows are hidden, above
/// 100 % or shown as "100".
void removeOverloaded(std::vector<WireCandidate>& rows, UndersizedRows undersized);

/// Takes out every row whose percent drop is greater than the limit; a trailing "%" of the limit text is dropped.
void removeAboveDropLimit(std::vector<WireCandidate>& rows, std::wstring_view limit);

/// The first row whose ampacity is greater than the total: strictly, so an equal one is skipped.
[[nodiscard]] std::optional<std::size_t> proposedRow(const std::vector<WireCandidate>& rows, double total);

/// A row of the grounding table.
struct GroundRow {
  std::wstring size;
  double maximum = 0.0; ///< largest rating served, amperes
};

/// Returns the sizes whose maximum is strictly above the value, in the given order (ascending maximum).
[[nodiscard]] std::vector<std::wstring> groundSizes(const std::vector<GroundRow>& rows, double value);

} // namespace brenvolt
