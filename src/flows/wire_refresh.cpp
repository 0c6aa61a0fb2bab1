// The table of sizes in the grid: what the fields say goes to the lookup, its rows come back into the columns that the
// ticks ask for.
#include "flows/wire_select_ctrl_mgr.h"
#include "host/resources.h"
#include "text/numbers.h"

#include <algorithm>

namespace brenvolt {

namespace {

/// What must be ticked for a column to stand in the grid.
enum class ColumnUse { always, parallel, drop, cost };

struct ResultColumn {
  TextId title;
  std::wstring WireCandidate::*cell;
  ColumnUse use;
};
constexpr ResultColumn resultColumns[] = {
    {TextId::wireColumnSize, &WireCandidate::size, ColumnUse::always},
    {TextId::wireColumnCount, &WireCandidate::count, ColumnUse::parallel},
    {TextId::wireColumnFillRange, &WireCandidate::fillRange, ColumnUse::parallel},
    {TextId::wireColumnAmpacity, &WireCandidate::ampacity, ColumnUse::always},
    {TextId::wireColumnLoadPercent, &WireCandidate::loadPercent, ColumnUse::always},
    {TextId::wireColumnDrop, &WireCandidate::drop, ColumnUse::drop},
    {TextId::wireColumnDropPercent, &WireCandidate::dropPercent, ColumnUse::drop},
    {TextId::wireColumnPowerLoss, &WireCandidate::loss, ColumnUse::drop},
    {TextId::wireColumnYearlyCost, &WireCandidate::yearlyCost, ColumnUse::cost},
};

} // namespace

void ZanDlgWireSelectCtrlMgr::Refresh() {
  KvUiGrid& grid = form().results();
  WireLookupResult computed = computeWires(readWireFigures(form().reader(), readTableChoice()), readInput());
  std::swap(lookup_, computed);
  // A click into the grid leaves the field first, and the click is meant for the rows that are still shown: the new
  // ones wait until it has taken effect.
  if (grid.HasFocus()) {
    if (!heldBackFrom_) heldBackFrom_ = std::move(computed.rows);
    form().showHeldBackSoon();
    return;
  }
  heldBackFrom_.reset();
  isTableSeen_ = true;
  const int rowBefore = grid.SelectedRow();
  grid.LockDrawing();
  showResults();
  SelectProposedRow(rowBefore);
  grid.UnlockDrawing();
}

void ZanDlgWireSelectCtrlMgr::ShowHeldBack() {
  if (!heldBackFrom_) return;
  const std::vector<WireCandidate> shown = std::move(*heldBackFrom_);
  heldBackFrom_.reset();
  isTableSeen_ = false;
  KvUiGrid& grid = form().results();
  const int row = grid.SelectedRow();
  grid.LockDrawing();
  showResults();
  SelectSeen(shown, row);
  grid.UnlockDrawing();
}

void ZanDlgWireSelectCtrlMgr::SelectSeen(const std::vector<WireCandidate>& shown, int row) {
  KvUiGrid& grid = form().results();
  grid.SelectRow(0);
  if (row < 1 || static_cast<std::size_t>(row) > shown.size()) return;
  const WireCandidate& seen = shown[static_cast<std::size_t>(row) - 1];
  // Parallel runs have a row for each fill range.
  const auto entry = std::find_if(rows().begin(), rows().end(), [&seen](const WireCandidate& each) {
    return each.size == seen.size && each.fillRange == seen.fillRange;
  });
  if (entry == rows().end()) return;
  const int newRow = static_cast<int>(entry - rows().begin()) + 1;
  grid.SelectRow(newRow);
  grid.ScrollTo(newRow);
}

WireTableChoice ZanDlgWireSelectCtrlMgr::readTableChoice() const {
  WireTableChoice choice{tables(), temperature(), {}, {}};
  if (isTicked(WireControl::dropTick)) choice.raceway = racewayColumn();
  if (isTicked(WireControl::parallelTick)) choice.minimumSize = textOf(WireControl::parallelMinSize);
  return choice;
}

WireLookupInput ZanDlgWireSelectCtrlMgr::readInput() const {
  WireLookupInput input;
  input.fla = numberOf(WireControl::current);
  input.extraCurrent = numberOf(WireControl::extraCurrent);
  input.total = numberOf(WireControl::total);
  input.overallFactor = numberOf(WireControl::overallFactor);
  input.voltage = numberOf(WireControl::voltage);
  input.phase = textOf(WireControl::phase);
  input.undersized = isTicked(WireControl::showUndersized) ? UndersizedRows::show : UndersizedRows::hide;
  if (isTicked(WireControl::dropTick)) {
    DropFields& drop = input.drop.emplace();
    drop.length = numberOf(WireControl::length);
    drop.lengthUnits = textOf(WireControl::lengthUnits);
    drop.powerFactor = numberOf(WireControl::powerFactor);
    if (isTicked(WireControl::dropLimitTick)) drop.limit = textOf(WireControl::dropLimit);
    if (isTicked(WireControl::continuousTick)) {
      CostFields& cost = input.cost.emplace();
      cost.energyPrice = numberOf(WireControl::energyPrice);
      form().reader().GetValue(option::energyPriceUnits, optionfield::defaultValue, cost.currency);
    }
  }
  if (isTicked(WireControl::parallelTick)) {
    ParallelFields& parallel = input.parallel.emplace();
    parallel.highestCount = toInt(textOf(WireControl::parallelCount));
    for (std::size_t index = 0; index < fill_.ranges.size(); ++index)
      parallel.fill.push_back({fill_.ranges[index], toDouble(fill_.factors[index])});
    const int selected = form().list(WireControl::fillRange).Selected();
    parallel.selectedFill = static_cast<std::size_t>(std::max(selected, 0));
  }
  return input;
}

std::wstring ZanDlgWireSelectCtrlMgr::racewayColumn() const {
  std::wstring shown = textOf(WireControl::raceway);
  for (const auto& [column, description] : raceways_)
    if (description == shown) return column;
  return shown;
}

void ZanDlgWireSelectCtrlMgr::showResults() {
  const bool hasDrop = isTicked(WireControl::dropTick);
  const auto isUsed = [this, hasDrop](ColumnUse use) {
    switch (use) {
    case ColumnUse::always:
      return true;
    case ColumnUse::parallel:
      return isTicked(WireControl::parallelTick);
    case ColumnUse::drop:
      return hasDrop;
    case ColumnUse::cost:
      return hasDrop && isTicked(WireControl::continuousTick);
    }
    return false;
  };
  std::vector<const ResultColumn*> columns;
  for (const ResultColumn& column : resultColumns)
    if (isUsed(column.use)) columns.push_back(&column);

  KvUiGrid& grid = form().results();
  grid.SetSize(0, 0);
  // Column 0 is the row head; it has neither title nor texts.
  grid.SetSize(static_cast<int>(rows().size()), static_cast<int>(columns.size()) + 1);
  for (std::size_t place = 0; place < columns.size(); ++place) {
    const ResultColumn& column = *columns[place];
    const int gridColumn = static_cast<int>(place) + 1;
    grid.SetCell(0, gridColumn, loadText(column.title));
    for (std::size_t index = 0; index < rows().size(); ++index) {
      const WireCandidate& row = rows()[index];
      const int gridRow = static_cast<int>(index) + 1;
      grid.SetCell(gridRow, gridColumn, row.*column.cell);
      if (column.title == TextId::wireColumnLoadPercent && row.isOverloaded)
        grid.SetCellTone(gridRow, gridColumn, KvUiCellTone::alert);
    }
  }
  grid.SetColumnWidths({});
}

void ZanDlgWireSelectCtrlMgr::SelectProposedRow(int rowBefore) {
  KvUiGrid& grid = form().results();
  const std::optional<std::size_t> wanted = WantedRow();
  const std::optional<std::size_t> proposed = wanted ? wanted : lookup_.proposed;
  if (proposed) {
    const int row = static_cast<int>(*proposed) + 1;
    grid.SelectRow(row);
    grid.ScrollTo(row);
    return;
  }
  // No size carries the load: the grid's row number stays, where the new table has it.
  grid.SelectRow(rowBefore <= grid.RowCount() ? rowBefore : 0);
}

} // namespace brenvolt
