// The tree from which a circuit's type is chosen: circuits, and below each its types in the workbook's order.
#pragma once

#include "host/host_api_ui.h"
#include "project/circuit_list.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace brenvolt {

/// A type of a circuit of the workbook.
struct CircuitChoice {
  std::wstring circuit;
  std::wstring type;
  std::wstring worksheet;
  std::wstring drawingTemplate;
  std::wstring presetKey;

  friend bool operator==(const CircuitChoice&, const CircuitChoice&) = default;
};

class ZanCircuitTreeCtrl final {
public:
  /// The tree must outlive it.
  ZanCircuitTreeCtrl(KvUiTree& tree, const ZanCircuitCatalog& catalog);

  /// Selects a type, compared by the user's locale. False, and nothing selected, when the workbook does not have it.
  bool select(std::wstring_view circuit, std::wstring_view type);
  /// The selected type; nothing while no type is selected, also with a circuit alone.
  [[nodiscard]] std::optional<CircuitChoice> choice() const;

private:
  KvUiTree& tree_;
  std::map<int, CircuitChoice> types_; ///< by item
};

} // namespace brenvolt
