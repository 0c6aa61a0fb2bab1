// The whole table of the wire lookup from what its fields say: candidate rows with every column, filters, proposal, and
// where the figures of a row come from. Reading the tables and computing are two steps, so that a long list of circuits
// reads each table once.
#pragma once

#include "data/wire_sizing.h"
#include "data/wire_tables.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// What a lookup reads of the tables.
struct WireTableChoice {
  WireTableSet tables;
  std::wstring temperature; ///< the ampacity column
  /// The impedance column; empty leaves the impedances unread.
  std::wstring raceway;
  /// The smallest size that runs in parallel, by its key; empty for single runs.
  std::wstring minimumSize;
};

/// The figures read from the tables.
struct WireTableFigures {
  std::vector<ZanWireRow> sizes;                ///< ascending by ampacity
  std::map<std::wstring, Impedance> impedances; ///< by size as shown; none for a size without one
  double minimumAmpacity = 0.0;                 ///< of the smallest size that runs in parallel, amperes
};

/// Reads them. Without a table or a column the lists are empty.
[[nodiscard]] WireTableFigures readWireFigures(
    const ZanWireTableReader& reader, const WireTableChoice& choice);

/// The fields of the drop columns, present while the drop tick is set.
struct DropFields {
  double length = 0.0; ///< one way
  std::wstring lengthUnits;
  double powerFactor = 1.0;
  std::optional<std::wstring> limit; ///< percent; absent while the limit's tick is off
};

/// The fields of the cost column, present while the continuous tick is set too.
struct CostFields {
  double energyPrice = 0.0; ///< per kWh
  std::wstring currency;
};

/// The fields of parallel runs, present while their tick is set.
struct ParallelFields {
  int highestCount = 0;
  std::vector<FillEntry> fill; ///< the fill list, also while the fill tick is off
  std::size_t selectedFill = 0;
};

/// Numbers are those that the fields show: a total that was computed counts as its text (see `shownCurrent`).
struct WireLookupInput {
  double fla = 0.0;          ///< amperes
  double extraCurrent = 0.0; ///< amperes
  double total = 0.0;        ///< amperes
  double overallFactor = 1.0;
  double voltage = 0.0;
  std::wstring phase;
  std::optional<DropFields> drop;
  std::optional<CostFields> cost;
  std::optional<ParallelFields> parallel;
  UndersizedRows undersized = UndersizedRows::show;
};

/// How the wire lookup understands phase and length units: by exclusion, so an odd text counts as single-phase and as
/// metres. The sizing of a build decides the opposite way.
[[nodiscard]] bool isSinglePhaseText(std::wstring_view phase);
[[nodiscard]] bool isMetresText(std::wstring_view units);

/// The circuit whose drop the lookup shows; the multiplier takes no part.
[[nodiscard]] DropCircuit dropCircuitOf(const WireLookupInput& input);

/// Why a size is proposed, or none.
enum class Proposal {
  fits,
  noneLargeEnough,
  leftOut,        ///< what is large enough went with the undersized rows around it
  aboveDropLimit, ///< what is large enough has more drop than the limit
  noCurrent       ///< no current is given that a size, or the drop, could be computed for
};

struct WireLookupResult {
  std::vector<WireCandidate> rows;
  /// The first row above the total; absent when none is, and when there is no current.
  std::optional<std::size_t> proposed;
  Proposal proposal = Proposal::noneLargeEnough;
};

/// All columns of all sizes, also of those that the lookup does not show because they are too small or have too much drop.
[[nodiscard]] std::vector<WireCandidate> unfilteredRows(
    const WireTableFigures& figures, const WireLookupInput& input);

/// All columns, then the filters, then the proposal.
[[nodiscard]] WireLookupResult computeWires(const WireTableFigures& figures, const WireLookupInput& input);

/// The sizes among the rows for which the tables have no impedance. Their drop cells are "-", as for a drop of zero: it
/// has to be reported which of the two it is.
[[nodiscard]] std::vector<std::wstring> sizesWithoutDrop(const std::vector<WireCandidate>& rows);

/// Where the figures of one size come from.
struct WireSizeFacts {
  std::wstring ampacityTable;
  double ampacity = 0.0;       ///< as the table has it
  std::wstring impedanceTable; ///< empty when no impedance is needed or the table is missing
  ImpedanceSource source;
  Impedance impedance;
};

[[nodiscard]] WireSizeFacts wireSizeFacts(
    const ZanWireTableReader& reader, const WireTableChoice& choice, std::wstring_view sizeDescription);

} // namespace brenvolt
