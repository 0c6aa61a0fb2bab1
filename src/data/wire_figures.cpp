#include "data/wire_figures.h"

#include "text/compare.h"
#include "text/numbers.h"

#include <algorithm>

namespace brenvolt {

namespace {

constexpr std::wstring_view threePhases = L"3";
constexpr std::wstring_view feet = L"FT";

std::vector<WireCandidate> candidateRows(const WireTableFigures& figures, const WireLookupInput& input) {
  if (!input.parallel) return singleRunRows(figures.sizes, input.overallFactor);
  ParallelInput parallel;
  parallel.total = input.total;
  parallel.highestCount = input.parallel->highestCount;
  parallel.minimumAmpacity = figures.minimumAmpacity;
  parallel.selectedFill = input.parallel->selectedFill;
  return parallelRows(figures.sizes, input.parallel->fill, parallel);
}

void fillDropColumns(
    std::vector<WireCandidate>& rows, const WireTableFigures& figures, const WireLookupInput& input) {
  const DropCircuit circuit = dropCircuitOf(input);
  const double phase = toDouble(input.phase);
  for (WireCandidate& row : rows) {
    const auto impedance = figures.impedances.find(row.size);
    row.lacksImpedance = impedance == figures.impedances.end();
    row.drop = dropCell(voltageDrop(circuit, row.lacksImpedance ? Impedance{} : impedance->second));
    row.dropPercent = dropPercentCell(row.drop, input.voltage);
    row.loss = lossCell(row.drop, phase, input.fla);
    if (input.cost) row.yearlyCost = costCell(row.loss, input.cost->energyPrice, input.cost->currency);
  }
}

bool hasCurrent(const WireLookupInput& input) {
  return isGiven(input.total) && (!input.drop || isGiven(dropCircuitOf(input).current));
}

} // namespace

WireTableFigures readWireFigures(const ZanWireTableReader& reader, const WireTableChoice& choice) {
  WireTableFigures figures;
  reader.ReadAmpacity(choice.tables, choice.temperature, figures.sizes);
  if (!choice.minimumSize.empty())
    reader.ReadAmpacityAt(choice.tables, choice.temperature, choice.minimumSize, figures.minimumAmpacity);

  std::wstring impedanceTable;
  std::wstring ampacityTable;
  if (choice.raceway.empty() ||
      !reader.ResolveTable(impedanceTable, ZanTableKind::impedance, choice.tables) ||
      !reader.ResolveTable(ampacityTable, ZanTableKind::ampacity, choice.tables))
    return figures;
  figures.impedances = reader.ReadImpedances(impedanceTable, ampacityTable, choice.raceway, figures.sizes);
  return figures;
}

bool isSinglePhaseText(std::wstring_view phase) {
  return phase != threePhases;
}

bool isMetresText(std::wstring_view units) {
  return !equalsOrdinalNoCase(units, feet);
}

DropCircuit dropCircuitOf(const WireLookupInput& input) {
  DropCircuit circuit;
  circuit.isSinglePhase = isSinglePhaseText(input.phase);
  circuit.current = input.fla + input.extraCurrent;
  if (!input.drop) return circuit;
  circuit.isMetres = isMetresText(input.drop->lengthUnits);
  circuit.length = input.drop->length;
  circuit.powerFactor = input.drop->powerFactor;
  return circuit;
}

std::vector<WireCandidate> unfilteredRows(const WireTableFigures& figures, const WireLookupInput& input) {
  std::vector<WireCandidate> rows = candidateRows(figures, input);
  fillLoadPercent(rows, input.total);
  if (input.drop) fillDropColumns(rows, figures, input);
  return rows;
}

WireLookupResult computeWires(const WireTableFigures& figures, const WireLookupInput& input) {
  WireLookupResult result;
  result.rows = unfilteredRows(figures, input);
  const auto stillFits = [&] { return proposedRow(result.rows, input.total).has_value(); };
  const bool isLargeEnough = stillFits();
  removeOverloaded(result.rows, input.undersized);
  const bool isLeft = stillFits();
  if (input.drop && input.drop->limit) removeAboveDropLimit(result.rows, *input.drop->limit);
  // Every size carries a current of 0: without one the smallest would be taken for a circuit that nobody knows.
  if (!hasCurrent(input)) {
    result.proposal = Proposal::noCurrent;
    return result;
  }
  result.proposed = proposedRow(result.rows, input.total);
  result.proposal = result.proposed  ? Proposal::fits
                    : !isLargeEnough ? Proposal::noneLargeEnough
                    : !isLeft        ? Proposal::leftOut
                                     : Proposal::aboveDropLimit;
  return result;
}

std::vector<std::wstring> sizesWithoutDrop(const std::vector<WireCandidate>& rows) {
  std::vector<std::wstring> sizes;
  for (const WireCandidate& row : rows)
    if (row.lacksImpedance && (sizes.empty() || sizes.back() != row.size)) sizes.push_back(row.size);
  return sizes;
}

WireSizeFacts wireSizeFacts(
    const ZanWireTableReader& reader, const WireTableChoice& choice, std::wstring_view sizeDescription) {
  WireSizeFacts facts;
  if (!reader.ResolveTable(facts.ampacityTable, ZanTableKind::ampacity, choice.tables)) return facts;
  std::vector<ZanWireRow> sizes;
  reader.ReadAmpacity(choice.tables, choice.temperature, sizes);
  const auto row = std::find_if(sizes.begin(), sizes.end(), [sizeDescription](const ZanWireRow& each) {
    return each.size == sizeDescription;
  });
  if (row != sizes.end()) facts.ampacity = row->ampacity;
  if (choice.raceway.empty() ||
      !reader.ResolveTable(facts.impedanceTable, ZanTableKind::impedance, choice.tables))
    return facts;
  reader.ReadImpedance(
      facts.impedanceTable, facts.ampacityTable, choice.raceway, sizeDescription, facts.impedance,
      &facts.source);
  return facts;
}

} // namespace brenvolt
