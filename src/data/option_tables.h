// The option table of a code standard: defaults and pick lists, one row a setting; and the list of the standards that
// a site has tables for.
#pragma once

#include "data/db_service.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// Codes of the settings.
namespace option {
inline constexpr std::wstring_view fullName = L"FULLNAME";
inline constexpr std::wstring_view wireStandard = L"W_STD";
inline constexpr std::wstring_view wireMetal = L"W_METAL";
inline constexpr std::wstring_view insulation = L"W_INSUL";
inline constexpr std::wstring_view voltages = L"VOLTS";
inline constexpr std::wstring_view phases = L"PHASE";
inline constexpr std::wstring_view flaMultiplier = L"FLA_MULT";
inline constexpr std::wstring_view lengths = L"LEN_LIST";
inline constexpr std::wstring_view lengthUnits = L"LEN_UNITS";
inline constexpr std::wstring_view motorPowerFactor = L"M_POWERFACTOR";
inline constexpr std::wstring_view feedPowerFactor = L"F_POWERFACTOR";
inline constexpr std::wstring_view dropLimit = L"V_DROP";
inline constexpr std::wstring_view energyPrice = L"KWH_COST";
inline constexpr std::wstring_view energyPriceUnits = L"KWH_COST_UNITS";
inline constexpr std::wstring_view parallelHighestCount = L"PARALLEL_MAX_CNT";
inline constexpr std::wstring_view parallelMinimumSize = L"PARALLEL_MIN_SIZE";
inline constexpr std::wstring_view groundingRating = L"AMPG_MAX";
inline constexpr std::wstring_view ambientTemperature = L"T_AMBIENT";
inline constexpr std::wstring_view continuousLoad = L"C_LOAD";
} // namespace option

/// Fields of a setting.
namespace optionfield {
inline constexpr std::wstring_view defaultValue = L"DEFAULT";
inline constexpr std::wstring_view list = L"LIST";
} // namespace optionfield

/// The multiplier of a continuous current where the options give none.
inline constexpr double fallbackFlaMultiplier = 1.25;

class ZanOptTableReader final : public ZanDbBaseService {
public:
  /// Starts with the code standard of the parent product, empty when unset.
  explicit ZanOptTableReader(ZanOleDbConnection* connection = nullptr);

  [[nodiscard]] const std::wstring& code() const { return code_; }
  /// Another code; what was loaded is forgotten.
  void SetCode(std::wstring_view code);
  /// Loads the options of the code, or of what it falls back to. The first row of a setting wins; a repeated load adds
  /// nothing new. False without a connection or an option table.
  bool GetOptions();
  /// One field of a setting, which may be empty. False, and an empty text, for an unknown setting or field; lists go
  /// through `GetList` and are refused here.
  bool GetValue(std::wstring_view code, std::wstring_view field, std::wstring& value) const;
  /// The setting's default, empty where it has none.
  [[nodiscard]] std::wstring defaultOf(std::wstring_view code) const;
  /// The choices of a setting, up to the first empty one. False for an unknown setting.
  bool GetList(std::wstring_view code, std::vector<std::wstring>& values) const;
  /// Loads the options and gives their multiplier; `fallbackFlaMultiplier` when either fails, 0.0 for a blank cell.
  [[nodiscard]] double GetFlaMultiplier();
  /// The full name of a standard; false unless its table has the row.
  bool ReadFullName(std::wstring_view code, std::wstring& name) const;
  /// The entry of a code without its own table in the list of standards: a text with "%s" for the table's name.
  void SetMissingTableText(std::wstring_view text) { missingTableText_ = text; }
  /// All standards: full name to code, sorted by name. With `withCurrent` a current code that has no table is added
  /// with a note, so that the user does not lose it.
  bool ReadAllStandards(std::map<std::wstring, std::wstring>& standards, bool withCurrent) const;

private:
  struct Setting {
    std::wstring defaultValue;
    std::wstring list;
  };

  std::wstring code_;
  std::map<std::wstring, Setting> settings_;
  std::wstring missingTableText_ = L"%s";
};

} // namespace brenvolt
