#include "expr/arithmetic.h"

#include "expr/expr_evaluator.h"
#include "expr/inline_stack.h"
#include "expr/token_reader.h"

#include <array>
#include <cmath>
#include <cstdint>

namespace brenvolt {
namespace {

using enum ZanExprOperator;

/// An operand with the operator to its right. Without padding, so that it is copied from registers.
struct ZanExprToken {
  double value = 0.0;
  std::int32_t priority = -1;
  ZanExprOperator type = none;
};

/// Above the priority of every operator outside the parentheses.
constexpr std::int32_t levelStep = 20;

/// Added to the level of the parentheses; a closing one has the priority 0 at every level.
constexpr std::array<std::int32_t, 13> basePriority{-1, 1, 1, 1, 1, 1, 10, 10, 11, 11, 12, 13, 0};

constexpr double truth(bool condition) {
  return condition ? 1.0 : 0.0;
}

class Arithmetic final {
public:
  Arithmetic(std::string_view text, double variable) : tokens_(text), variable_(variable) {}

  [[nodiscard]] double run() {
    ZanExprToken current;
    while (!tokens_.isAtEnd()) {
      current = {readOperand(), -1, none};
      while (!tokens_.isAtEnd()) {
        placeOperator(current);
        pushReducing(current);
        tokens_.advance();
        if (current.type != close) break;
        current = stack_.pop(); // the value of the parentheses, left operand of what follows
      }
    }
    // An expression that ends in an operator pushes its last entry a second time ("2+" is 4); that is kept, and so
    // is a division by zero at the end, which leaves the operand to its left ("5/0" is 5).
    stack_.push(current);
    static_cast<void>(reduce());
    return stack_.isEmpty() ? 0.0 : stack_.top().value;
  }

private:
  /// The current operand with its signs. A token that is not an operand stays and counts as 0: an expression may
  /// continue at "(" or, intentionally, at an operator.
  double readOperand() {
    bool negate = false;
    for (; !tokens_.isAtEnd() && tokens_.operatorType() == minus; tokens_.advance())
      negate = !negate;
    if (tokens_.isAtEnd()) return 0.0;
    const auto value = tokens_.operandValue(variable_);
    if (!value) return 0.0;
    tokens_.advance();
    return negate ? -*value : *value;
  }

  void placeOperator(ZanExprToken& current) {
    current.type = tokens_.operatorType();
    if (current.type == none) throw IllegalExprException();
    if (current.type == close) {
      current.priority = 0;
      level_ -= levelStep;
      return;
    }
    current.priority = level_ + basePriority[static_cast<std::size_t>(current.type)];
    if (current.type == open) level_ += levelStep;
  }

  void pushReducing(const ZanExprToken& current) {
    const bool mayReduce = !stack_.isEmpty() && current.priority <= stack_.top().priority;
    stack_.push(current);
    if (mayReduce && !reduce()) throw IllegalExprException();
  }

  /// Merges into the top entry the entry below it with at least its priority, down to an opening parenthesis when the
  /// entry closes it. On failure the top entry is gone.
  [[nodiscard]] bool reduce() {
    if (stack_.size() < 2) return true;
    ZanExprToken right = stack_.pop();
    bool isStopped = false;
    while (!isStopped && !stack_.isEmpty()) {
      const ZanExprToken& left = stack_.top();
      if (right.priority > left.priority) break;
      if (left.type == open) {
        isStopped = right.type == close;
      } else if (!apply(left, right.value)) {
        return false;
      }
      stack_.pop();
    }
    stack_.push(right);
    return true;
  }

  /// `value` becomes the right operand of `left`, then the result. Equality and the test for zero are exact.
  [[nodiscard]] static bool apply(const ZanExprToken& left, double& value) {
    const double a = left.value;
    const double b = value;
    switch (left.type) {
    case greater:
      value = truth(a > b);
      return true;
    case less:
      value = truth(a < b);
      return true;
    case equal:
      value = truth(a == b);
      return true;
    case greaterOrEqual:
      value = truth(a >= b);
      return true;
    case lessOrEqual:
      value = truth(a <= b);
      return true;
    case plus:
      value = a + b;
      return true;
    case minus:
      value = a - b;
      return true;
    case times:
      value = a * b;
      return true;
    case divide:
      value = b == 0.0 ? b : a / b;
      return b != 0.0;
    case power:
      value = std::pow(a, b);
      return true;
    case none:
    case open:
    case close:
      break;
    }
    return false;
  }

  TokenReader tokens_;
  double variable_;
  InlineStack<ZanExprToken, 8> stack_;
  std::int32_t level_ = 0;
};

} // namespace

double evaluateArithmetic(std::string_view text, double variable) {
  return Arithmetic(text, variable).run();
}

} // namespace brenvolt
