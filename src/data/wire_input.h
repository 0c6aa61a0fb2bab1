// Everything a wire is sized from, field by field as a lookup shows it: the value, what else may be chosen, and where
// the value comes from. The window shows such a record, the tool and a build fill one and compute.
#pragma once

#include "data/wire_figures.h"

#include "text/numbers.h"

#include <array>
#include <cstddef>
#include <limits>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

enum class LookupField : std::size_t {
  standard,
  metal,
  insulation, ///< "<description> / <temperature column>"
  voltage,
  phase,
  current, ///< of the motor or load, amperes
  multiplier,
  extraCurrent,
  total,
  dropTick,
  length,
  lengthUnits,
  raceway, ///< as shown; the column is `WireInput::racewayColumn`
  powerFactor,
  dropLimitTick,
  dropLimit, ///< percent
  continuousTick,
  continuousFactor,
  energyPrice, ///< per kWh
  fillTick,
  fillRange,
  fillFactor,
  ambientTick,
  ambientRange,
  ambientFactor,
  overallFactor,
  parallelTick,
  parallelCount,
  parallelMinSize,
  groundSize,
  showUndersized, ///< a tick
};
inline constexpr std::size_t lookupFieldCount = 31;

/// A value and where it comes from, in words for an explanation: "given", or table, row and column.
struct WireValue {
  std::wstring text;
  std::wstring origin;

  [[nodiscard]] bool operator==(const WireValue&) const = default;
};

/// What happens to a value that a list lacks. Where factors belong to the places of a list, an added entry would shift
/// them, so the first entry is taken there.
enum class AbsentChoice { addAtTop, takeFirst };

struct WireInputField {
  WireValue value; ///< of a tick "1" or empty
  std::vector<std::wstring> choices;
};

struct WireInput {
  std::wstring code; ///< electrical code
  std::array<WireInputField, lookupFieldCount> fields;
  FactorList fill;                               ///< the ranges of `fillRange` with their factors
  FactorList ambient;                            ///< the ranges of `ambientRange`
  std::map<std::wstring, std::wstring> raceways; ///< column to what the user sees
  std::wstring currency;                         ///< of the yearly cost

  [[nodiscard]] WireInputField& operator[](LookupField field) {
    return fields[static_cast<std::size_t>(field)];
  }
  [[nodiscard]] const WireInputField& operator[](LookupField field) const {
    return fields[static_cast<std::size_t>(field)];
  }
  [[nodiscard]] const std::wstring& text(LookupField field) const { return (*this)[field].value.text; }
  [[nodiscard]] double number(LookupField field) const;
  [[nodiscard]] bool isTicked(LookupField tick) const { return !text(tick).empty(); }
  /// The place of the value among the choices; the first place where the list lacks it.
  [[nodiscard]] std::size_t place(LookupField field) const;

  void set(LookupField field, std::wstring_view text, std::wstring_view origin = {});
  void setTick(LookupField tick, bool isTicked) { set(tick, isTicked ? L"1" : L""); }
  /// Offers texts in their order and takes one of them; an empty text takes the first.
  void setList(
      LookupField field, std::vector<std::wstring> choices, const WireValue& value, AbsentChoice absent);
  /// Offers each distinct number once, ascending; the value is looked for exactly as text ("1.0" is not "1").
  void setNumberList(LookupField field, const std::vector<std::wstring>& numbers, const WireValue& value);

  [[nodiscard]] WireTableSet tables() const;
  [[nodiscard]] std::wstring insulationDescription() const;
  [[nodiscard]] std::wstring temperature() const;
  [[nodiscard]] std::wstring racewayColumn() const;
};

/// What has to be read of the tables for it.
[[nodiscard]] WireTableChoice tableChoiceOf(const WireInput& input);
/// The numbers of the fields that are in use.
[[nodiscard]] WireLookupInput lookupInputOf(const WireInput& input);

/// The fields that are reset to the last valid value when an invalid one is typed.
enum class FactorEffect { none, updates };

struct WireNumberRule {
  LookupField field;
  double highest;
  double initial;      ///< the last good value before there was any
  FactorEffect effect; ///< whether a change shows in the combined factor

  [[nodiscard]] constexpr bool allows(double number) const { return isGiven(number) && number <= highest; }
};

inline constexpr double noLimit = std::numeric_limits<double>::max();

inline constexpr WireNumberRule wireNumberRules[] = {
    {LookupField::length, noLimit, 200.0, FactorEffect::none},
    {LookupField::powerFactor, 1.0, 0.85, FactorEffect::none},
    {LookupField::continuousFactor, 1.0, 0.9, FactorEffect::updates},
    {LookupField::energyPrice, noLimit, 0.08, FactorEffect::none},
    {LookupField::fillFactor, 1.0, 0.45, FactorEffect::updates},
    {LookupField::ambientFactor, noLimit, 1.0, FactorEffect::updates},
};

/// Null for a field without a rule.
[[nodiscard]] constexpr const WireNumberRule* findNumberRule(LookupField field) {
  for (const WireNumberRule& rule : wireNumberRules)
    if (rule.field == field) return &rule;
  return nullptr;
}

/// Whether the field's number is valid: by its rule, or above 0 for a field without one.
[[nodiscard]] bool isGood(const WireInput& input, LookupField field);

} // namespace brenvolt
