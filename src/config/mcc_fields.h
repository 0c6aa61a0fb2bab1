// The data group of a motor or load, field by field: which row shows it, what a lookup command calls it, and where its
// value lives in the manager and in the circuit in hand.
#pragma once

#include "data/circuit_data.h"
#include "host/resources.h"
#include "host/script_form.h"
#include "widgets/group_spec.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

enum class MccMode : std::uint32_t { motor = 0, load = 1 };

/// Places of the page's groups, and the ids that the groups pass back.
namespace mccplace {
inline constexpr std::size_t data = 0;
inline constexpr std::size_t wires = 1;
inline constexpr std::size_t count = 2;
} // namespace mccplace
[[nodiscard]] constexpr std::int32_t dataGroupId(MccMode mode) {
  return mode == MccMode::motor ? 0 : -1;
}
[[nodiscard]] constexpr std::int32_t wireGroupId(MccMode mode) {
  return mode == MccMode::motor ? 1 : -2;
}

/// The values of the data group as its manager last heard of them.
struct MccData {
  std::wstring type;
  std::wstring load;
  std::wstring units;
  std::wstring voltage; ///< volts
  std::wstring phase;
  std::wstring speed;     ///< rpm; a load has none
  std::wstring frequency; ///< hertz
  double fla = 1.0;       ///< full-load current, amperes
  double flaMultiplier = 0.0;
};

/// A field is either a text or a number.
struct MccField {
  TextId label;
  std::wstring_view argument; ///< of the lookup command
  std::wstring MccData::*text = nullptr;
  std::wstring ZanCircuitData::*circuitText = nullptr;
  double MccData::*number = nullptr;
  double ZanCircuitData::*circuitNumber = nullptr;
};

/// In the order of a motor's rows, which is also that of `OpenField`.
inline constexpr std::size_t mccFieldCount = 9;
inline constexpr std::size_t speedField = 6;
inline constexpr std::size_t flaField = 7;
inline constexpr std::size_t multiplierField = 8;
[[nodiscard]] const MccField& mccField(std::size_t index);

/// The fields of a group, row by row: a load's lack the speed.
[[nodiscard]] std::vector<std::size_t> mccFieldsOf(MccMode mode);

/// The rows of an empty group: numbers are typed, all others chosen. A row without a label is left out.
[[nodiscard]] std::vector<ZanGroupRow> mccEmptyRows(MccMode mode);

/// Puts a value into the manager's data; a number is read from its text.
void storeInData(MccData& data, std::size_t field, std::wstring_view value);
/// Puts a value into the circuit in hand.
void storeInCircuit(std::size_t field, std::wstring_view value);
/// What a user's value goes to: the circuit in hand, or for a load's multiplier the factors of loads, which are kept
/// apart from the motor's.
void storeUserValue(MccMode mode, std::size_t field, std::wstring_view value);

/// Whether a number is taken as typed: empty, or what "%f" of it begins with. So "12.5" is, "12.5a" and ".5" are not.
[[nodiscard]] bool isTypedNumber(std::wstring_view text);

/// The arguments of a lookup command from the values of the rows, one for each row.
[[nodiscard]] std::vector<ZanScriptVariable> mccArguments(MccMode mode, const std::vector<ZanGroupRow>& rows);

} // namespace brenvolt
