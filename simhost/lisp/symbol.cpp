// Interning without case.
#include "simhost/lisp/symbol.h"

#include "text/compare.h"

#include <algorithm>

namespace simhost::lisp {

Symbol& SymbolTable::intern(std::wstring_view name) {
  std::wstring key = brenvolt::toUpper(name);
  std::unique_ptr<Symbol>& slot = symbols_[key];
  if (!slot) {
    slot = std::make_unique<Symbol>();
    slot->name = std::move(key);
  }
  return *slot;
}

Symbol* SymbolTable::find(std::wstring_view name) const {
  const auto found = symbols_.find(brenvolt::toUpper(name));
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

} // namespace simhost::lisp
