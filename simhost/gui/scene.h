// The drawing on the screen: what is visible at one moment, found by position, and the details of the entity under the
// pointer. It is a copy, so that painting never sees a drawing in the middle of a change.
#pragma once

#include "simhost/drawing/box_index.h"
#include "simhost/drawing/display_list.h"

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace simhost {

/// What is shown of an entity that the pointer is over.
struct EntityFacts {
  std::wstring kind;
  std::wstring layer;
  std::wstring handle;
  std::wstring block; ///< of a block reference
  /// Tag and value, hidden ones included.
  std::vector<std::pair<std::wstring, std::wstring>> attributes;

  /// The value of a tag, whose case does not count; empty without one.
  [[nodiscard]] std::wstring attribute(std::wstring_view tag) const;
};

class Scene final {
public:
  /// Takes a space of the drawing over. False, and nothing is shown, when the drawing has too many shapes.
  bool load(const DrawingDatabase& drawing, KvDbHandle space);

  /// Layers that are not shown, by name as they are spelled in the drawing. They stay hidden when the drawing changes.
  void setHiddenLayers(std::set<std::wstring> names);
  [[nodiscard]] const std::set<std::wstring>& hiddenLayers() const { return hiddenLayers_; }
  [[nodiscard]] const std::vector<std::wstring>& layerNames() const { return layerNames_; }

  [[nodiscard]] const std::vector<DisplayItem>& items() const { return items_; }
  [[nodiscard]] const Box& box(std::uint32_t item) const { return boxes_[item]; }
  [[nodiscard]] bool isShown(const DisplayItem& item) const { return !isHidden_[item.layer]; }
  /// The items that meet the area in drawing order, those of hidden layers left out.
  [[nodiscard]] std::vector<std::uint32_t> itemsIn(const Box& area) const;
  /// The box around everything, hidden layers too.
  [[nodiscard]] const Box& extents() const { return index_.extents(); }

  /// The entity of the space nearest to the point, not farther away than `reach` drawing units. At equal distance the
  /// entity drawn later is returned.
  [[nodiscard]] std::optional<KvDbHandle> entityAt(const KvPoint3d& point, double reach) const;
  /// The items of an entity, in drawing order.
  [[nodiscard]] std::vector<std::uint32_t> itemsOf(KvDbHandle entity) const;

private:
  void markHidden();

  std::vector<DisplayItem> items_;
  std::vector<Box> boxes_;
  BoxIndex index_;
  std::vector<std::wstring> layerNames_;
  std::vector<bool> isHidden_;
  std::set<std::wstring> hiddenLayers_;
};

/// Nothing for a handle of no entity.
[[nodiscard]] std::optional<EntityFacts> factsOf(const DrawingDatabase& drawing, KvDbHandle handle);

} // namespace simhost
