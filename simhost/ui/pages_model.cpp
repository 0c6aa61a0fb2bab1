// Pages, and lists and groups that are made on them.
#include "simhost/ui/pages_model.h"

#include "simhost/ui/dialog_model.h"
#include "text/assertion.h"
#include "text/encoding.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace simhost {

using Json = nlohmann::ordered_json;

namespace {

/// The grid of a group can be edited from the start: that is what groups are for.
FormControl gridOf(const FormControl& group) {
  FormControl grid = group;
  grid.kind = ControlKind::grid;
  grid.isEditable = true;
  return grid;
}

} // namespace

GroupModel::GroupModel(DialogModel& dialog, FormControl form)
    : ModelOf(dialog, std::move(form)), grid_(dialog, gridOf(this->form()), *this) {}

void GroupModel::SetButtons(const std::vector<KvUiGroupButton>& buttons) {
  buttons_ = buttons;
  touch();
}

void GroupModel::describe(Json& shown) const {
  grid_.describe(shown);
  // Two columns below a title need no header, and most groups are editable: only exceptions are written.
  shown.erase("header");
  shown.erase("editable");
  if (!grid_.IsEditable()) shown["editable"] = false;
  Json tips = Json::array();
  for (const KvUiGroupButton& button : buttons_)
    tips.push_back(brenvolt::toUtf8(button.tip));
  if (!tips.empty()) shown["buttons"] = std::move(tips);
}

PagesModel::Page& PagesModel::pageOf(int page) {
  const auto found = pages_.find(page);
  BRENVOLT_ASSERT(found != pages_.end(), "a control is put on a page that is not there");
  return found->second;
}

int PagesModel::AddPage(int) {
  pages_[++lastId_];
  touch();
  return lastId_;
}

void PagesModel::RemovePage(int page) {
  const auto found = pages_.find(page);
  if (found == pages_.end()) return;
  for (ControlModel* control : found->second.controls)
    dialog().forget(*control);
  pages_.erase(found);
  if (shown_ == page) shown_ = 0;
  touch();
}

void PagesModel::ShowPage(int page) {
  if (pages_.contains(page)) change(shown_, page);
}

void PagesModel::LockPage(int page, bool locked) {
  const auto found = pages_.find(page);
  if (found != pages_.end()) change(found->second.isLocked, locked);
}

bool PagesModel::IsLocked(int page) const {
  const auto found = pages_.find(page);
  return found != pages_.end() && found->second.isLocked;
}

template <typename Model>
Model& PagesModel::add(int page, std::wstring_view label, ControlKind kind) {
  std::vector<ControlModel*>& controls = pageOf(page).controls;
  FormControl form;
  form.role = role() + L"." + std::to_wstring(page) + L"." + std::to_wstring(controls.size());
  form.kind = kind;
  form.label = label;
  auto model = std::make_unique<Model>(dialog(), std::move(form));
  Model& added = *model;
  added.setPlace(*this, page);
  controls.push_back(&added);
  dialog().add(std::move(model));
  dialog().touched(added);
  return added;
}

KvUiList& PagesModel::AddList(int page, std::wstring_view label) {
  return add<ListModel>(page, label, ControlKind::list);
}

KvUiGroup& PagesModel::AddGroup(int page, std::wstring_view title) {
  return add<GroupModel>(page, title, ControlKind::grid);
}

ControlModel* PagesModel::at(int page, int place) const {
  const auto found = pages_.find(page);
  if (found == pages_.end() || place < 0) return nullptr;
  const std::vector<ControlModel*>& controls = found->second.controls;
  return static_cast<std::size_t>(place) < controls.size() ? controls[static_cast<std::size_t>(place)]
                                                           : nullptr;
}

KvUiList* PagesModel::ListAt(int page, int place) {
  return dynamic_cast<ListModel*>(at(page, place));
}

KvUiGroup* PagesModel::GroupAt(int page, int place) {
  return dynamic_cast<GroupModel*>(at(page, place));
}

std::vector<ControlModel*> PagesModel::controlsOf(int page) const {
  const auto found = pages_.find(page);
  return found == pages_.end() ? std::vector<ControlModel*>() : found->second.controls;
}

ControlModel* PagesModel::findOnShownPage(std::wstring_view label) const {
  const auto found = pages_.find(shown_);
  if (found == pages_.end()) return nullptr;
  for (ControlModel* control : found->second.controls)
    if (control->label() == label) return control;
  return nullptr;
}

void PagesModel::describe(Json& shown) const {
  shown["page"] = shown_;
  shown["pages"] = pages_.size();
  Json locked = Json::array();
  for (const auto& [id, page] : pages_)
    if (page.isLocked) locked.push_back(id);
  if (!locked.empty()) shown["locked"] = std::move(locked);
}

} // namespace simhost
