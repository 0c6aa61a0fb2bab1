// The data group of a motor or load: which ratings its rows show, and where their values go.
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

/// Places in the table of ratings, which is in the order of a motor's rows.
inline constexpr std::size_t speedField = static_cast<std::size_t>(Rating::speed);
inline constexpr std::size_t flaField = static_cast<std::size_t>(Rating::fla);
inline constexpr std::size_t multiplierField = static_cast<std::size_t>(Rating::flaMultiplier);

/// What a page begins with: a current of 1 A, no multiplier.
[[nodiscard]] Ratings startRatings();

/// The fields of a group, row by row: a load's lack the speed.
[[nodiscard]] std::vector<std::size_t> mccFieldsOf(MccMode mode);

/// The rows of an empty group: numbers are typed, all others chosen. A row without a label is left out.
[[nodiscard]] std::vector<ZanGroupRow> mccEmptyRows(MccMode mode);

/// Stores a user's value in the circuit, or a load's multiplier in the factors of loads, which are separate from those
/// of the motor.
void storeUserValue(CircuitContext& context, MccMode mode, std::size_t field, std::wstring_view value);

/// Whether a number is taken as typed: empty, or what "%f" of it begins with. So "12.5" is, "12.5a" and ".5" are not.
[[nodiscard]] bool isTypedNumber(std::wstring_view text);

/// The arguments of a lookup command from the values of the rows, one for each row.
[[nodiscard]] std::vector<ZanScriptVariable> mccArguments(MccMode mode, const std::vector<ZanGroupRow>& rows);

} // namespace brenvolt
