#include "data/wire_sizing.h"

#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace brenvolt {

namespace {

constexpr double overloadLimitPercent = 300.0;
constexpr double hoursPerDay = 24.0;
constexpr int currentDecimals = 4;
constexpr double daysPerYear = 365.25;

const std::wstring notAvailable = L"-";

std::wstring twoDecimals(double value) {
  return formatTrimmed(value, 2);
}

/// A figure of the columns after the utilisation: nothing and zero both show "-".
std::wstring figureCell(double value) {
  const std::wstring text = twoDecimals(value);
  return text.empty() || text == L"0" ? notAvailable : text;
}

double guarded(const std::optional<double>& factor) {
  return factor.has_value() && *factor >= numberTolerance ? *factor : 1.0;
}

/// Whether a load and an ampacity read the same in six decimals.
bool readsTheSame(double load, double ampacity) {
  return formatDouble(load) == formatDouble(ampacity);
}

WireCandidate parallelRow(
    const std::wstring& size, std::wstring count, const FillEntry& fill, double ampacity) {
  WireCandidate row;
  row.size = size;
  row.count = std::move(count);
  row.fillRange = fill.range;
  row.ampacity = twoDecimals(ampacity);
  return row;
}

} // namespace

double totalCurrent(double fla, double multiplier, double extraCurrent) {
  const double current = fla * multiplier;
  return isGiven(extraCurrent) ? current + extraCurrent : current;
}

double shownCurrent(double amperes) {
  return toDouble(formatTrimmed(amperes, currentDecimals));
}

double overallFactor(const DeratingFactors& factors) {
  return std::min(guarded(factors.continuous), guarded(factors.fill)) * factors.ambient.value_or(1.0);
}

std::vector<WireCandidate> singleRunRows(const std::vector<ZanWireRow>& rows, double overallFactor) {
  std::vector<WireCandidate> candidates;
  candidates.reserve(rows.size());
  for (const ZanWireRow& row : rows) {
    WireCandidate candidate;
    candidate.size = row.size;
    candidate.ampacity = twoDecimals(row.ampacity * overallFactor);
    candidates.push_back(std::move(candidate));
  }
  return candidates;
}

std::vector<WireCandidate> parallelRows(
    const std::vector<ZanWireRow>& rows, const std::vector<FillEntry>& fill, const ParallelInput& input) {
  std::vector<WireCandidate> candidates;
  if (!isGiven(input.total) || fill.empty()) return candidates;
  for (const ZanWireRow& row : rows) {
    if (row.ampacity <= 0.0) continue;
    if (input.minimumAmpacity - row.ampacity > numberTolerance) {
      candidates.push_back(parallelRow(row.size, L"1", fill.front(), fill.front().factor * row.ampacity));
      continue;
    }
    const double count = std::ceil(input.total / row.ampacity);
    if (count > input.highestCount) continue;
    for (std::size_t k = input.selectedFill; k < fill.size(); ++k) {
      const double ampacity = row.ampacity * count * fill[k].factor;
      if (input.total - ampacity > std::numeric_limits<double>::min()) break;
      if (readsTheSame(input.total, ampacity)) break;
      candidates.push_back(
          parallelRow(row.size, formatInt(static_cast<std::int64_t>(count)), fill[k], ampacity));
    }
  }
  return candidates;
}

void fillLoadPercent(std::vector<WireCandidate>& rows, double total) {
  std::size_t overloaded = 0;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const double ampacity = std::max(toDouble(rows[i].ampacity), numberTolerance);
    const double ratio = total / ampacity;
    const double percent = ratio * 100;
    const std::wstring text = twoDecimals(percent);
    rows[i].loadPercent = text.empty() || !isGiven(percent) ? notAvailable : text;
    if (ratio >= 1.0) overloaded = i + 1;
  }
  for (std::size_t i = 0; i < rows.size(); ++i)
    rows[i].isOverloaded = i < overloaded;
}

double voltageDrop(const DropCircuit& circuit, const Impedance& impedance) {
  if (circuit.powerFactor > 1.0) return 0.0;
  const double factor = circuit.isSinglePhase ? singlePhaseFactor : threePhaseFactor;
  const double perUnit = circuit.isMetres ? feetPerMetre : 1.0;
  const double reactive = std::sqrt(1.0 - circuit.powerFactor * circuit.powerFactor);
  return factor * circuit.length * perUnit * kilometresPerFoot * circuit.current *
         (impedance.r * circuit.powerFactor + impedance.x * reactive);
}

std::wstring dropCell(double volts) {
  return figureCell(volts);
}

std::wstring dropPercentCell(std::wstring_view dropCell, double circuitVoltage) {
  return figureCell(toDouble(dropCell) / circuitVoltage * 100);
}

std::wstring lossCell(std::wstring_view dropCell, double phase, double fla) {
  const double factor = phase == 1.0 ? 1.0 : threePhaseFactor;
  return figureCell(factor * toDouble(dropCell) * fla * 0.001);
}

std::wstring costCell(std::wstring_view lossCell, double energyPrice, std::wstring_view currency) {
  std::wstring cost = figureCell(toDouble(lossCell) * hoursPerDay * daysPerYear * energyPrice);
  if (cost == notAvailable) return cost;
  return std::wstring(currency) + L' ' + cost;
}

void removeOverloaded(std::vector<WireCandidate>& rows, UndersizedRows undersized) {
  const auto isMarked = [undersized](const WireCandidate& row) {
    const double percent = toDouble(row.loadPercent);
    if (percent - overloadLimitPercent > numberTolerance) return true;
    if (undersized == UndersizedRows::show) return false;
    return percent - fullLoadPercent > numberTolerance || row.loadPercent == fullLoadText;
  };
  const auto first = std::find_if(rows.begin(), rows.end(), isMarked);
  if (first == rows.end()) return;
  const auto last = std::find_if(rows.rbegin(), rows.rend(), isMarked);
  rows.erase(first, last.base());
}

void removeAboveDropLimit(std::vector<WireCandidate>& rows, std::wstring_view limit) {
  if (limit.ends_with(L'%')) limit.remove_suffix(1);
  const double limitPercent = toDouble(limit);
  std::erase_if(rows, [limitPercent](const WireCandidate& row) {
    return isGiven(toDouble(row.dropPercent) - limitPercent);
  });
}

std::optional<std::size_t> proposedRow(const std::vector<WireCandidate>& rows, double total) {
  const auto row = std::find_if(rows.begin(), rows.end(), [total](const WireCandidate& each) {
    return toDouble(each.ampacity) > total;
  });
  if (row == rows.end()) return std::nullopt;
  return static_cast<std::size_t>(row - rows.begin());
}

std::vector<std::wstring> groundSizes(const std::vector<GroundRow>& rows, double value) {
  std::vector<std::wstring> sizes;
  for (const GroundRow& row : rows)
    if (row.maximum - value > numberTolerance) sizes.push_back(row.size);
  return sizes;
}

} // namespace brenvolt
