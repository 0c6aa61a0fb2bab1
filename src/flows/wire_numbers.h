// The number fields of the wire lookup that fall back to the last good value when something worse is typed.
#pragma once

#include "text/numbers.h"
#include "widgets/roles_wire_lookup.h"

#include <limits>

namespace brenvolt {

/// Whether a change of a field shows in the overall factor.
enum class FactorEffect { none, updates };

struct WireNumberRule {
  WireControl field;
  double highest;
  double initial; ///< the last good value before there was any
  FactorEffect effect;

  [[nodiscard]] constexpr bool allows(double number) const { return isGiven(number) && number <= highest; }
};

inline constexpr double noLimit = std::numeric_limits<double>::max();

inline constexpr WireNumberRule wireNumberRules[] = {
    {WireControl::length, noLimit, 200.0, FactorEffect::none},
    {WireControl::powerFactor, 1.0, 0.85, FactorEffect::none},
    {WireControl::continuousFactor, 1.0, 0.9, FactorEffect::updates},
    {WireControl::energyPrice, noLimit, 0.08, FactorEffect::none},
    {WireControl::fillFactor, 1.0, 0.45, FactorEffect::updates},
    {WireControl::ambientFactor, noLimit, 1.0, FactorEffect::updates},
};

/// Null for a field without a rule.
[[nodiscard]] constexpr const WireNumberRule* findNumberRule(WireControl field) {
  for (const WireNumberRule& rule : wireNumberRules)
    if (rule.field == field) return &rule;
  return nullptr;
}

} // namespace brenvolt
