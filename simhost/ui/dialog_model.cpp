// Creates the controls of a form, and reports their changes.
#include "simhost/ui/dialog_model.h"

#include "simhost/ui/grid_model.h"
#include "simhost/ui/pages_model.h"
#include "simhost/ui/tree_model.h"
#include "text/encoding.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace simhost {

using brenvolt::toUtf8;
using Json = nlohmann::ordered_json;

namespace {

std::unique_ptr<ControlModel> makeControl(DialogModel& dialog, const FormControl& form) {
  switch (form.kind) {
  case ControlKind::text:
    return std::make_unique<TextModel>(dialog, form);
  case ControlKind::list:
  case ControlKind::editableList:
    return std::make_unique<ListModel>(dialog, form);
  case ControlKind::tick:
  case ControlKind::radio:
    return std::make_unique<TickModel>(dialog, form);
  case ControlKind::button:
    return std::make_unique<ButtonModel>(dialog, form);
  case ControlKind::tree:
    return std::make_unique<TreeModel>(dialog, form);
  case ControlKind::grid:
    return std::make_unique<GridModel>(dialog, form);
  case ControlKind::pages:
    return std::make_unique<PagesModel>(dialog, form);
  }
  return nullptr;
}

/// The rows of a grid that read otherwise; all of them when most do, or when there are more or fewer than before.
Json changedRows(const Json& before, const Json& now) {
  if (before.size() != now.size()) return now;
  Json changed = Json::object();
  for (const auto& [row, texts] : now.items())
    if (!before.contains(row) || before[row] != texts) changed[row] = texts;
  return changed;
}

/// The members that differ; a removed one is reported as null, which means that the control has its default again.
Json difference(const Json& before, const Json& now) {
  Json changed = Json::object();
  for (const auto& [member, value] : now.items()) {
    if (before.contains(member) && before[member] == value) continue;
    changed[member] =
        member == "rows" && before.contains(member) ? changedRows(before[member], value) : value;
  }
  for (const auto& [member, value] : before.items())
    if (!now.contains(member)) changed[member] = nullptr;
  return changed;
}

} // namespace

struct DialogModel::Seen {
  std::map<const ControlModel*, Json> controls;
  std::wstring title;
};

DialogModel::DialogModel(const Form& form, CKvUiDialog& dialog)
    : name_(form.name), title_(form.title), access_(dialog), seen_(std::make_unique<Seen>()) {
  if (dynamic_cast<const CKvUiGroupChildDialog*>(&dialog) != nullptr)
    outer_ = dynamic_cast<const DialogModel*>(access_.state().parent);
  for (const FormControl& control : form.controls)
    add(makeControl(*this, control));
}

DialogModel::~DialogModel() = default;

KvUiControl* DialogModel::control(std::wstring_view role) {
  ControlModel* found = find(role);
  return found == nullptr ? nullptr : &found->face();
}

bool DialogModel::beginEditorCommand() {
  if (hasGivenEditor_) return false;
  hasGivenEditor_ = true;
  return true;
}

ControlModel* DialogModel::find(std::wstring_view role) const {
  const auto found = byRole_.find(role);
  return found == byRole_.end() ? nullptr : found->second;
}

void DialogModel::add(std::unique_ptr<ControlModel> control) {
  order_.push_back(control.get());
  byRole_[control->role()] = control.get();
  owned_.push_back(std::move(control));
}

void DialogModel::forget(ControlModel& control) {
  order_.erase(std::find(order_.begin(), order_.end(), &control));
  byRole_.erase(control.role());
  touched_.erase(&control);
  if (focus_ != nullptr && (focus_ == &control || focus_->role() == control.role())) focus_ = nullptr;
}

Json DialogModel::shown() {
  Json all = Json::object();
  all["title"] = toUtf8(title_);
  Json told = Json::object();
  for (const ControlModel* control : order_) {
    Json& seen = seen_->controls[control];
    seen = control->shown();
    if (!seen.empty()) told[toUtf8(control->role())] = seen;
  }
  all["controls"] = std::move(told);
  seen_->title = title_;
  touched_.clear();
  return all;
}

Json DialogModel::changes() {
  Json told = Json::object();
  if (seen_->title != title_) told[std::string(dialogRole)] = {{"title", toUtf8(title_)}};
  seen_->title = title_;
  if (touched_.empty()) return told;
  for (ControlModel* control : order_) {
    if (!touched_.contains(control)) continue;
    Json now = control->shown();
    Json& seen = seen_->controls[control];
    Json changed = difference(seen.is_null() ? Json::object() : seen, now);
    if (!changed.empty()) told[toUtf8(control->role())] = std::move(changed);
    seen = std::move(now);
  }
  touched_.clear();
  return told;
}

} // namespace simhost
