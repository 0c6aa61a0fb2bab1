// The fields of the wire lookup start with the circuit's choices and, where there is none, with the option's default.
#include "data/wire_lists.h"
#include "flows/wire_select_ctrl_mgr.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"
#include "widgets/numeric_list.h"
#include "widgets/text_list.h"

#include <algorithm>

namespace brenvolt {

namespace {

constexpr int currentDecimals = 4;
constexpr int smallestParallelCount = 2;
constexpr std::wstring_view continuousFactorWithoutChoice = L"0.8";

std::wstring defaultOf(const ZanWireTableReader& reader, std::wstring_view setting) {
  std::wstring value;
  reader.GetValue(setting, optionfield::defaultValue, value);
  return value;
}

std::vector<std::wstring> listOf(const ZanWireTableReader& reader, std::wstring_view setting) {
  std::vector<std::wstring> values;
  reader.GetList(setting, values);
  return values;
}

/// A choice, or the option's default when it is not given.
std::wstring textOr(const std::wstring& text, const ZanWireTableReader& reader, std::wstring_view setting) {
  return text.empty() ? defaultOf(reader, setting) : text;
}

std::wstring numberOr(double number, const ZanWireTableReader& reader, std::wstring_view setting) {
  return isGiven(number) ? formatTrimmed(number) : defaultOf(reader, setting);
}

/// The entry that equals a text without case, as the list spells it; the text itself when there is none.
std::wstring spelling(const std::vector<std::wstring>& texts, const std::wstring& text) {
  const auto entry = std::find_if(texts.begin(), texts.end(), [&text](const std::wstring& each) {
    return equalsOrdinalNoCase(each, text);
  });
  return entry == texts.end() ? text : *entry;
}

} // namespace

void ZanDlgWireSelectCtrlMgr::LoadStandards() {
  std::vector<std::wstring> standards;
  form().reader().ListStandards(standards);
  const std::wstring chosen = textOr(choices_.wireStandard, form().reader(), option::wireStandard);
  fillTextList(
      form().list(WireControl::standard), standards, spelling(standards, chosen),
      AbsentSelection::selectFirst);
  LoadMetals();
}

void ZanDlgWireSelectCtrlMgr::LoadMetals() {
  std::vector<std::wstring> metals;
  form().reader().ListMetals(textOf(WireControl::standard), metals);
  const std::wstring chosen = textOr(choices_.wireMetal, form().reader(), option::wireMetal);
  fillTextList(
      form().list(WireControl::metal), metals, spelling(metals, chosen), AbsentSelection::selectFirst);
}

void ZanDlgWireSelectCtrlMgr::LoadInsulations() {
  std::vector<std::wstring> labels;
  form().reader().ListInsulations(tables(), labels);
  std::wstring chosen;
  if (!choices_.insulation.empty() && !choices_.temperature.empty()) {
    chosen = insulationLabel(choices_.insulation, choices_.temperature);
  } else {
    form().reader().InsulationLabel(tables(), defaultOf(form().reader(), option::insulation), chosen);
  }
  fillTextList(form().list(WireControl::insulation), labels, chosen, AbsentSelection::selectFirst);
}

void ZanDlgWireSelectCtrlMgr::LoadCurrentFields() {
  const ZanWireTableReader& reader = form().reader();
  // A field that the circuit's configuration fixes can be read and no more, once it has a value from there.
  const auto closeIfFixed = [this](WireControl control, bool isFromRecord, OpenField field) {
    if (isFromRecord) form().control(control).Enable(choices_.isOpen(field));
  };

  const bool hasVoltage = isGiven(toDouble(choices_.voltage));
  ZanNumericList(form().list(WireControl::voltage))
      .fill(
          listOf(reader, option::voltages),
          hasVoltage ? choices_.voltage : defaultOf(reader, option::voltages));
  closeIfFixed(WireControl::voltage, hasVoltage, OpenField::voltage);

  const bool hasPhase = toInt(choices_.phase) != 0;
  fillTextList(
      form().list(WireControl::phase), listOf(reader, option::phases),
      hasPhase ? choices_.phase : defaultOf(reader, option::phases), AbsentSelection::addAtTop);
  closeIfFixed(WireControl::phase, hasPhase, OpenField::phase);

  CurrentTexts texts = currentTexts();
  if (isGiven(choices_.extraCurrent)) texts.extra = formatTrimmed(choices_.extraCurrent, currentDecimals);
  if (isGiven(choices_.fla)) texts.current = formatTrimmed(choices_.fla, currentDecimals);
  closeIfFixed(WireControl::current, isGiven(choices_.fla), OpenField::fla);
  if (isGiven(choices_.flaMultiplier)) {
    texts.multiplier = formatTrimmed(choices_.flaMultiplier, currentDecimals);
  } else if (const double multiplier = toDouble(defaultOf(reader, option::flaMultiplier));
             isGiven(multiplier)) {
    texts.multiplier = formatTrimmed(multiplier, currentDecimals);
    KeepDefaultMultiplier(multiplier);
  }
  closeIfFixed(WireControl::multiplier, isGiven(choices_.flaMultiplier), OpenField::flaMultiplier);
  currents_.begin(texts);
  showCurrents(texts);
}

void ZanDlgWireSelectCtrlMgr::LoadDropFields() {
  const ZanWireTableReader& reader = form().reader();
  form().tick(WireControl::dropTick).SetChecked(choices_.useVoltageDrop);
  ZanNumericList(form().list(WireControl::length))
      .fill(listOf(reader, option::lengths), numberOr(choices_.length, reader, option::lengths));
  keepGood(WireControl::length);
  fillTextList(
      form().list(WireControl::lengthUnits), listOf(reader, option::lengthUnits),
      textOr(choices_.lengthUnits, reader, option::lengthUnits), AbsentSelection::addAtTop);
  LoadRaceways();
  const PowerFactors powerFactors = PowerFactorChoices();
  ZanNumericList(form().list(WireControl::powerFactor))
      .fill(powerFactors.list, powerFactors.given.empty() ? powerFactors.standard : powerFactors.given);
  keepGood(WireControl::powerFactor);
  form().tick(WireControl::dropLimitTick).SetChecked(choices_.useDropLimit);
  fillTextList(
      form().list(WireControl::dropLimit), listOf(reader, option::dropLimit),
      numberOr(choices_.dropLimit, reader, option::dropLimit), AbsentSelection::addAtTop);
  enableByTicks();
  showEnergyNote();
}

void ZanDlgWireSelectCtrlMgr::LoadDeratingFields() {
  const ZanWireTableReader& reader = form().reader();
  form().tick(WireControl::continuousTick).SetChecked(choices_.useContinuousLoad);
  setText(
      WireControl::continuousFactor, isGiven(choices_.continuousFactor)
                                         ? formatTrimmed(choices_.continuousFactor)
                                         : std::wstring(continuousFactorWithoutChoice));
  keepGood(WireControl::continuousFactor);
  setText(WireControl::energyPrice, numberOr(choices_.energyPrice, reader, option::energyPrice));
  keepGood(WireControl::energyPrice);

  form().tick(WireControl::fillTick).SetChecked(choices_.useFill);
  reader.ListFill(form().code(), fill_);
  KvUiList& ranges = form().list(WireControl::fillRange);
  fillTextList(ranges, fill_.ranges, choices_.fillRange, AbsentSelection::selectFirst);
  if (isGiven(choices_.fillFactor))
    setNumber(WireControl::fillFactor, choices_.fillFactor);
  else if (const int index = ranges.Selected(); index >= 0)
    setText(WireControl::fillFactor, fill_.factors[static_cast<std::size_t>(index)]);
  keepGood(WireControl::fillFactor);

  enableByTicks();
  LoadAmbient(AmbientStart::stored);
  if (isGiven(choices_.overallFactor))
    setNumber(WireControl::overallFactor, choices_.overallFactor);
  else
    UpdateOverallFactor();
}

void ZanDlgWireSelectCtrlMgr::LoadParallelFields() {
  form().tick(WireControl::parallelTick).SetChecked(choices_.useParallel);
  enableByTicks();
  // The count that was chosen is the highest that the next dialog offers: the list only shrinks, as is wanted.
  const std::wstring highest =
      trim(textOr(choices_.parallelCount, form().reader(), option::parallelHighestCount));
  std::vector<std::wstring> counts;
  for (int count = toInt(highest); count >= smallestParallelCount; --count)
    counts.push_back(formatInt(count));
  ZanNumericList(form().list(WireControl::parallelCount))
      .fill(counts, counts.empty() ? std::wstring() : counts.front());

  std::vector<std::wstring> sizes;
  std::wstring standard;
  static_cast<void>(ReadParallelMinSizes(sizes, standard));
  fillTextList(
      form().list(WireControl::parallelMinSize), sizes,
      choices_.parallelMinSize.empty() ? standard : choices_.parallelMinSize, AbsentSelection::selectFirst);
  form().tick(WireControl::showUndersized).SetChecked(choices_.showUndersized);
}

bool ZanDlgWireSelectCtrlMgr::ReadParallelMinSizes(
    std::vector<std::wstring>& sizes, std::wstring& standard) const {
  sizes.clear();
  const std::wstring option = defaultOf(form().reader(), option::parallelMinimumSize);
  for (const std::wstring& token : splitSkippingEmpty(option, L';')) {
    std::vector<ZanWireRow> found;
    const std::wstring size = trim(token);
    if (!form().reader().ListParallelSizes(
            tables(), temperature(), size, found, ZanWireTableReader::SizeText::key))
      continue;
    standard = size;
    for (const ZanWireRow& row : found)
      sizes.push_back(row.size);
    return true;
  }
  return false;
}

void ZanDlgWireSelectCtrlMgr::LoadRaceways() {
  std::vector<std::wstring> shown;
  form().reader().ListRacewayColumns(tables(), shown);
  const bool isDescribed = form().reader().ListRaceways(form().code(), raceways_);
  if (isDescribed && raceways_.empty()) shown.clear();
  for (std::wstring& column : shown)
    if (const auto entry = raceways_.find(column); entry != raceways_.end()) column = entry->second;
  fillTextList(form().list(WireControl::raceway), shown, choices_.raceway, AbsentSelection::selectFirst);
}

void ZanDlgWireSelectCtrlMgr::LoadAmbient(AmbientStart start) {
  std::size_t index = 0;
  form().reader().ListAmbient(tables(), insulationDescription(), ambient_, index);
  KvUiList& ranges = form().list(WireControl::ambientRange);
  fillTextList(ranges, ambient_.ranges, {}, AbsentSelection::selectFirst);
  if (index < ambient_.ranges.size()) ranges.Select(static_cast<int>(index));
  const bool isStored = start == AmbientStart::stored;
  if (isStored) {
    if (!choices_.ambientRange.empty()) selectText(ranges, choices_.ambientRange);
    form().tick(WireControl::ambientTick).SetChecked(choices_.useAmbient);
    enableByTicks();
  }
  std::wstring factor;
  if (const int selected = ranges.Selected(); selected >= 0)
    factor = trimNumber(ambient_.factors[static_cast<std::size_t>(selected)]);
  if (isStored && isGiven(choices_.ambientFactor)) factor = formatTrimmed(choices_.ambientFactor);
  setText(WireControl::ambientFactor, factor);
  keepGood(WireControl::ambientFactor);
}

void ZanDlgWireSelectCtrlMgr::LoadGroundSizes() {
  std::vector<std::wstring> sizes;
  form().reader().ListGround(
      tables(), defaultOf(form().reader(), option::groundingRating), textOf(WireControl::current), sizes);
  // Sizes are stored without blanks.
  const std::wstring stored = removeBlanks(choices_.groundSize);
  const auto kept = std::find_if(sizes.begin(), sizes.end(), [&stored](const std::wstring& size) {
    return equalsOrdinalNoCase(removeBlanks(size), stored);
  });
  fillTextList(
      form().list(WireControl::groundSize), sizes, kept == sizes.end() ? std::wstring() : *kept,
      AbsentSelection::selectFirst);
}

} // namespace brenvolt
