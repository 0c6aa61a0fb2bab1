// Numbers. A result that does not fit in a 32-bit integer becomes a real; a result that is not a finite number is an
// error.
#include "simhost/lisp/builtins.h"

#include <cmath>
#include <limits>
#include <numbers>

namespace simhost::lisp {

namespace {

Value wholeNumber(std::int64_t number) {
  const bool fits = number >= std::numeric_limits<std::int32_t>::min() &&
                    number <= std::numeric_limits<std::int32_t>::max();
  return fits ? Value::integer(static_cast<std::int32_t>(number)) : Value::real(static_cast<double>(number));
}

/// A whole number that came out of real arithmetic.
Value wholeNumber(double number) {
  const bool fits = number >= std::numeric_limits<std::int32_t>::min() &&
                    number <= std::numeric_limits<std::int32_t>::max();
  return fits ? Value::integer(static_cast<std::int32_t>(number)) : Value::real(number);
}

Value realResult(Arguments& arguments, double number) {
  if (!std::isfinite(number)) arguments.fail(L"the result is not a finite number");
  return Value::real(number);
}

void requireNumbers(Arguments& arguments) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    static_cast<void>(arguments.number(i));
  }
}

struct Addition {
  static std::int64_t ofIntegers(std::int64_t left, std::int64_t right) { return left + right; }
  static double ofReals(double left, double right) { return left + right; }
};

struct Subtraction {
  static std::int64_t ofIntegers(std::int64_t left, std::int64_t right) { return left - right; }
  static double ofReals(double left, double right) { return left - right; }
};

struct Multiplication {
  static std::int64_t ofIntegers(std::int64_t left, std::int64_t right) { return left * right; }
  static double ofReals(double left, double right) { return left * right; }
};

template <typename Operation>
Value combine(Arguments& arguments, const Value& left, const Value& right) {
  if (left.isInteger() && right.isInteger()) {
    return wholeNumber(Operation::ofIntegers(left.asInteger(), right.asInteger()));
  }
  return realResult(arguments, Operation::ofReals(left.asNumber(), right.asNumber()));
}

template <typename Operation>
Value fold(Arguments& arguments, Value start, std::size_t from) {
  for (std::size_t i = from; i < arguments.size(); ++i) {
    start = combine<Operation>(arguments, start, arguments[i]);
  }
  return start;
}

Value add(Arguments& arguments) {
  requireNumbers(arguments);
  return fold<Addition>(arguments, Value::integer(0), 0);
}

Value multiply(Arguments& arguments) {
  requireNumbers(arguments);
  return fold<Multiplication>(arguments, Value::integer(1), 0);
}

Value subtract(Arguments& arguments) {
  requireNumbers(arguments);
  if (arguments.size() == 1) return combine<Subtraction>(arguments, Value::integer(0), arguments[0]);
  return fold<Subtraction>(arguments, arguments[0], 1);
}

void requireDivisor(Arguments& arguments, const Value& divisor) {
  if (divisor.asNumber() == 0.0) arguments.fail(L"division by zero");
}

/// Integers that divide without a remainder stay integers; there are no fractions, so all others become reals.
Value divideTwo(Arguments& arguments, const Value& left, const Value& right) {
  requireDivisor(arguments, right);
  if (left.isInteger() && right.isInteger()) {
    const std::int64_t dividend = left.asInteger();
    const std::int64_t divisor = right.asInteger();
    if (dividend % divisor == 0) return wholeNumber(dividend / divisor);
  }
  return realResult(arguments, left.asNumber() / right.asNumber());
}

Value divide(Arguments& arguments) {
  requireNumbers(arguments);
  if (arguments.size() == 1) return divideTwo(arguments, Value::integer(1), arguments[0]);
  Value result = arguments[0];
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    result = divideTwo(arguments, result, arguments[i]);
  }
  return result;
}

Value addOne(Arguments& arguments) {
  requireNumbers(arguments);
  return combine<Addition>(arguments, arguments[0], Value::integer(1));
}

Value subtractOne(Arguments& arguments) {
  requireNumbers(arguments);
  return combine<Subtraction>(arguments, arguments[0], Value::integer(1));
}

/// The sign of rem is that of the dividend.
Value remainder(Arguments& arguments) {
  requireNumbers(arguments);
  requireDivisor(arguments, arguments[1]);
  if (arguments[0].isInteger() && arguments[1].isInteger()) {
    return wholeNumber(std::int64_t{arguments[0].asInteger()} % arguments[1].asInteger());
  }
  return realResult(arguments, std::fmod(arguments.number(0), arguments.number(1)));
}

