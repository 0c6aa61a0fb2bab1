#include "data/wire_lookup.h"

#include "data/wire_conductor_fields.h"
#include "data/wire_current_fields.h"
#include "data/wire_factor_fields.h"
#include "data/wire_parallel_fields.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>

namespace brenvolt {

namespace {

constexpr std::wstring_view awg = L"AWG";
constexpr std::wstring_view kcmil = L"KCMIL";

constexpr std::size_t placeOf(LookupField field) {
  return static_cast<std::size_t>(field);
}

/// A field that can be used only while a tick is set; with a second tick only while both are.
struct GateRow {
  LookupField field;
  LookupField tick;
  LookupField secondTick;
};
constexpr GateRow gates[] = {
    {LookupField::length, LookupField::dropTick, LookupField::dropTick},
    {LookupField::lengthUnits, LookupField::dropTick, LookupField::dropTick},
    {LookupField::raceway, LookupField::dropTick, LookupField::dropTick},
    {LookupField::powerFactor, LookupField::dropTick, LookupField::dropTick},
    {LookupField::dropLimitTick, LookupField::dropTick, LookupField::dropTick},
    {LookupField::dropLimit, LookupField::dropTick, LookupField::dropLimitTick},
    // One tick governs the factor, the price and the yearly cost column.
    {LookupField::continuousFactor, LookupField::continuousTick, LookupField::continuousTick},
    {LookupField::energyPrice, LookupField::continuousTick, LookupField::continuousTick},
    {LookupField::fillRange, LookupField::fillTick, LookupField::fillTick},
    {LookupField::fillFactor, LookupField::fillTick, LookupField::fillTick},
    {LookupField::ambientRange, LookupField::ambientTick, LookupField::ambientTick},
    {LookupField::ambientFactor, LookupField::ambientTick, LookupField::ambientTick},
    {LookupField::parallelCount, LookupField::parallelTick, LookupField::parallelTick},
    {LookupField::parallelMinSize, LookupField::parallelTick, LookupField::parallelTick},
};

struct LinkRow {
  LookupField field;
  CurrentField linked;
};
constexpr LinkRow linkedFields[] = {
    {LookupField::current, CurrentField::current},
    {LookupField::multiplier, CurrentField::multiplier},
    {LookupField::extraCurrent, CurrentField::extra},
    {LookupField::total, CurrentField::total},
};

struct FixedRow {
  LookupField field;
  OpenField flag;
  bool (*isGivenBy)(const ZanCircuitData&);
};
constexpr FixedRow fixedRows[] = {
    {LookupField::voltage, OpenField::voltage, hasVoltage},
    {LookupField::phase, OpenField::phase, hasPhase},
    {LookupField::current, OpenField::fla, [](const ZanCircuitData& data) { return isGiven(data.fla); }},
    {LookupField::multiplier, OpenField::flaMultiplier,
     [](const ZanCircuitData& data) { return isGiven(data.flaMultiplier); }},
};

bool isFactorTick(LookupField field) {
  return field == LookupField::continuousTick || field == LookupField::fillTick ||
         field == LookupField::ambientTick;
}

struct StoredText {
  LookupField field;
  std::wstring ZanCircuitData::*member;
};
constexpr StoredText storedTexts[] = {
    {LookupField::voltage, &ZanCircuitData::voltage},
    {LookupField::phase, &ZanCircuitData::phase},
    {LookupField::standard, &ZanCircuitData::wireStandard},
    {LookupField::metal, &ZanCircuitData::wireMetal},
    {LookupField::lengthUnits, &ZanCircuitData::lengthUnits},
    {LookupField::raceway, &ZanCircuitData::raceway},
    {LookupField::fillRange, &ZanCircuitData::fillRange},
    {LookupField::ambientRange, &ZanCircuitData::ambientRange},
    {LookupField::parallelCount, &ZanCircuitData::parallelCount},
    {LookupField::parallelMinSize, &ZanCircuitData::parallelMinSize},
};

struct StoredNumber {
  LookupField field;
  double ZanCircuitData::*member;
};
constexpr StoredNumber storedNumbers[] = {
    {LookupField::current, &ZanCircuitData::fla},
    {LookupField::multiplier, &ZanCircuitData::flaMultiplier},
    {LookupField::extraCurrent, &ZanCircuitData::extraCurrent},
    {LookupField::length, &ZanCircuitData::length},
    {LookupField::powerFactor, &ZanCircuitData::powerFactor},
    {LookupField::dropLimit, &ZanCircuitData::dropLimit},
    {LookupField::continuousFactor, &ZanCircuitData::continuousFactor},
    {LookupField::energyPrice, &ZanCircuitData::energyPrice},
    {LookupField::fillFactor, &ZanCircuitData::fillFactor},
    {LookupField::ambientFactor, &ZanCircuitData::ambientFactor},
    {LookupField::overallFactor, &ZanCircuitData::overallFactor},
};

struct StoredTick {
  LookupField field;
  bool ZanCircuitData::*member;
};
constexpr StoredTick storedTicks[] = {
    {LookupField::dropTick, &ZanCircuitData::useVoltageDrop},
    {LookupField::dropLimitTick, &ZanCircuitData::useDropLimit},
    {LookupField::continuousTick, &ZanCircuitData::useContinuousLoad},
    {LookupField::fillTick, &ZanCircuitData::useFill},
    {LookupField::ambientTick, &ZanCircuitData::useAmbient},
    {LookupField::parallelTick, &ZanCircuitData::useParallel},
    {LookupField::showUndersized, &ZanCircuitData::showUndersized},
};

constexpr double notGiven = -1.0;

} // namespace

bool WireLookup::isOpen(LookupField field) const {
  if (fixed_.test(placeOf(field))) return false;
  const auto gate = std::find_if(
      std::begin(gates), std::end(gates), [field](const GateRow& row) { return row.field == field; });
  return gate == std::end(gates) || (input_.isTicked(gate->tick) && input_.isTicked(gate->secondTick));
}

std::vector<WireColumn> WireLookup::columns() const {
  return presentColumns(lookupInputOf(input_));
}

const WireCandidate* WireLookup::chosen() const {
  return selected_ ? &rows()[*selected_] : nullptr;
}

std::optional<std::wstring> WireLookup::overload() const {
  const WireCandidate* row = chosen();
  if (row == nullptr) return std::nullopt;
  const bool isBelow =
      toDouble(row->loadPercent) - fullLoadPercent < numberTolerance && row->loadPercent != fullLoadText;
  return isBelow ? std::nullopt : std::optional(row->loadPercent);
}

double WireLookup::storedNumber(LookupField field) const {
  return isGood(input_, field) ? input_.number(field) : notGiven;
}

void WireLookup::store(ZanCircuitData& data) const {
  for (const StoredText& row : storedTexts)
    data.*row.member = input_.text(row.field);
  for (const StoredNumber& row : storedNumbers)
    data.*row.member = storedNumber(row.field);
  for (const StoredTick& row : storedTicks)
    data.*row.member = input_.isTicked(row.field);
  data.insulation = input_.insulationDescription();
  data.temperature = input_.temperature();
  data.groundSize = input_.text(LookupField::groundSize);
  if (const std::size_t blank = data.groundSize.find(L' '); blank != std::wstring::npos)
    data.groundSize.erase(blank, 1);
}

std::optional<MissingTables> WireLookup::missingTables(
    ZanWireTableReader::WithOptions options, WithoutTables without) const {
  MissingTables missing;
  if (defaults_.reader().CheckWireTables(input_.tables(), missing, options) || without == WithoutTables::goOn)
    return std::nullopt;
  return missing;
}

std::optional<MissingTables> WireLookup::begin(WireStart start, WithoutTables without) {
  start_ = std::move(start);
  const ZanCircuitData& choices = start_.choices;
  for (const WireNumberRule& rule : wireNumberRules)
    lastGood_[placeOf(rule.field)] = rule.initial;
  loadStandards(input_, defaults_, choices);
  loadMetals(input_, defaults_, choices);
  if (auto missing = missingTables(ZanWireTableReader::WithOptions::yes, without)) return missing;
  loadInsulations(input_, defaults_, choices);
  loadVoltage(input_, defaults_, choices);
  loadPhase(input_, defaults_, choices);
  loadCurrents(input_, defaults_, choices, currents_);
  if (!isGiven(choices.flaMultiplier) && isGood(input_, LookupField::multiplier))
    defaultMultiplier_ = input_.number(LookupField::multiplier);
  for (const FixedRow& row : fixedRows)
    fixed_.set(placeOf(row.field), row.isGivenBy(choices) && !choices.isOpen(row.flag));
  loadDropFields(
      input_, defaults_, choices,
      start_.powerFactor ? *start_.powerFactor
                         : powerFactorChoice(defaults_, start_.powerFactorSetting, choices.powerFactor));
  loadContinuous(input_, defaults_, choices);
  loadFill(input_, defaults_, choices);
  loadAmbient(input_, defaults_);
  restoreAmbient(input_, choices);
  for (const WireNumberRule& rule : wireNumberRules)
    keepGood(rule.field);
  if (isGiven(choices.overallFactor))
    input_.set(LookupField::overallFactor, formatTrimmed(choices.overallFactor), givenOrigin);
  else
    updateOverallFactor(input_);
  loadParallel(input_, defaults_, choices);
  loadGroundSizes(input_, defaults_, choices.groundSize);
  recalculate();
  return std::nullopt;
}

WireEffects WireLookup::apply(const WireChange& change, WithoutTables without) {
  WireEffects effects;
  const Shown before = shown();
  WireValue& value = input_[change.field].value;
  const WireValue old = value;
  value = {trim(change.text), std::wstring(givenOrigin)};
  const bool isOfTables = change.field == LookupField::standard || change.field == LookupField::metal;
  if (isOfTables) {
    // The tables are checked with the metal that was chosen for the old standard, as is intended. A change that is
    // not made leaves every list as it was, its own included: no size of one table may be stored under another name.
    effects.missing = missingTables(ZanWireTableReader::WithOptions::no, without);
    if (effects.missing) {
      value = old;
      effects.fields.set(placeOf(change.field));
      return effects;
    }
    defaults_.tables().forgetWires();
  }
  if (change.field == LookupField::insulation) {
    defaults_.tables().forgetWires();
    leaveInsulation();
  }
  if (react(change.field) == Recalculation::table) {
    recalculate();
    effects.table = true;
  }
  effects.fields = changesSince(before);
  // What was typed has to be taken back also where the field's value is the old one.
  if (input_.text(change.field) != change.text) effects.fields.set(placeOf(change.field));
  return effects;
}

WireLookup::Recalculation WireLookup::react(LookupField field) {
  for (const LinkRow& row : linkedFields)
    if (row.field == field) return leaveCurrent(row.linked);
  if (findNumberRule(field) != nullptr) return leaveNumber(field);
  switch (field) {
  case LookupField::standard:
    loadMetals(input_, defaults_, start_.choices);
    loadBehindMetal();
    break;
  case LookupField::metal:
    loadBehindMetal();
    break;
  case LookupField::fillRange:
    takeFillFactor(input_);
    keepGood(LookupField::fillFactor);
    updateOverallFactor(input_);
    break;
  case LookupField::ambientRange:
    takeAmbientFactor(input_);
    keepGood(LookupField::ambientFactor);
    updateOverallFactor(input_);
    break;
  case LookupField::groundSize:
    return Recalculation::none;
  default: // of all other fields only the figures follow
    if (isFactorTick(field)) updateOverallFactor(input_);
    break;
  }
  return Recalculation::table;
}

// Neither a new standard nor a new metal touches the combined factor, as is intended.
void WireLookup::loadBehindMetal() {
  const ZanCircuitData& choices = start_.choices;
  loadInsulations(input_, defaults_, choices);
  loadRaceways(input_, defaults_, choices);
  loadAmbient(input_, defaults_);
  keepGood(LookupField::ambientFactor);
  loadParallel(input_, defaults_, choices);
  loadGroundSizes(input_, defaults_, choices.groundSize);
}

void WireLookup::leaveInsulation() {
  const std::wstring ambientRange = input_.text(LookupField::ambientRange);
  loadAmbient(input_, defaults_);
  const std::vector<std::wstring>& ranges = input_.ambient.ranges;
  if (!ranges.empty()) {
    const bool isThere = std::find(ranges.begin(), ranges.end(), ambientRange) != ranges.end();
    input_.set(LookupField::ambientRange, isThere ? ambientRange : ranges.front());
    takeAmbientFactor(input_);
  }
  keepGood(LookupField::ambientFactor);
  updateOverallFactor(input_);
  loadParallel(input_, defaults_, start_.choices);
}

WireLookup::Recalculation WireLookup::leaveCurrent(CurrentField field) {
  CurrentTexts texts = currentTextsOf(input_);
  const CurrentEffects effects = currents_.left(field, texts);
  showCurrents(input_, texts);
  if (effects.groundSizes) loadGroundSizes(input_, defaults_, start_.choices.groundSize);
  return effects.refresh ? Recalculation::table : Recalculation::none;
}

WireLookup::Recalculation WireLookup::leaveNumber(LookupField field) {
  if (!isGood(input_, field)) {
    input_.set(field, formatTrimmed(lastGood_[placeOf(field)]));
    return Recalculation::none;
  }
  keepGood(field);
  if (findNumberRule(field)->effect == FactorEffect::updates) updateOverallFactor(input_);
  return Recalculation::table;
}

void WireLookup::keepGood(LookupField field) {
  if (isGood(input_, field)) lastGood_[placeOf(field)] = input_.number(field);
}

void WireLookup::recalculate() {
  const std::optional<std::size_t> selectedBefore = selected_;
  result_ = computeWires(defaults_.tables().figures(tableChoiceOf(input_)), lookupInputOf(input_));
  const std::wstring size = shownSize(start_.size, input_.text(LookupField::standard));
  if (!size.empty())
    for (std::size_t row = 0; row < rows().size(); ++row)
      if (equalsOrdinalNoCase(rows()[row].size, size)) return select(row);
  if (result_.proposal == Proposal::noCurrent) return select(std::nullopt);
  // No size carries the load: the row's number stays, where the new table has it.
  select(result_.proposed ? result_.proposed : selectedBefore);
}

void WireLookup::select(std::optional<std::size_t> row) {
  selected_ = row && *row < rows().size() ? row : std::nullopt;
}

void WireLookup::selectLike(const WireCandidate& shown) {
  // Parallel runs have a row for each fill range.
  const auto row = std::find_if(rows().begin(), rows().end(), [&shown](const WireCandidate& each) {
    return each.size == shown.size && each.fillRange == shown.fillRange;
  });
  select(row == rows().end() ? std::nullopt : std::optional<std::size_t>(row - rows().begin()));
}

WireLookup::Shown WireLookup::shown() const {
  Shown shown{input_.fields, {}};
  for (std::size_t place = 0; place < lookupFieldCount; ++place)
    shown.open.set(place, isOpen(static_cast<LookupField>(place)));
  return shown;
}

std::bitset<lookupFieldCount> WireLookup::changesSince(const Shown& before) const {
  std::bitset<lookupFieldCount> changes;
  for (std::size_t place = 0; place < lookupFieldCount; ++place) {
    const WireInputField& now = input_.fields[place];
    const WireInputField& then = before.fields[place];
    changes.set(
        place, now.value.text != then.value.text || now.choices != then.choices ||
                   isOpen(static_cast<LookupField>(place)) != before.open.test(place));
  }
  return changes;
}

std::wstring shownSize(std::wstring_view stored, std::wstring_view standard) {
  std::wstring size = removeBlanks(stored);
  if (standard.empty()) return size;
  std::size_t place = findNoCase(size, standard);
  if (place == std::wstring::npos && equalsOrdinalNoCase(standard, awg)) place = findNoCase(size, kcmil);
  if (place != std::wstring::npos && place > 0) size.insert(place, 1, L' ');
  return size;
}

} // namespace brenvolt
