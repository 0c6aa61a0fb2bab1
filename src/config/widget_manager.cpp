#include "config/widget_manager.h"

#include "config/config_units.h"
#include "text/compare.h"

#include <algorithm>

namespace brenvolt {

ZanWidgetManager::~ZanWidgetManager() {
  for (ZanConfigUnit* unit : boundBy_)
    unit->managerDies(this);
}

void ZanWidgetManager::OnLookup(ZanGroupCtrl*) {}
void ZanWidgetManager::OnPick(ZanGroupCtrl*) {}

void ZanWidgetManager::SetUnit(ZanConfigUnit* unit) {
  unit_ = unit;
}

void ZanWidgetManager::AttachWindow(ZanSettingsWnd* window) {
  if (window == nullptr) return;
  page_ = window->AddPage();
  window->ShowPage(page_);
  window_ = window;
  windowLifetime_ = window->lifetime();
}

bool ZanWidgetManager::HasWindow() const {
  return window_ != nullptr && !windowLifetime_.expired();
}

ZanGroupCtrl* ZanWidgetManager::groupAt(std::size_t place) const {
  return HasWindow() ? window_->GroupAt(page_, place) : nullptr;
}

std::uint32_t ZanWidgetManager::GetPage() const {
  return page_;
}

bool ZanWidgetManager::MatchesKey(std::wstring_view key) const {
  return !key_.empty() && equalsCollating(key_, key);
}

void ZanWidgetManager::SetKey(std::wstring_view key) {
  key_ = key;
}

void ZanWidgetManager::SaveCatalog(std::wstring_view, std::int32_t, const ManagerResults&) {}
void ZanWidgetManager::SaveSelection(std::wstring_view, std::int32_t, const ZanAnnotationDataList&) {}
void ZanWidgetManager::SetLocked(bool) {}
std::optional<ZanAnnotationDataList> ZanWidgetManager::ExportRows() const {
  return std::nullopt;
}

void ZanWidgetManager::ImportRows(const ZanAnnotationDataList&) {}
void ZanWidgetManager::OnTimer(std::uint32_t) {}
void ZanWidgetManager::Refresh() {}
void ZanWidgetManager::LoadSelection(std::wstring_view, std::int32_t) {}

bool ZanWidgetManager::OnCellChanged(std::int32_t, std::uint32_t, std::wstring_view) {
  return true;
}

bool ZanWidgetManager::GetChoices(
    std::int32_t, std::uint32_t, const std::vector<ZanGroupRow>&, std::vector<std::wstring>&) {
  return false;
}

void ZanWidgetManager::LoadCatalog(
    std::wstring_view, std::int32_t, const std::vector<std::wstring>&, ManagerResults&) {}

std::wstring ZanWidgetManager::GetUnitCode() const {
  return unit_ == nullptr ? std::wstring() : unit_->code;
}

std::wstring ZanWidgetManager::GetUnitOrder() const {
  return unit_ == nullptr ? std::wstring() : unit_->order;
}

std::int32_t ZanWidgetManager::GetUnitMarker() const {
  return unit_ == nullptr ? 0 : unit_->markerId;
}

void ZanWidgetManager::Recalculate() {}
void ZanWidgetManager::ApplyResults(const ManagerResults&) {}

void ZanWidgetManager::unitBinds(ZanConfigUnit* unit) {
  if (std::find(boundBy_.begin(), boundBy_.end(), unit) == boundBy_.end()) boundBy_.push_back(unit);
}

void ZanWidgetManager::unitDies(ZanConfigUnit* unit) {
  std::erase(boundBy_, unit);
  if (unit_ == unit) SetUnit(nullptr);
}

} // namespace brenvolt
