// The names under which configurations are kept in the history.
#pragma once

#include "data/circuit_data.h"

#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// The first of "circuit (001)", "circuit (002)", ... that is not part of an existing name, without case.
[[nodiscard]] std::wstring proposeName(std::wstring_view circuit, const std::vector<std::wstring>& taken);

/// The name followed by the ratings of a circuit: "name [type load units voltage phase frequency speed]".
/// What is not given leaves its blank; a name that ends in these brackets has them once, and where no rating is given
/// there are none.
[[nodiscard]] std::wstring longName(std::wstring_view name, const ZanCircuitData& circuit);

} // namespace brenvolt
