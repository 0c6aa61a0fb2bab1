// The items of a tree and their selection.
#include "simhost/ui/tree_model.h"

#include "simhost/ui/dialog_model.h"
#include "text/assertion.h"
#include "text/encoding.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <functional>
#include <utility>

namespace simhost {

using brenvolt::toUtf8;

TreeModel::TreeModel(DialogModel& dialog, FormControl form) : ModelOf(dialog, std::move(form)) {
  items_[0];
}

const TreeModel::Item* TreeModel::find(int item) const {
  const auto found = items_.find(item);
  return item == 0 || found == items_.end() ? nullptr : &found->second;
}

int TreeModel::Insert(int parent, std::wstring_view text, int image, int data) {
  const auto above = items_.find(parent);
  BRENVOLT_ASSERT(above != items_.end(), "a tree item is put below one that is not there");
  const int id = ++lastId_;
  above->second.children.push_back(id);
  items_[id] = Item{parent, std::wstring(text), image, data, {}};
  touch();
  return id;
}

void TreeModel::Remove(int item) {
  const Item* gone = find(item);
  if (gone == nullptr) return;
  std::vector<int>& siblings = items_[gone->parent].children;
  siblings.erase(std::find(siblings.begin(), siblings.end(), item));
  drop(item);
  if (find(selected_) == nullptr) selected_ = 0;
  touch();
}

void TreeModel::drop(int item) {
  const std::vector<int> below = items_[item].children;
  for (const int child : below)
    drop(child);
  items_.erase(item);
}

void TreeModel::Clear() {
  items_.clear();
  items_[0];
  selected_ = 0;
  touch();
}

int TreeModel::Data(int item) const {
  const Item* found = find(item);
  return found == nullptr ? 0 : found->data;
}

std::wstring TreeModel::TextOf(int item) const {
  const Item* found = find(item);
  return found == nullptr ? std::wstring() : found->text;
}

int TreeModel::Image(int item) const {
  const Item* found = find(item);
  return found == nullptr ? 0 : found->image;
}

void TreeModel::SetImage(int item, int image) {
  if (find(item) != nullptr) change(items_[item].image, image);
}

int TreeModel::Parent(int item) const {
  const Item* found = find(item);
  return found == nullptr ? 0 : found->parent;
}

int TreeModel::FirstChild(int item) const {
  const std::vector<int>& below = children(item);
  return below.empty() ? 0 : below.front();
}

int TreeModel::Next(int item) const {
  const Item* found = find(item);
  if (found == nullptr) return 0;
  const std::vector<int>& siblings = children(found->parent);
  const auto next = std::find(siblings.begin(), siblings.end(), item) + 1;
  return next == siblings.end() ? 0 : *next;
}

void TreeModel::Select(int item) {
  if (find(item) == nullptr) item = 0;
  if (item == selected_) return;
  selected_ = item;
  touch();
  dialog().raise({role(), KvUiEventKind::selected, item, 0, {}});
}

void TreeModel::Expand(int item) {
  if (find(item) == nullptr) return;
  expanded_.push_back(item);
  touch();
}

const std::vector<int>& TreeModel::children(int parent) const {
  static const std::vector<int> none;
  const auto found = items_.find(parent);
  return found == items_.end() ? none : found->second.children;
}

std::vector<std::wstring> TreeModel::path(int item) const {
  std::vector<std::wstring> texts;
  for (; find(item) != nullptr; item = Parent(item))
    texts.push_back(TextOf(item));
  std::reverse(texts.begin(), texts.end());
  return texts;
}

std::vector<std::string> TreeModel::outline() const {
  std::vector<std::string> lines;
  const std::function<void(int, const std::string&)> walk = [&](int parent, const std::string& indent) {
    for (const int item : children(parent)) {
      const int image = Image(item);
      lines.push_back(indent + toUtf8(TextOf(item)) + (image == 0 ? "" : " [" + std::to_string(image) + "]"));
      walk(item, indent + "  ");
    }
  };
  walk(0, "");
  return lines;
}

void TreeModel::describe(nlohmann::ordered_json& shown) const {
  shown["items"] = outline();
  nlohmann::ordered_json texts = nlohmann::ordered_json::array();
  for (const std::wstring& text : path(selected_))
    texts.push_back(toUtf8(text));
  shown["path"] = std::move(texts);
}

} // namespace simhost
