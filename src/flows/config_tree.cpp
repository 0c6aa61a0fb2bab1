#include "flows/config_tree.h"

namespace brenvolt {

namespace {

constexpr int rootItem = 0;
constexpr int noItem = 0;

} // namespace

std::uint32_t ZanConfigTreeCtrl::CurrentPage() const {
  const int item = tree_.Selected();
  return item == noItem ? 0 : PageOf(item);
}

void ZanConfigTreeCtrl::Add(std::uint32_t page, std::uint32_t parentPage, std::wstring_view title) {
  const int parent = parentPage == 0 ? rootItem : itemOf(parentPage);
  items_[page] = tree_.Insert(parent, title, static_cast<int>(UnitImage::waiting), static_cast<int>(page));
}

void ZanConfigTreeCtrl::Remove(std::uint32_t page) {
  const auto found = items_.find(page);
  if (found == items_.end()) return;
  tree_.Remove(found->second);
  items_.erase(found);
}

void ZanConfigTreeCtrl::SetImage(std::uint32_t page, UnitImage image) {
  if (const int item = itemOf(page); item != noItem) tree_.SetImage(item, static_cast<int>(image));
}

void ZanConfigTreeCtrl::Select(std::uint32_t page) {
  if (const int item = itemOf(page); item != noItem) tree_.Select(item);
}

bool ZanConfigTreeCtrl::SelectBehind(std::uint32_t page) {
  const int item = itemOf(page);
  if (item == noItem) return false;
  int next = tree_.FirstChild(item);
  if (next == noItem) next = tree_.Next(item);
  if (next == noItem) return false;
  tree_.Select(next);
  return true;
}

void ZanConfigTreeCtrl::Expand(std::uint32_t page) {
  if (const int item = itemOf(page); item != noItem) tree_.Expand(item);
}

void ZanConfigTreeCtrl::MoveCurrent(std::uint32_t page) {
  if (hasImage(itemOf(marked_), UnitImage::current)) SetImage(marked_, UnitImage::waiting);
  if (hasImage(itemOf(page), UnitImage::waiting)) SetImage(page, UnitImage::current);
  marked_ = page;
}

int ZanConfigTreeCtrl::itemOf(std::uint32_t page) const {
  const auto found = items_.find(page);
  return found == items_.end() ? noItem : found->second;
}

bool ZanConfigTreeCtrl::hasImage(int item, UnitImage image) const {
  return item != noItem && tree_.Image(item) == static_cast<int>(image);
}

} // namespace brenvolt
