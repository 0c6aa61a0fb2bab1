// The values of fields that are not given: the default of the option table, or what the sizing assumes, with its
// origin. Window, tool and build fill their gaps here, so that an explanation can name the source of every number.
#pragma once

#include "data/option_tables.h"
#include "data/wire_input.h"
#include "data/wire_table_cache.h"

#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

inline constexpr std::wstring_view givenOrigin = L"given";
inline constexpr std::wstring_view assumedOrigin = L"assumed by the wire lookup";

/// "OPT_NEC, row CODE = FLA_MULT, column DEFAULT".
[[nodiscard]] std::wstring rowOrigin(
    std::wstring_view table, std::wstring_view keyColumn, std::wstring_view key, std::wstring_view column);

/// The setting with a field's default, and the assumed value where the setting has none.
struct WireDefault {
  LookupField field;
  std::wstring_view setting;
  std::wstring_view assumed;
};
inline constexpr WireDefault wireDefaults[] = {
    {LookupField::metal, option::wireMetal, L"CU"},
    {LookupField::standard, option::wireStandard, L"AWG"},
    {LookupField::insulation, option::insulation, {}},
    {LookupField::multiplier, option::flaMultiplier, L"1.25"},
    {LookupField::length, option::lengths, {}},
    {LookupField::lengthUnits, option::lengthUnits, L"FT"},
    {LookupField::powerFactor, option::motorPowerFactor, L"0.85"},
    {LookupField::dropLimit, option::dropLimit, {}},
    {LookupField::continuousFactor, {}, L"0.8"},
    {LookupField::energyPrice, option::energyPrice, L"0.08"},
    {LookupField::parallelCount, option::parallelHighestCount, {}},
    {LookupField::parallelMinSize, option::parallelMinimumSize, {}},
    {LookupField::groundSize, option::groundingRating, {}},
};

/// The row of a field; an empty one for a field without a default.
[[nodiscard]] constexpr WireDefault wireDefaultOf(LookupField field) {
  for (const WireDefault& row : wireDefaults)
    if (row.field == field) return row;
  return {field, {}, {}};
}

class WireDefaults final {
public:
  /// The tables must outlive this.
  WireDefaults(WireTableCache& tables, std::wstring code) : tables_(tables), code_(std::move(code)) {}

  [[nodiscard]] WireTableCache& tables() const { return tables_; }
  [[nodiscard]] const ZanWireTableReader& reader() const { return tables_.reader(code_); }
  [[nodiscard]] const std::wstring& code() const { return code_; }

  /// The default and the choices of a setting; empty where it has none.
  [[nodiscard]] WireValue setting(std::wstring_view setting) const;
  [[nodiscard]] std::vector<std::wstring> list(std::wstring_view setting) const;
  /// A text or a number, or the setting's default when it is not given.
  [[nodiscard]] WireValue textOr(std::wstring_view text, std::wstring_view setting) const;
  [[nodiscard]] WireValue numberOr(double number, std::wstring_view setting) const;
  /// The default of a setting as a number, 0 where it has none. A text that is not a number is passed to the observer of
  /// the tables: a build has no field that would show it.
  [[nodiscard]] double figureOf(std::wstring_view setting) const;
  /// A text, the default of the field's setting, or what is assumed for it.
  [[nodiscard]] WireValue valueOf(LookupField field, std::wstring_view text) const;

private:
  WireTableCache& tables_;
  std::wstring code_;
};

} // namespace brenvolt
