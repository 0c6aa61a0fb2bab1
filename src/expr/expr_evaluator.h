// Formulas in one variable, as the engineering tables hold them: ratings of motor components, grounding limits.
#pragma once

#include <string>
#include <string_view>

namespace brenvolt {

/// Thrown by value for a text that is no expression; holds one string.
struct IllegalExprException {
  std::wstring text;
};

/// An operator-precedence evaluator on doubles with the variable "i", the constant "pi" and an if-then-else form.
class ZanExprEvaluator final {
public:
  /// The value of `text` with `variable` as the value of "i".
  /// A blank text is 1.0: a blank cell means a factor of one. Throws `IllegalExprException`.
  [[nodiscard]] double Evaluate(std::wstring_view text, const double& variable);
};

} // namespace brenvolt