/// The sign of mod is that of the divisor.
Value modulus(Arguments& arguments) {
  const Value rest = remainder(arguments);
  const bool needsShift = rest.asNumber() != 0.0 && (rest.asNumber() < 0.0) != (arguments.number(1) < 0.0);
  return needsShift ? combine<Addition>(arguments, rest, arguments[1]) : rest;
}

Value absolute(Arguments& arguments) {
  if (arguments.number(0) >= 0.0) return arguments[0];
  return combine<Subtraction>(arguments, Value::integer(0), arguments[0]);
}

Value smallest(Arguments& arguments) {
  requireNumbers(arguments);
  Value result = arguments[0];
  for (const Value& number : arguments.values()) {
    if (number.asNumber() < result.asNumber()) result = number;
  }
  return result;
}

Value largest(Arguments& arguments) {
  requireNumbers(arguments);
  Value result = arguments[0];
  for (const Value& number : arguments.values()) {
    if (number.asNumber() > result.asNumber()) result = number;
  }
  return result;
}

/// Whether the relation holds between all neighbours.
template <typename Relation>
Value chain(Arguments& arguments, Relation holds) {
  requireNumbers(arguments);
  for (std::size_t i = 0; i + 1 < arguments.size(); ++i) {
    if (!holds(arguments[i].asNumber(), arguments[i + 1].asNumber())) return {};
  }
  return Value::truth(true);
}

Value areEqualNumbers(Arguments& arguments) {
  return chain(arguments, [](double left, double right) { return left == right; });
}

/// All different from each other, not only neighbours.
Value areDifferent(Arguments& arguments) {
  requireNumbers(arguments);
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    for (std::size_t j = i + 1; j < arguments.size(); ++j) {
      if (arguments[i].asNumber() == arguments[j].asNumber()) return {};
    }
  }
  return Value::truth(true);
}

Value areRisingNumbers(Arguments& arguments) {
  return chain(arguments, [](double left, double right) { return left < right; });
}

Value areFallingNumbers(Arguments& arguments) {
  return chain(arguments, [](double left, double right) { return left > right; });
}

Value areNotFalling(Arguments& arguments) {
  return chain(arguments, [](double left, double right) { return left <= right; });
}

Value areNotRising(Arguments& arguments) {
  return chain(arguments, [](double left, double right) { return left >= right; });
}

Value squareRoot(Arguments& arguments) {
  if (arguments.number(0) < 0.0) arguments.expected(0, L"a number from 0 on");
  return Value::real(std::sqrt(arguments.number(0)));
}

Value sine(Arguments& arguments) {
  return realResult(arguments, std::sin(arguments.number(0)));
}

Value cosine(Arguments& arguments) {
  return realResult(arguments, std::cos(arguments.number(0)));
}

Value tangent(Arguments& arguments) {
  return realResult(arguments, std::tan(arguments.number(0)));
}

Value arcTangent(Arguments& arguments) {
  if (arguments.size() == 1) return Value::real(std::atan(arguments.number(0)));
  return realResult(arguments, std::atan2(arguments.number(0), arguments.number(1)));
}

Value exponential(Arguments& arguments) {
  return realResult(arguments, std::exp(arguments.number(0)));
}

/// The natural logarithm, or the one to the base that is given.
Value logarithm(Arguments& arguments) {
  if (arguments.number(0) <= 0.0) arguments.expected(0, L"a number above 0");
  const double natural = std::log(arguments.number(0));
  if (arguments.size() == 1) return Value::real(natural);
  if (arguments.number(1) <= 0.0) arguments.expected(1, L"a number above 0");
  return realResult(arguments, natural / std::log(arguments.number(1)));
}

Value power(Arguments& arguments) {
  const double result = std::pow(arguments.number(0), arguments.number(1));
  const bool isWhole = arguments[0].isInteger() && arguments[1].isInteger() && arguments[1].asInteger() >= 0;
  // Doubles hold every whole number of 32 bits, and pow is exact for those.
  return isWhole && std::isfinite(result) ? wholeNumber(result) : realResult(arguments, result);
}

double roundDown(double number) {
  return std::floor(number);
}

double roundUp(double number) {
  return std::ceil(number);
}

double roundToZero(double number) {
  return std::trunc(number);
}

