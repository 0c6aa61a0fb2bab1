// Interning without case.
#include "simhost/lisp/symbol.h"

#include <algorithm>

namespace simhost::lisp {

Symbol& SymbolTable::intern(std::wstring_view name) {
  if (Symbol* known = find(name)) return *known;
  auto symbol = std::make_unique<Symbol>();
  symbol->name = brenvolt::toUpper(name);
  Symbol& made = *symbol;
  symbols_.emplace(made.name, std::move(symbol));
  return made;
}

Symbol* SymbolTable::find(std::wstring_view name) const {
  const auto found = symbols_.find(name);
  return found == symbols_.end() ? nullptr : found->second.get();
}

std::vector<const Symbol*> SymbolTable::all() const {
  std::vector<const Symbol*> symbols;
  symbols.reserve(symbols_.size());
  for (const auto& [name, symbol] : symbols_) {
    symbols.push_back(symbol.get());
  }
  std::sort(symbols.begin(), symbols.end(), [](const Symbol* left, const Symbol* right) {
    return left->name < right->name;
  });
  return symbols;
}

std::vector<SymbolTable::Meaning> SymbolTable::meanings() const {
  std::vector<Meaning> meanings;
  meanings.reserve(symbols_.size());
  for (const auto& [name, symbol] : symbols_)
    meanings.push_back({symbol.get(), symbol->value, symbol->function});
  return meanings;
}

void SymbolTable::restore(const std::vector<Meaning>& meanings) {
  if (meanings.size() < symbols_.size())
    for (const auto& [name, symbol] : symbols_) {
      symbol->value = Value();
      symbol->function = Value();
    }
  for (const Meaning& meaning : meanings) {
    meaning.symbol->value = meaning.value;
    meaning.symbol->function = meaning.function;
  }
}

} // namespace simhost::lisp
