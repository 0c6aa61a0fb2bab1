#include "data/wire_input.h"

#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <set>

namespace brenvolt {

double WireInput::number(LookupField field) const {
  return toDouble(text(field));
}

std::size_t WireInput::place(LookupField field) const {
  const std::vector<std::wstring>& choices = (*this)[field].choices;
  const auto found = std::find(choices.begin(), choices.end(), text(field));
  return found == choices.end() ? 0 : static_cast<std::size_t>(found - choices.begin());
}

void WireInput::set(LookupField field, std::wstring_view text, std::wstring_view origin) {
  (*this)[field].value = {std::wstring(text), std::wstring(origin)};
}

void WireInput::setList(
    LookupField field, std::vector<std::wstring> choices, const WireValue& value, AbsentChoice absent) {
  const bool isOffered = std::find(choices.begin(), choices.end(), value.text) != choices.end();
  WireInputField& entry = (*this)[field];
  entry.value = {};
  if (!value.text.empty() && (isOffered || absent == AbsentChoice::addAtTop)) {
    if (!isOffered) choices.insert(choices.begin(), value.text);
    entry.value = value;
  } else if (!choices.empty()) {
    entry.value.text = choices.front();
  }
  entry.choices = std::move(choices);
}

void WireInput::setNumberList(
    LookupField field, const std::vector<std::wstring>& numbers, const WireValue& value) {
  std::set<double> sorted;
  for (const std::wstring& number : numbers)
    sorted.insert(toDouble(number));
  std::vector<std::wstring> texts;
  texts.reserve(sorted.size());
  for (const double number : sorted)
    texts.push_back(formatTrimmed(number));
  setList(field, std::move(texts), value, AbsentChoice::addAtTop);
}

WireTableSet WireInput::tables() const {
  return {text(LookupField::metal), text(LookupField::standard), code};
}

std::wstring WireInput::insulationDescription() const {
  const std::wstring& label = text(LookupField::insulation);
  return trim(std::wstring_view(label).substr(0, label.find(L'/')));
}

std::wstring WireInput::temperature() const {
  const std::wstring& label = text(LookupField::insulation);
  const std::size_t slash = label.find(L'/');
  return slash == std::wstring::npos ? std::wstring() : trim(std::wstring_view(label).substr(slash + 1));
}

std::wstring WireInput::racewayColumn() const {
  const std::wstring& shown = text(LookupField::raceway);
  for (const auto& [column, description] : raceways)
    if (description == shown) return column;
  return shown;
}

WireTableChoice tableChoiceOf(const WireInput& input) {
  WireTableChoice choice{input.tables(), input.temperature(), {}, {}};
  if (input.isTicked(LookupField::dropTick)) choice.raceway = input.racewayColumn();
  if (input.isTicked(LookupField::parallelTick))
    choice.minimumSize = input.text(LookupField::parallelMinSize);
  return choice;
}

WireLookupInput lookupInputOf(const WireInput& input) {
  WireLookupInput figures;
  figures.fla = input.number(LookupField::current);
  figures.extraCurrent = input.number(LookupField::extraCurrent);
  figures.total = input.number(LookupField::total);
  figures.overallFactor = input.number(LookupField::overallFactor);
  figures.voltage = input.number(LookupField::voltage);
  figures.phase = input.text(LookupField::phase);
  figures.undersized =
      input.isTicked(LookupField::showUndersized) ? UndersizedRows::show : UndersizedRows::hide;
  if (input.isTicked(LookupField::dropTick)) {
    DropFields& drop = figures.drop.emplace();
    drop.length = input.number(LookupField::length);
    drop.lengthUnits = input.text(LookupField::lengthUnits);
    drop.powerFactor = input.number(LookupField::powerFactor);
    if (input.isTicked(LookupField::dropLimitTick)) drop.limit = input.text(LookupField::dropLimit);
    if (input.isTicked(LookupField::continuousTick))
      figures.cost = CostFields{input.number(LookupField::energyPrice), input.currency};
  }
  if (input.isTicked(LookupField::parallelTick)) {
    ParallelFields& parallel = figures.parallel.emplace();
    parallel.highestCount = toInt(input.text(LookupField::parallelCount));
    for (std::size_t index = 0; index < input.fill.ranges.size(); ++index)
      parallel.fill.push_back({input.fill.ranges[index], toDouble(input.fill.factors[index])});
    parallel.selectedFill = input.place(LookupField::fillRange);
  }
  return figures;
}

bool isGood(const WireInput& input, LookupField field) {
  const WireNumberRule* rule = findNumberRule(field);
  const double number = input.number(field);
  return rule != nullptr ? rule->allows(number) : isGiven(number);
}

} // namespace brenvolt
