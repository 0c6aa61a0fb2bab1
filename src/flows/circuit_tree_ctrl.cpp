#include "flows/circuit_tree_ctrl.h"

#include "text/compare.h"

#include <algorithm>

namespace brenvolt {

ZanCircuitTreeCtrl::ZanCircuitTreeCtrl(KvUiTree& tree, const ZanCircuitCatalog& catalog) : tree_(tree) {
  constexpr int noImage = 0;
  tree_.Clear();
  for (const auto& [name, circuit] : catalog.circuits()) {
    const int parent = tree_.Insert(0, name, noImage, circuit.id);
    for (const ZanCircuitEntry& entry : circuit.entries) {
      const int item = tree_.Insert(parent, entry.type, noImage, entry.id);
      types_[item] = {name, entry.type, entry.worksheet, entry.drawingTemplate, entry.presetKey};
    }
  }
}

bool ZanCircuitTreeCtrl::select(std::wstring_view circuit, std::wstring_view type) {
  const auto found = std::find_if(types_.begin(), types_.end(), [&](const auto& item) {
    return equalsCollating(item.second.circuit, circuit) && equalsCollating(item.second.type, type);
  });
  if (found == types_.end()) return false;
  tree_.Expand(tree_.Parent(found->first));
  tree_.Select(found->first);
  return true;
}

std::optional<CircuitChoice> ZanCircuitTreeCtrl::choice() const {
  const auto found = types_.find(tree_.Selected());
  if (found == types_.end()) return std::nullopt;
  return found->second;
}

} // namespace brenvolt
