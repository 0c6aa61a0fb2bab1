// The input of a wire lookup for one circuit: one row per field. A field is an option of the command line and a column
// of a list of circuits with the same name.
#pragma once

#include "data/wire_defaults.h"

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
  overallFactor,
  energyPrice,
  parallel,
  minimumSize
};
inline constexpr std::size_t wireFieldCount = 21;

/// What a field's text must be.
enum class WireFieldRule {
  name,          ///< a text used in a statement: without quotes and brackets
  positive,      ///< a number above 0
  notNegative,   ///< a number
  fraction,      ///< above 0, at most 1
  multiplier,    ///< 1 to 3: a smaller one would size a wire for less than the load current
  factor,        ///< above 0, at most 2: cold surroundings allow more than the table
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
  /// The field of the lookup that it fills, whose default serves where nothing is given.
  std::optional<brenvolt::LookupField> lookup;
  /// Whether a build that sizes the circuit unattended takes note of it.
  bool isForBuild = true;
  bool isRequired = false;
};

inline constexpr auto noLookupField = std::nullopt;

inline constexpr std::array<WireFieldRow, wireFieldCount> wireFields = {{
    {WireField::standardCode, "standard-code", "CODE", "Electrical code; default: NEC", WireFieldRule::name,
     noLookupField},
    {WireField::fla, "fla", "A", "Full-load current in amperes", WireFieldRule::positive,
     brenvolt::LookupField::current, true, true},
    {WireField::multiplier, "multiplier", "M", "Multiplier of the current", WireFieldRule::multiplier,
     brenvolt::LookupField::multiplier},
    {WireField::extra, "extra", "A", "Additional current in amperes", WireFieldRule::notNegative,
     brenvolt::LookupField::extraCurrent, false},
    {WireField::voltage, "voltage", "V", "Voltage of the circuit", WireFieldRule::positive,
     brenvolt::LookupField::voltage, true, true},
    {WireField::phase, "phase", "1|3", "Phases", WireFieldRule::phase, brenvolt::LookupField::phase, true,
     true},
    {WireField::metal, "metal", "CU", "Conductor material", WireFieldRule::name,
     brenvolt::LookupField::metal},
    {WireField::wireStandard, "wire-standard", "AWG", "Size system", WireFieldRule::name,
     brenvolt::LookupField::standard},
    {WireField::insulation, "insulation", "CODE", "Insulation", WireFieldRule::name,
     brenvolt::LookupField::insulation},
    {WireField::ambient, "ambient", "40C", "Ambient temperature; default: no correction",
     WireFieldRule::degrees, noLookupField},
    {WireField::fill, "fill", "N", "Current-carrying conductors in the raceway; default: no derating",
     WireFieldRule::count, noLookupField},
    {WireField::length, "length", "N", "One-way length; adds the voltage drop", WireFieldRule::positive,
     brenvolt::LookupField::length},
    {WireField::units, "units", "FT|M", "Units of the length", WireFieldRule::lengthUnits,
     brenvolt::LookupField::lengthUnits},
    {WireField::raceway, "raceway", "NAME",
     "Raceway, by column or description; default: the first of the table", WireFieldRule::name,
     brenvolt::LookupField::raceway},
    {WireField::powerFactor, "power-factor", "P", "Power factor", WireFieldRule::fraction,
     brenvolt::LookupField::powerFactor},
    {WireField::dropLimit, "drop-limit", "PERCENT", "Maximum voltage drop in percent, or off",
     WireFieldRule::percentOrOff, brenvolt::LookupField::dropLimit},
    {WireField::continuous, "continuous", "F", "Continuous-load factor, or off", WireFieldRule::fractionOrOff,
     brenvolt::LookupField::continuousFactor},
    {WireField::overallFactor, "overall-factor", "F",
     "Combined factor, replaces the one computed from the other factors", WireFieldRule::factor,
     brenvolt::LookupField::overallFactor, false},
    {WireField::energyPrice, "energy-price", "P", "Price per kilowatt hour", WireFieldRule::notNegative,
     brenvolt::LookupField::energyPrice, false},
    {WireField::parallel, "parallel", "N", "Parallel runs, with at most this number of conductors per phase",
     WireFieldRule::count, brenvolt::LookupField::parallelCount, false},
    {WireField::minimumSize, "min-size", "SIZE", "Smallest size that runs in parallel", WireFieldRule::name,
     brenvolt::LookupField::parallelMinSize, false},
}};

/// The table is in the order of the fields.
[[nodiscard]] constexpr const WireFieldRow& wireField(WireField field) {
  return wireFields[static_cast<std::size_t>(field)];
}

/// What was said, by field; empty where nothing was.
struct WireTexts {
  std::array<std::wstring, wireFieldCount> texts;
  bool hidesUndersized = false;
  bool isUnattended = false; ///< the size that a build takes is requested
  std::wstring temperature;  ///< for an insulation's description that the table has at several; may be empty

  [[nodiscard]] std::wstring& operator[](WireField field) { return texts[static_cast<std::size_t>(field)]; }
  [[nodiscard]] const std::wstring& operator[](WireField field) const {
    return texts[static_cast<std::size_t>(field)];
  }
};

inline constexpr std::wstring_view offText = L"off";
[[nodiscard]] bool isOff(std::wstring_view text);

/// Why a text breaks its field's rule; nothing when it does not.
[[nodiscard]] std::optional<std::string> wireTextFault(WireFieldRule rule, std::wstring_view text);

} // namespace simhost
