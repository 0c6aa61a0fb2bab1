// The model of a tree of items.
#pragma once

#include "simhost/ui/control_model.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace simhost {

class TreeModel final : public ModelOf<KvUiTree> {
public:
  TreeModel(DialogModel& dialog, FormControl form);
  int Insert(int parent, std::wstring_view text, int image, int data) override;
  /// When the selected item is removed, nothing is selected and no event is raised.
  void Remove(int item) override;
  void Clear() override;
  [[nodiscard]] int Data(int item) const override;
  [[nodiscard]] std::wstring TextOf(int item) const override;
  [[nodiscard]] int Image(int item) const override;
  void SetImage(int item, int image) override;
  [[nodiscard]] int Parent(int item) const override;
  [[nodiscard]] int FirstChild(int item) const override;
  [[nodiscard]] int Next(int item) const override;
  void Select(int item) override;
  [[nodiscard]] int Selected() const override { return selected_; }
  void Expand(int item) override;
  /// The items that the flow wants to show unfolded, returned once. The user decides about all others.
  [[nodiscard]] std::vector<int> takeExpanded() { return std::exchange(expanded_, {}); }

  /// Below `parent` (0: the root), in order.
  [[nodiscard]] const std::vector<int>& children(int parent) const;
  /// The texts from the root to the item.
  [[nodiscard]] std::vector<std::wstring> path(int item) const;
  /// One line per item, indented by two blanks per depth, followed by the image if there is one.
  [[nodiscard]] std::vector<std::string> outline() const;

private:
  struct Item {
    int parent = 0;
    std::wstring text;
    int image = 0;
    int data = 0;
    std::vector<int> children;
  };
  [[nodiscard]] const Item* find(int item) const;
  void drop(int item);
  void describe(nlohmann::ordered_json& shown) const override;

  std::map<int, Item> items_; ///< 0 is the invisible root
  int lastId_ = 0;
  int selected_ = 0;
  std::vector<int> expanded_;
};

} // namespace simhost
