// The tree of units beside the pages: one item for each page of the selection window, with an image that says how far
// its unit is.
#pragma once

#include "host/host_api_ui.h"

#include <cstdint>
#include <map>
#include <string_view>

namespace brenvolt {

enum class UnitImage : int { waiting = 0, current = 1, inserted = 2 };

class ZanConfigTreeCtrl final {
public:
  explicit ZanConfigTreeCtrl(KvUiTree& tree) : tree_(tree) {}
  ZanConfigTreeCtrl(const ZanConfigTreeCtrl&) = delete;
  ZanConfigTreeCtrl& operator=(const ZanConfigTreeCtrl&) = delete;

  [[nodiscard]] std::uint32_t PageOf(int item) const { return static_cast<std::uint32_t>(tree_.Data(item)); }
  /// The page of the selected item, 0 without one.
  [[nodiscard]] std::uint32_t CurrentPage() const;

  /// A waiting item of a unit with this page; a parent page of 0 is the root.
  void Add(std::uint32_t page, std::uint32_t parentPage, std::wstring_view title);
  void Remove(std::uint32_t page);
  void SetImage(std::uint32_t page, UnitImage image);
  /// Selects the item of a page. The dialog gets the event of a change.
  void Select(std::uint32_t page);
  /// Selects the first item below that of a page, or else the next one beside it. False when there is neither.
  bool SelectBehind(std::uint32_t page);
  void Expand(std::uint32_t page);
  /// The selection has come to a page: its item shows that it is the current one, the one that was left does not.
  void MoveCurrent(std::uint32_t page);

private:
  [[nodiscard]] int itemOf(std::uint32_t page) const; ///< 0 without one
  [[nodiscard]] bool hasImage(int item, UnitImage image) const;

  KvUiTree& tree_;
  std::map<std::uint32_t, int> items_; ///< by page
  std::uint32_t marked_ = 0;           ///< the page whose item was marked as current last
};

} // namespace brenvolt
