// The grid of the annotation presets: a tick, three texts that explain, and the value. A typed value switches its
// preset on, an emptied one off.
#pragma once

#include "host/host_api_ui.h"
#include "project/annotation_presets.h"

#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

class ZanAnnotationGridWnd final {
public:
  /// Fills the grid. Grid and presets must outlive it.
  ZanAnnotationGridWnd(KvUiGrid& grid, ZanAnnotationExList::Presets& presets);

  /// A cell was edited: by the user, or by `setValue`.
  void onCellEdited(int row, int column);
  void setValue(int row, std::wstring_view text);
  [[nodiscard]] std::wstring attributeOf(int row) const;
  [[nodiscard]] bool isAnyTicked() const;
  /// Writes values and ticks into the presets.
  void store() const;

private:
  [[nodiscard]] std::wstring cased(int row, std::wstring_view text) const;

  KvUiGrid& grid_;
  ZanAnnotationExList::Presets& presets_;
  std::vector<std::wstring> accepted_; ///< the last value of each row
};

} // namespace brenvolt
