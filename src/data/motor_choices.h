// The queries of the data group of a motor or load: the column names of the tables, and the values that remain for one
// field when others are given.
#pragma once

#include "data/circuit_data.h"
#include "data/table_names.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// By place in the table of ratings.
using MotorColumns = std::array<std::wstring, ratingCount>;
using WireSizeColumns = std::array<std::wstring, 4>;

/// The columns of the motor table of a code standard: by their names, and by place where a name is missing. The
/// multiplier has no column, and its name stays empty. Nothing without the table.
[[nodiscard]] std::optional<MotorColumns> readMotorColumns(
    ZanOleDbConnection& connection, std::wstring_view code);

/// The first columns of the table of wire sizes; nothing without the table.
[[nodiscard]] std::optional<WireSizeColumns> readWireSizeColumns(ZanOleDbConnection& connection);

/// `column` equals `value`.
struct MotorCondition {
  std::wstring column;
  std::wstring value;
};

/// The different values of a column in the motor or load table of a code standard, in the order of the query, empty
/// ones left out. None when anything about the query fails, a value with a quote included.
[[nodiscard]] std::vector<std::wstring> distinctMotorValues(
    ZanOleDbConnection& connection, ZanTableKind table, std::wstring_view code, std::wstring_view column,
    const std::vector<MotorCondition>& conditions);

/// The wire size without blanks that the automatic sizing proposes for a circuit; nothing when the options of the code
/// standard cannot be loaded.
[[nodiscard]] std::optional<std::wstring> proposedWireSize(
    ZanOleDbConnection& connection, const ZanCircuitData& circuit);

} // namespace brenvolt
