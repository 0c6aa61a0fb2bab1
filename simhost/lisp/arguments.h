// What a function of the embedding sees of its call: checked access to the arguments, so that every function
// complains about wrong ones in the same words.
#pragma once

#include "simhost/lisp/value.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>

namespace simhost::lisp {

class Interpreter;

/// As the maximum of a function's arguments.
inline constexpr std::size_t anyNumber = std::numeric_limits<std::size_t>::max();

/// Positions count from 0 in code, from 1 in messages. Every access with a type throws LispError when the
/// argument is missing or of another type.
class Arguments final {
public:
  Arguments(Interpreter& interpreter, const Builtin& function, std::span<const Value> values)
      : interpreter_(interpreter), function_(function), values_(values) {}

  [[nodiscard]] Interpreter& interpreter() const { return interpreter_; }
  [[nodiscard]] const std::wstring& functionName() const { return function_.name; }
  [[nodiscard]] std::span<const Value> values() const { return values_; }
  [[nodiscard]] std::size_t size() const { return values_.size(); }
  [[nodiscard]] bool has(std::size_t position) const { return position < values_.size(); }
  [[nodiscard]] const Value& operator[](std::size_t position) const;

  [[nodiscard]] std::int32_t integer(std::size_t position) const;
  /// An integer that is not negative.
  [[nodiscard]] std::size_t count(std::size_t position) const;
  /// An integer or a real.
  [[nodiscard]] double number(std::size_t position) const;
  [[nodiscard]] const std::wstring& text(std::size_t position) const;
  [[nodiscard]] Symbol& symbol(std::size_t position) const;
  /// nil or a list that ends in nil.
  [[nodiscard]] const Value& list(std::size_t position) const;
  /// A function, the symbol of one, or a lambda expression.
  [[nodiscard]] Value function(std::size_t position) const;

  /// Complains that the argument is not what was expected ("a string").
  [[noreturn]] void expected(std::size_t position, std::wstring_view what) const;
  /// Complains in free words; the function's name is put ahead.
  [[noreturn]] void fail(std::wstring_view message) const;

private:
  Interpreter& interpreter_;
  const Builtin& function_;
  std::span<const Value> values_;
};

} // namespace simhost::lisp
