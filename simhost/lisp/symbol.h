// Names of the LISP. A name is interned once, so that the evaluator finds variable and function by pointer.
#pragma once

#include "simhost/lisp/value.h"
#include "text/compare.h"

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace simhost::lisp {

class Interpreter;

/// Evaluates the unevaluated arguments of a special form (the rest of the form after its name).
using SpecialForm = Value (*)(Interpreter& interpreter, const Value& arguments);

/// Variable and function have a slot each: a parameter called `list` must not take the function `list` away
/// from everything that is called below it.
struct Symbol final {
  std::wstring name;             ///< upper case
  Value value;                   ///< nil until it is set
  Value function;                ///< nil when there is none
  SpecialForm special = nullptr; ///< null for all but the special forms
};

/// All symbols of one interpreter. A symbol lives as long as its table and never moves.
class SymbolTable final {
public:
  SymbolTable() = default;
  SymbolTable(const SymbolTable&) = delete;
  SymbolTable& operator=(const SymbolTable&) = delete;

  /// The symbol of that name, made when there is none; names compare without case.
  [[nodiscard]] Symbol& intern(std::wstring_view name);

  /// The symbol of that name, null when it was never interned.
  [[nodiscard]] Symbol* find(std::wstring_view name) const;

  /// All symbols, ordered by name.
  [[nodiscard]] std::vector<const Symbol*> all() const;

  /// What the symbols mean at one moment. Lists and texts of this LISP never change, so this is all that a program can
  /// have changed since.
  struct Meaning {
    Symbol* symbol;
    Value value;
    Value function;
  };
  [[nodiscard]] std::vector<Meaning> meanings() const;
  /// Symbols that have come since have neither value nor function.
  void restore(const std::vector<Meaning>& meanings);

private:
  /// The key is the symbol's own name.
  std::unordered_map<
      std::wstring_view, std::unique_ptr<Symbol>, brenvolt::OrdinalNoCaseHash, brenvolt::OrdinalNoCaseEqual>
      symbols_;
};

} // namespace simhost::lisp
