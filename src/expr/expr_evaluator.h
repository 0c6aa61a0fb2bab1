// Formulas in one variable, as the engineering tables hold them: ratings of motor components, grounding limits.
#pragma once

#include <string>
#include <string_view>

namespace brenvolt {

/// Thrown by value for an invalid expression; contains one string, which is always empty.
struct IllegalExprException {
  std::wstring text;
};

/// An operator-precedence evaluator on doubles with the variable "i", the constant "pi" and an if-then-else form.
/// Case makes no difference. Rising in precedence: > < = >= (or =>) <= (or =<), then + -, then * /, then ^, all of
/// them to the left, also "^"; a sign belongs to its operand, so -2^2 is 4. Comparisons give 1.0 or 0.0.
class ZanExprEvaluator final {
public:
  /// The value of `text` with `variable` as the value of "i".
  /// A blank text is 1.0: a blank cell means a factor of one. Throws `IllegalExprException` for a token that is not an
  /// operator where one is required, a division by zero with more to come, and an incomplete if-form.
  [[nodiscard]] double Evaluate(std::wstring_view text, const double& variable) const;
};

} // namespace brenvolt
