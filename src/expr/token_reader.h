// Cuts an expression into operands and operators, one at a time and without copies: tables are computed often.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace brenvolt {

enum class ZanExprOperator : std::int32_t {
  none,
  greater,
  less,
  equal,
  greaterOrEqual,
  lessOrEqual,
  plus,
  minus,
  times,
  divide,
  power,
  open,
  close,
};

/// Reads the tokens of a lower-cased text. Blanks end nothing: "2 3" is one operand, and "> =" one operator.
/// The text must outlive the reader.
class TokenReader final {
public:
  explicit TokenReader(std::string_view text);

  [[nodiscard]] bool isAtEnd() const { return isAtEnd_; }
  /// The current operator; `none` when the token is an operand.
  [[nodiscard]] ZanExprOperator operatorType() const { return operator_; }
  /// The number of the current token: digits with at most one point, "i" or "pi". Nothing for an operator and for any
  /// other text.
  [[nodiscard]] std::optional<double> operandValue(double variable) const;

  void advance();

private:
  void skipBlanks();

  const char* position_;
  const char* end_;
  std::string_view operand_;
  ZanExprOperator operator_ = ZanExprOperator::none;
  bool isAtEnd_ = false;
};

} // namespace brenvolt
