// What follows from a change of a control of the wire lookup. Most controls follow one of a few patterns; the tables
// say which.
#include "flows/wire_numbers.h"
#include "flows/wire_select_ctrl_mgr.h"
#include "host/resources.h"
#include "text/numbers.h"

#include <algorithm>

namespace brenvolt {

namespace {

struct LinkRow {
  WireControl control;
  CurrentField field;
};
constexpr LinkRow linkedFields[] = {
    {WireControl::current, CurrentField::current},
    {WireControl::multiplier, CurrentField::multiplier},
    {WireControl::extraCurrent, CurrentField::extra},
    {WireControl::total, CurrentField::total},
};

/// A control that can be used only while a tick is set; with a second tick only while both are.
struct GateRow {
  WireControl control;
  WireControl tick;
  WireControl secondTick;
};
constexpr GateRow gates[] = {
    {WireControl::length, WireControl::dropTick, WireControl::dropTick},
    {WireControl::lengthUnits, WireControl::dropTick, WireControl::dropTick},
    {WireControl::raceway, WireControl::dropTick, WireControl::dropTick},
    {WireControl::powerFactor, WireControl::dropTick, WireControl::dropTick},
    {WireControl::dropLimitTick, WireControl::dropTick, WireControl::dropTick},
    {WireControl::dropLimit, WireControl::dropTick, WireControl::dropLimitTick},
    // One tick governs the factor, the price and the yearly cost column.
    {WireControl::continuousFactor, WireControl::continuousTick, WireControl::continuousTick},
    {WireControl::energyPrice, WireControl::continuousTick, WireControl::continuousTick},
    {WireControl::fillRange, WireControl::fillTick, WireControl::fillTick},
    {WireControl::fillFactor, WireControl::fillTick, WireControl::fillTick},
    {WireControl::spareInput1, WireControl::spareTick, WireControl::spareTick},
    {WireControl::spareInput2, WireControl::spareTick, WireControl::spareTick},
    {WireControl::ambientRange, WireControl::ambientTick, WireControl::ambientTick},
    {WireControl::ambientFactor, WireControl::ambientTick, WireControl::ambientTick},
    {WireControl::parallelCount, WireControl::parallelTick, WireControl::parallelTick},
    {WireControl::parallelMinSize, WireControl::parallelTick, WireControl::parallelTick},
};

enum class NoteEffect { none, shows };
enum class TableEffect { none, refreshes };
struct TickRow {
  WireControl tick;
  FactorEffect factor;
  NoteEffect note;
  TableEffect table;
};
constexpr TickRow ticks[] = {
    {WireControl::dropTick, FactorEffect::none, NoteEffect::shows, TableEffect::refreshes},
    {WireControl::dropLimitTick, FactorEffect::none, NoteEffect::none, TableEffect::refreshes},
    {WireControl::continuousTick, FactorEffect::updates, NoteEffect::shows, TableEffect::refreshes},
    {WireControl::fillTick, FactorEffect::updates, NoteEffect::none, TableEffect::refreshes},
    {WireControl::ambientTick, FactorEffect::updates, NoteEffect::none, TableEffect::refreshes},
    {WireControl::spareTick, FactorEffect::none, NoteEffect::none, TableEffect::none},
    {WireControl::parallelTick, FactorEffect::none, NoteEffect::none, TableEffect::refreshes},
};

/// Changes that only ask for new figures. The overall factor may be overwritten by hand with anything.
constexpr WireControl plainChanges[] = {
    WireControl::voltage,         WireControl::phase,         WireControl::lengthUnits,
    WireControl::raceway,         WireControl::dropLimit,     WireControl::parallelCount,
    WireControl::parallelMinSize, WireControl::overallFactor, WireControl::showUndersized,
};

} // namespace

void ZanDlgWireSelectCtrlMgr::OnChanged(WireControl control) {
  using Self = ZanDlgWireSelectCtrlMgr;
  struct Reaction {
    WireControl control;
    void (Self::*run)();
  };
  static constexpr Reaction own[] = {
      {WireControl::standard, &Self::OnStandardChanged},
      {WireControl::metal, &Self::OnMetalChanged},
      {WireControl::insulation, &Self::OnInsulationChanged},
      {WireControl::report, &Self::ExportReport},
  };
  for (const Reaction& row : own)
    if (row.control == control) return (this->*row.run)();
  for (const LinkRow& row : linkedFields)
    if (row.control == control) return OnCurrentsChanged(row.field);
  if (findNumberRule(control) != nullptr) return OnNumberChanged(control);
  if (rowOf(control).kind == WireControlKind::tick && control != WireControl::showUndersized)
    return OnTickChanged(control);
  if (control == WireControl::fillRange || control == WireControl::ambientRange)
    return OnRangeChanged(control);
  if (std::find(std::begin(plainChanges), std::end(plainChanges), control) != std::end(plainChanges))
    Refresh();
}

// Neither a new standard nor a new metal touches the overall factor, and the tables are checked with the metal that
// was chosen for the old standard: both are wanted.
void ZanDlgWireSelectCtrlMgr::OnStandardChanged() {
  if (!CheckTables(OptionTables::leave)) return;
  LoadMetals();
  LoadBehindMetal();
}

void ZanDlgWireSelectCtrlMgr::OnMetalChanged() {
  if (CheckTables(OptionTables::leave)) LoadBehindMetal();
}

void ZanDlgWireSelectCtrlMgr::LoadBehindMetal() {
  LoadInsulations();
  LoadRaceways();
  LoadAmbient(AmbientStart::standard);
  LoadParallelFields();
  LoadGroundSizes();
  Refresh();
}

void ZanDlgWireSelectCtrlMgr::OnInsulationChanged() {
  const std::wstring range = textOf(WireControl::ambientRange);
  LoadAmbient(AmbientStart::standard);
  KvUiList& ranges = form().list(WireControl::ambientRange);
  const auto kept = std::find(ambient_.ranges.begin(), ambient_.ranges.end(), range);
  if (!ambient_.ranges.empty())
    ranges.Select(kept == ambient_.ranges.end() ? 0 : static_cast<int>(kept - ambient_.ranges.begin()));
  if (const int index = ranges.Selected(); index >= 0) {
    setText(WireControl::ambientFactor, ambient_.factors[static_cast<std::size_t>(index)]);
    keepGood(WireControl::ambientFactor);
  }
  UpdateOverallFactor();
  LoadParallelFields();
  Refresh();
}

void ZanDlgWireSelectCtrlMgr::OnCurrentsChanged(CurrentField field) {
  CurrentTexts texts = currentTexts();
  const CurrentEffects effects = currents_.left(field, texts);
  showCurrents(texts);
  if (effects.groundSizes) LoadGroundSizes();
  if (effects.refresh) Refresh();
}

void ZanDlgWireSelectCtrlMgr::OnNumberChanged(WireControl control) {
  if (!isGood(control)) {
    setNumber(control, lastGood_[control]);
    return;
  }
  keepGood(control);
  if (findNumberRule(control)->effect == FactorEffect::updates) UpdateOverallFactor();
  Refresh();
}

void ZanDlgWireSelectCtrlMgr::OnTickChanged(WireControl tick) {
  enableByTicks();
  for (const TickRow& row : ticks) {
    if (row.tick != tick) continue;
    if (row.note == NoteEffect::shows) showEnergyNote();
    if (row.factor == FactorEffect::updates) UpdateOverallFactor();
    if (row.table == TableEffect::refreshes) Refresh();
  }
}

void ZanDlgWireSelectCtrlMgr::OnRangeChanged(WireControl range) {
  const bool isFill = range == WireControl::fillRange;
  const WireControl factor = isFill ? WireControl::fillFactor : WireControl::ambientFactor;
  const std::vector<std::wstring>& factors = isFill ? fill_.factors : ambient_.factors;
  const int index = form().list(range).Selected();
  if (index >= 0 && static_cast<std::size_t>(index) < factors.size())
    setText(factor, factors[static_cast<std::size_t>(index)]);
  keepGood(factor);
  UpdateOverallFactor();
  Refresh();
}

void ZanDlgWireSelectCtrlMgr::UpdateOverallFactor() {
  constexpr int factorDecimals = 4;
  const auto factorOf = [this](WireControl control) {
    return form().edit(control).IsEnabled() ? std::optional<double>(numberOf(control)) : std::nullopt;
  };
  const DeratingFactors factors{
      factorOf(WireControl::continuousFactor), factorOf(WireControl::fillFactor),
      factorOf(WireControl::ambientFactor)};
  setText(WireControl::overallFactor, formatTrimmed(brenvolt::overallFactor(factors), factorDecimals));
}

void ZanDlgWireSelectCtrlMgr::enableByTicks() {
  for (const GateRow& row : gates) {
    const bool isOpen = isTicked(row.tick) && isTicked(row.secondTick);
    form().control(row.control).Enable(isOpen);
  }
}

void ZanDlgWireSelectCtrlMgr::showEnergyNote() {
  KvUiText& note = form().text(role::energyNote);
  const bool isShown = isTicked(WireControl::dropTick);
  note.SetText(isShown ? loadText(TextId::energyCostNote) : std::wstring());
  note.Show(isShown);
}

} // namespace brenvolt
