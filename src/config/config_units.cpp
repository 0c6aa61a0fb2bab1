#include "config/config_units.h"

#include "config/widget_manager.h"

#include <algorithm>

namespace brenvolt {

ZanConfigUnit::ZanConfigUnit(std::int32_t id) : markerId(id) {}

ZanConfigUnit::~ZanConfigUnit() {
  for (const ZanManagerBinding& binding : managers_)
    binding.manager->unitDies(this);
}

ZanWidgetManager* ZanConfigUnit::FindManager(std::int32_t optionCode) const {
  for (const ZanManagerBinding& binding : managers_)
    if (std::find(binding.codes.begin(), binding.codes.end(), optionCode) != binding.codes.end())
      return binding.manager;
  return nullptr;
}

ZanWidgetManager* ZanConfigUnit::FindManagerByKey(std::wstring_view key) const {
  for (const ZanManagerBinding& binding : managers_)
    if (binding.manager->MatchesKey(key)) return binding.manager;
  return nullptr;
}

ZanConfigUnitList& ZanConfigUnit::EnsureChildren() {
  if (children_ == nullptr) children_ = std::make_unique<ZanConfigUnitList>();
  return *children_;
}

void ZanConfigUnit::ClearChildren() {
  children_.reset();
}

void ZanConfigUnit::BindManager(std::int32_t optionCode, ZanWidgetManager* manager) {
  if (manager == nullptr) return;
  auto binding = std::find_if(managers_.begin(), managers_.end(), [manager](const ZanManagerBinding& known) {
    return known.manager == manager;
  });
  if (binding == managers_.end()) binding = managers_.insert(binding, {{}, manager});
  if (std::find(binding->codes.begin(), binding->codes.end(), optionCode) == binding->codes.end())
    binding->codes.push_back(optionCode);
  manager->unitBinds(this);
}

void ZanConfigUnit::AddManagersToWindow(ZanSettingsWnd* window) {
  for (const ZanManagerBinding& binding : managers_)
    binding.manager->AttachWindow(window);
}

void ZanConfigUnit::managerDies(ZanWidgetManager* manager) {
  std::erase_if(
      managers_, [manager](const ZanManagerBinding& binding) { return binding.manager == manager; });
}

ZanConfigUnit* ZanConfigUnitList::Find(std::uint32_t id, FindUnitBy by) const {
  for (const auto& unit : units_) {
    const std::uint32_t own =
        by == FindUnitBy::page ? unit->page : static_cast<std::uint32_t>(unit->markerId);
    if (own == id) return unit.get();
    if (unit->children() == nullptr) continue;
    if (ZanConfigUnit* found = unit->children()->Find(id, by)) return found;
  }
  return nullptr;
}

ZanConfigUnit* ZanConfigUnitList::Add(std::unique_ptr<ZanConfigUnit> unit) {
  if (unit == nullptr) return nullptr;
  units_.push_back(std::move(unit));
  return units_.back().get();
}

void ZanConfigUnitList::RemoveUnitsOfRun(std::int32_t run) {
  if (run <= 0) return;
  std::erase_if(units_, [run](const auto& unit) { return unit->ownerStep == run; });
  for (const auto& unit : units_)
    if (unit->children() != nullptr) unit->children()->RemoveUnitsOfRun(run);
}

bool ZanConfigUnitListIterator::IsDone() const {
  return root_ == nullptr || frames_.empty() || frames_.front().position >= root_->units().size();
}

ZanConfigUnit* ZanConfigUnitListIterator::Current() const {
  return IsDone() ? nullptr : unitAt(frames_.back());
}

ZanConfigUnit* ZanConfigUnitListIterator::Parent() const {
  if (IsDone() || frames_.size() < 2) return nullptr;
  return unitAt(frames_[frames_.size() - 2]);
}

bool ZanConfigUnitListIterator::First() {
  frames_.clear();
  if (root_ == nullptr) return false;
  frames_.push_back({root_, 0});
  return !IsDone();
}

void ZanConfigUnitListIterator::Next() {
  const ZanConfigUnit* current = Current();
  if (current == nullptr) return;
  if (current->children() != nullptr && !current->children()->isEmpty()) {
    frames_.push_back({current->children(), 0});
    return;
  }
  ++frames_.back().position;
  while (frames_.size() > 1 && frames_.back().position >= frames_.back().list->units().size()) {
    frames_.pop_back();
    ++frames_.back().position;
  }
}

ZanConfigUnit* ZanConfigUnitListIterator::unitAt(const Frame& frame) {
  return frame.list->units()[frame.position].get();
}

} // namespace brenvolt
