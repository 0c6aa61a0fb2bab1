// What a person may say about a circuit whose wire is looked up: one row a field. A field is an option of the command
// line and a column of a list of circuits under the same name.
#pragma once

#include "data/option_tables.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace simhost {

enum class WireField : std::size_t {
  standardCode,
  fla,
  multiplier,
  extra,
  voltage,
  phase,
  metal,
  wireStandard,
  insulation,
  ambient,
  fill,
  length,
  units,
  raceway,
  powerFactor,
  dropLimit,
  continuous,
  energyPrice,
  parallel,
  minimumSize
};
inline constexpr std::size_t wireFieldCount = 20;

/// What a field's text must be.
enum class WireFieldRule {
  name,          ///< a text that stands in a statement: without quotes and brackets
  positive,      ///< a number above 0
  notNegative,   ///< a number
  fraction,      ///< above 0, at most 1
  fractionOrOff, ///< the same, or "off"
  percentOrOff,  ///< a number above 0 with or without "%", or "off"
  phase,         ///< 1 or 3
  lengthUnits,   ///< FT or M
  degrees,       ///< an integer with or without "C"
  count          ///< an integer above 0
};

struct WireFieldRow {
  WireField field;
  const char* name;
  const char* typeName;
  const char* help;
  WireFieldRule rule;
  /// The setting whose default serves where nothing is given; empty for none.
  std::wstring_view option = {};
  /// What serves where the setting has no default; empty for nothing.
  std::wstring_view fallback = {};
  bool isRequired = false;
};

inline constexpr std::array<WireFieldRow, wireFieldCount> wireFields = {{
    {WireField::standardCode,
     "standard-code",
     "CODE",
     "Code standard; NEC without it",
     WireFieldRule::name,
     {},
     brenvolt::defaultCode},
    {WireField::fla, "fla", "A", "Full-load current in amperes", WireFieldRule::positive, {}, {}, true},
    {WireField::multiplier, "multiplier", "M", "Multiplier of the current", WireFieldRule::positive,
     brenvolt::option::flaMultiplier, L"1.25"},
    {WireField::extra, "extra", "A", "Further current in amperes", WireFieldRule::notNegative},
    {WireField::voltage, "voltage", "V", "Voltage of the circuit", WireFieldRule::positive, {}, {}, true},
    {WireField::phase, "phase", "1|3", "Phases", WireFieldRule::phase, {}, {}, true},
    {WireField::metal, "metal", "CU", "Wire metal", WireFieldRule::name, brenvolt::option::wireMetal, L"CU"},
    {WireField::wireStandard, "wire-standard", "AWG", "Wire standard", WireFieldRule::name,
     brenvolt::option::wireStandard, L"AWG"},
    {WireField::insulation, "insulation", "CODE", "Insulation", WireFieldRule::name,
     brenvolt::option::insulation},
    {WireField::ambient, "ambient", "40C", "Ambient temperature; without it no correction",
     WireFieldRule::degrees},
    {WireField::fill, "fill", "N", "Current-carrying conductors in the raceway; without it no derating",
     WireFieldRule::count},
    {WireField::length, "length", "N", "One-way length; brings the voltage drop", WireFieldRule::positive},
    {WireField::units, "units", "FT|M", "Units of the length", WireFieldRule::lengthUnits,
     brenvolt::option::lengthUnits, L"FT"},
    {WireField::raceway, "raceway", "NAME", "Raceway, by column or description; the table's first without it",
     WireFieldRule::name},
    {WireField::powerFactor, "power-factor", "P", "Power factor", WireFieldRule::fraction,
     brenvolt::option::motorPowerFactor, L"0.85"},
    {WireField::dropLimit, "drop-limit", "PERCENT", "Highest voltage drop in percent, or off",
     WireFieldRule::percentOrOff, brenvolt::option::dropLimit, L"off"},
    {WireField::continuous,
     "continuous",
     "F",
     "Factor for a continuous load, or off",
     WireFieldRule::fractionOrOff,
     {},
     L"0.8"},
    {WireField::energyPrice, "energy-price", "P", "Price per kilowatt hour", WireFieldRule::notNegative,
     brenvolt::option::energyPrice, L"0.08"},
    {WireField::parallel, "parallel", "N", "Parallel runs, at most so many conductors a phase",
     WireFieldRule::count},
    {WireField::minimumSize, "min-size", "SIZE", "Smallest size that runs in parallel", WireFieldRule::name},
}};

/// The table is in the order of the fields.
[[nodiscard]] constexpr const WireFieldRow& wireField(WireField field) {
  return wireFields[static_cast<std::size_t>(field)];
}

/// What was said, by field; empty where nothing was.
struct WireTexts {
  std::array<std::wstring, wireFieldCount> texts;
  bool hidesUndersized = false;

  [[nodiscard]] std::wstring& operator[](WireField field) { return texts[static_cast<std::size_t>(field)]; }
  [[nodiscard]] const std::wstring& operator[](WireField field) const {
    return texts[static_cast<std::size_t>(field)];
  }
};

inline constexpr std::wstring_view offText = L"off";

/// Why a text breaks its field's rule; nothing when it does not.
[[nodiscard]] std::optional<std::string> wireTextFault(WireFieldRule rule, std::wstring_view text);

} // namespace simhost
