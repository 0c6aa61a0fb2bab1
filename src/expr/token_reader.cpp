#include "expr/token_reader.h"

#include "text/numbers.h"

#include <array>
#include <cstdint>
#include <string>

namespace brenvolt {
namespace {

using enum ZanExprOperator;

/// As the tables' formulas were written for, not the full constant: figures must come out as before.
constexpr double pi = 3.14159265;

constexpr auto operatorOfCharacter = [] {
  std::array<ZanExprOperator, 256> table{};
  table['>'] = greater;
  table['<'] = less;
  table['='] = equal;
  table['+'] = plus;
  table['-'] = minus;
  table['*'] = times;
  table['/'] = divide;
  table['^'] = power;
  table['('] = open;
  table[')'] = close;
  return table;
}();

ZanExprOperator operatorOf(char c) {
  return operatorOfCharacter[static_cast<unsigned char>(c)];
}

/// The operator that two operator characters form together; `none` when each is its own operator, as in "==".
ZanExprOperator joined(char first, char second) {
  if (second == '=') return first == '>' ? greaterOrEqual : first == '<' ? lessOrEqual : none;
  if (first != '=') return none;
  return second == '>' ? greaterOrEqual : second == '<' ? lessOrEqual : none;
}

bool isBlankCharacter(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

/// The powers of ten that a double holds exactly.
constexpr auto exactPowersOfTen = [] {
  std::array<double, 23> powers{1.0};
  for (std::size_t i = 1; i < powers.size(); ++i)
    powers[i] = powers[i - 1] * 10.0;
  return powers;
}();

/// Up to here every integer is a double.
constexpr std::uint64_t mostExactInteger = std::uint64_t{1} << 53;

/// For numbers with more digits than the short way below can take.
double longNumber(std::string_view text) {
  return toDouble(std::wstring(text.begin(), text.end()));
}

/// The value of digits with at most one point among, before or after them; nothing for any other text.
/// Few digits are one exact division of two exact numbers, so the result is rounded once, as it should be.
std::optional<double> numberOf(std::string_view text) {
  std::uint64_t digits = 0;
  std::size_t count = 0;
  std::size_t decimals = 0;
  bool isBehindPoint = false;
  bool isShort = true;
  for (const char c : text) {
    if (isDigit(c)) {
      digits = digits * 10 + static_cast<std::uint64_t>(c - '0');
      isShort = isShort && digits <= mostExactInteger;
      decimals += isBehindPoint ? 1 : 0;
      ++count;
    } else if (c == '.' && !isBehindPoint) {
      isBehindPoint = true;
    } else {
      return std::nullopt;
    }
  }
  if (count == 0) return std::nullopt;
  if (!isShort || decimals >= exactPowersOfTen.size()) return longNumber(text);
  return static_cast<double>(digits) / exactPowersOfTen[decimals];
}

} // namespace

TokenReader::TokenReader(std::string_view text) : position_(text.data()), end_(text.data() + text.size()) {
  skipBlanks();
  advance();
}

std::optional<double> TokenReader::operandValue(double variable) const {
  if (operator_ != none) return std::nullopt;
  if (operand_ == "i") return variable;
  if (operand_ == "pi") return pi;
  return numberOf(operand_);
}

void TokenReader::advance() {
  if (position_ == end_) {
    isAtEnd_ = true;
    return;
  }
  operator_ = operatorOf(*position_);
  if (operator_ == none) {
    const char* const begin = position_;
    const char* last = position_;
    for (; position_ != end_ && operatorOf(*position_) == none; ++position_) {
      if (!isBlankCharacter(*position_)) last = position_;
    }
    operand_ = {begin, last + 1};
    return;
  }
  const char first = *position_++;
  skipBlanks();
  if (position_ == end_) return;
  const ZanExprOperator both = joined(first, *position_);
  if (both == none) return;
  operator_ = both;
  ++position_;
  skipBlanks();
}

void TokenReader::skipBlanks() {
  while (position_ != end_ && isBlankCharacter(*position_))
    ++position_;
}

} // namespace brenvolt