/// Halves go to the even neighbour, so that sums of rounded numbers do not drift.
double roundToEven(double number) {
  const double below = std::floor(number);
  const double distance = number - below;
  if (distance < 0.5) return below;
  if (distance > 0.5) return below + 1.0;
  return std::fmod(below, 2.0) == 0.0 ? below : below + 1.0;
}

/// The argument, or its quotient by the second one, made whole.
template <double (*rounded)(double)>
Value makeWhole(Arguments& arguments) {
  requireNumbers(arguments);
  double number = arguments.number(0);
  if (arguments.has(1)) {
    requireDivisor(arguments, arguments[1]);
    number = realResult(arguments, number / arguments.number(1)).asReal();
  }
  return wholeNumber(rounded(number));
}

Value toReal(Arguments& arguments) {
  return Value::real(arguments.number(0));
}

Value isNumber(Arguments& arguments) {
  return Value::truth(arguments[0].isNumber());
}

Value isInteger(Arguments& arguments) {
  return Value::truth(arguments[0].isInteger());
}

Value isReal(Arguments& arguments) {
  return Value::truth(arguments[0].isReal());
}

Value isZero(Arguments& arguments) {
  return Value::truth(arguments.number(0) == 0.0);
}

Value isPositive(Arguments& arguments) {
  return Value::truth(arguments.number(0) > 0.0);
}

Value isNegative(Arguments& arguments) {
  return Value::truth(arguments.number(0) < 0.0);
}

Value isEven(Arguments& arguments) {
  return Value::truth(arguments.integer(0) % 2 == 0);
}

Value isOdd(Arguments& arguments) {
  return Value::truth(arguments.integer(0) % 2 != 0);
}

Value bitAnd(Arguments& arguments) {
  std::int32_t result = -1;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    result &= arguments.integer(i);
  }
  return Value::integer(result);
}

Value bitOr(Arguments& arguments) {
  std::int32_t result = 0;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    result |= arguments.integer(i);
  }
  return Value::integer(result);
}

constexpr BuiltinEntry numberBuiltins[] = {
    {L"+", 0, anyNumber, add},
    {L"-", 1, anyNumber, subtract},
    {L"*", 0, anyNumber, multiply},
    {L"/", 1, anyNumber, divide},
    {L"1+", 1, 1, addOne},
    {L"1-", 1, 1, subtractOne},
    {L"mod", 2, 2, modulus},
    {L"rem", 2, 2, remainder},
    {L"abs", 1, 1, absolute},
    {L"min", 1, anyNumber, smallest},
    {L"max", 1, anyNumber, largest},
    {L"=", 1, anyNumber, areEqualNumbers},
    {L"/=", 1, anyNumber, areDifferent},
    {L"<", 1, anyNumber, areRisingNumbers},
    {L">", 1, anyNumber, areFallingNumbers},
    {L"<=", 1, anyNumber, areNotFalling},
    {L">=", 1, anyNumber, areNotRising},
    {L"sqrt", 1, 1, squareRoot},
    {L"sin", 1, 1, sine},
    {L"cos", 1, 1, cosine},
    {L"tan", 1, 1, tangent},
    {L"atan", 1, 2, arcTangent},
    {L"exp", 1, 1, exponential},
    {L"log", 1, 2, logarithm},
    {L"expt", 2, 2, power},
    {L"floor", 1, 2, makeWhole<roundDown>},
    {L"ceiling", 1, 2, makeWhole<roundUp>},
    {L"truncate", 1, 2, makeWhole<roundToZero>},
    {L"round", 1, 2, makeWhole<roundToEven>},
    {L"float", 1, 1, toReal},
    {L"numberp", 1, 1, isNumber},
    {L"integerp", 1, 1, isInteger},
    {L"floatp", 1, 1, isReal},
    {L"zerop", 1, 1, isZero},
    {L"plusp", 1, 1, isPositive},
    {L"minusp", 1, 1, isNegative},
    {L"evenp", 1, 1, isEven},
    {L"oddp", 1, 1, isOdd},
    {L"logand", 0, anyNumber, bitAnd},
    {L"logior", 0, anyNumber, bitOr},
};

} // namespace

void defineNumberBuiltins(Interpreter& interpreter) {
  defineAll(interpreter, numberBuiltins);
  interpreter.setValue(L"pi", Value::real(std::numbers::pi));
}

} // namespace simhost::lisp
