// The arithmetic of an expression, after its if-form has been put in place.
#pragma once

#include <string_view>

namespace brenvolt {

/// The value of a lower-cased text without if-form; 0.0 for an empty one. Throws `IllegalExprException`.
[[nodiscard]] double evaluateArithmetic(std::string_view text, double variable);

} // namespace brenvolt
