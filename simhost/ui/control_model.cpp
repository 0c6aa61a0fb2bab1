// Texts, lists, ticks and buttons.
#include "simhost/ui/control_model.h"

#include "simhost/ui/dialog_model.h"
#include "text/assertion.h"
#include "text/encoding.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace simhost {

using brenvolt::toUtf8;
using Json = nlohmann::ordered_json;

ControlModel::ControlModel(DialogModel& dialog, FormControl form)
    : dialog_(dialog), form_(std::move(form)), label_(form_.label), tooltip_(form_.tooltip),
      isEnabled_(form_.isEnabled), isVisible_(form_.isVisible) {}

ControlModel::~ControlModel() = default;

bool ControlModel::hasFocus() const {
  return dialog_.focus() == this;
}

void ControlModel::setPlace(PagesModel& pages, int page) {
  pages_ = &pages;
  page_ = page;
}

void ControlModel::touch() {
  dialog_.touched(*this);
}

void ControlModel::takeFocus() {
  dialog_.setFocus(this);
}

Json ControlModel::shown() const {
  Json shown = Json::object();
  // Labels of the form say nothing new; on pages they are made while the dialog runs.
  if (label_ != form_.label || page_ != 0) shown["label"] = toUtf8(label_);
  if (!isEnabled_) shown["enabled"] = false;
  if (!isVisible_) shown["visible"] = false;
  if (tooltip_ != form_.tooltip) shown["tooltip"] = toUtf8(tooltip_);
  describe(shown);
  return shown;
}

TextModel::TextModel(DialogModel& dialog, FormControl form)
    : ModelOf(dialog, std::move(form)), isReadOnly_(this->form().isReadOnly) {}

void TextModel::describe(Json& shown) const {
  shown["text"] = toUtf8(text_);
  if (isReadOnly_ != form().isReadOnly) shown["readOnly"] = isReadOnly_;
}

void ListModel::Clear() {
  if (entries_.empty() && text_.empty()) return;
  entries_.clear();
  selected_ = -1;
  text_.clear();
  touch();
}

int ListModel::Insert(int index, std::wstring_view text, int data) {
  if (!has(index)) index = Count();
  entries_.insert(entries_.begin() + index, Entry{std::wstring(text), data});
  if (selected_ >= index) ++selected_;
  touch();
  return index;
}

void ListModel::Remove(int index) {
  if (!has(index)) return;
  entries_.erase(entries_.begin() + index);
  if (selected_ == index) selected_ = -1;
  if (selected_ > index) --selected_;
  touch();
}

std::wstring ListModel::TextAt(int index) const {
  return has(index) ? entries_[static_cast<std::size_t>(index)].text : std::wstring();
}

int ListModel::DataAt(int index) const {
  return has(index) ? entries_[static_cast<std::size_t>(index)].data : 0;
}

void ListModel::Select(int index) {
  if (!has(index)) index = -1;
  change(selected_, index);
  change(text_, TextAt(index));
}

std::wstring ListModel::Text() const {
  return isEditable() ? text_ : TextAt(selected_);
}

void ListModel::SetText(std::wstring_view text) {
  change(selected_, indexOf(text));
  change(text_, std::wstring(text));
}

int ListModel::indexOf(std::wstring_view text) const {
  const auto found = std::find_if(
      entries_.begin(), entries_.end(), [text](const Entry& entry) { return entry.text == text; });
  return found == entries_.end() ? -1 : static_cast<int>(found - entries_.begin());
}

void ListModel::describe(Json& shown) const {
  Json entries = Json::array();
  for (const Entry& entry : entries_)
    entries.push_back(toUtf8(entry.text));
  shown["choices"] = std::move(entries);
  shown["text"] = toUtf8(Text());
}

TickModel::TickModel(DialogModel& dialog, FormControl form)
    : ModelOf(dialog, std::move(form)), isChecked_(this->form().isChecked) {}

void TickModel::SetChecked(bool checked) {
  change(isChecked_, checked);
  if (!checked || kind() != ControlKind::radio) return;
  for (ControlModel* control : dialog().controls()) {
    auto* other = dynamic_cast<TickModel*>(control);
    if (other != nullptr && other != this && other->form().group == form().group)
      other->change(other->isChecked_, false);
  }
}

void TickModel::describe(Json& shown) const {
  shown["checked"] = isChecked_;
}

void ButtonModel::describe(Json& shown) const {
  if (image_ != 0) shown["image"] = image_;
}

} // namespace simhost
