#include "config/widget_manager_maker.h"

#include "host/lisp_symbols.h"
#include "text/compare.h"
#include "text/numbers.h"

#include <algorithm>

namespace brenvolt {

namespace {

/// Fields of a motor's or load's row.
constexpr std::size_t typeField = 0;
constexpr std::size_t currentField = 7;

std::unique_ptr<ZanWidgetManagerMaker>& makerOfProcess() {
  static std::unique_ptr<ZanWidgetManagerMaker> maker;
  return maker;
}

const ZanAnnotationData* findRow(const ZanAnnotationDataList& rows, std::wstring_view name) {
  for (const ZanAnnotationDataList::Item& item : rows.items())
    if (item.row && item.row->name == name) return item.row.get();
  return nullptr;
}

std::wstring fieldOf(const ZanAnnotationData& row, std::size_t index) {
  return index < row.fields.size() ? row.fields[index].value : std::wstring();
}

} // namespace

ZanWidgetManagerMaker* widgetManagerMaker() {
  return makerOfProcess().get();
}

bool ZanWidgetManagerMaker::Create() {
  if (!makerOfProcess()) makerOfProcess() = std::make_unique<ZanWidgetManagerMaker>();
  return makerOfProcess() != nullptr;
}

void ZanWidgetManagerMaker::Destroy() {
  makerOfProcess().reset();
}

void ZanWidgetManagerMaker::AddHead(std::unique_ptr<ZanWidgetManager> head) {
  current_ = head.get();
  if (groups_.empty() || groups_.back().head) groups_.emplace_back();
  groups_.back().head = std::move(head);
}

void ZanWidgetManagerMaker::AddMember(std::unique_ptr<ZanWidgetManager> member) {
  if (groups_.empty()) groups_.emplace_back();
  groups_.back().members.push_back(std::move(member));
}

ZanWidgetManager* ZanWidgetManagerMaker::FindHead(const ZanWidgetManager* member) const {
  for (const ZanManagerGroup& group : groups_)
    for (const auto& each : group.members)
      if (each.get() == member) return group.head.get();
  return nullptr;
}

void ZanWidgetManagerMaker::RefreshSettings() {
  settings_.Clear();
  if (current_) current_->ExportRows(settings_);
}

bool ZanWidgetManagerMaker::CollectSettings(ZanAnnotationDataList& rows, std::vector<std::wstring>& orders) {
  rows.Clear();
  std::wstring previous;
  for (const ZanManagerGroup& group : groups_) {
    if (!group.head) continue;
    group.head->ExportRows(settings_);
    rows.Append(settings_);
    const std::wstring code = group.head->GetUnitCode();
    // Consecutive heads of one marker code share one order.
    if (previous.empty() || !equalsOrdinalNoCase(previous, code))
      orders.push_back(group.head->GetUnitOrder());
    previous = code;
  }
  return !rows.isEmpty();
}

void ZanWidgetManagerMaker::computeAutoRows(
    const ZanAnnotationDataList& groupData, std::vector<ZanAutoSizeRow>& rows) const {
  rows.clear();
  const ZanAnnotationData* setup = findRow(groupData, rowname::motorSetup);
  if (!setup) setup = findRow(groupData, rowname::loadSetup);
  if (!setup) return;
  ZanAutoSizeComponent components;
  // Without a standard the tables' plain names are used.
  if (const std::optional<std::wstring> standard = getCodeStandard())
    static_cast<void>(components.init(*standard));
  static_cast<void>(
      components.size(fieldOf(*setup, typeField), toDouble(fieldOf(*setup, currentField)), rows));
}

} // namespace brenvolt
